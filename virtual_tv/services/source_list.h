#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <optional>
#include <string>
#include <vector>

#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// The pictures that a program set for a source.
struct SourceIcons {
    std::string icon;
    std::string firstAppIcon;
    std::string secondAppIcon;
    int iconType = 0;
};

/// Something that the television can show: a socket, a box behind it, a tuner.
struct Source {
    int key = 0;  ///< its place in the list; several may have the same
    int id = 0;   ///< its own
    std::string name;
    int iconType = 0;
    std::optional<SourceIcons> icons;
};

/// The list of sources. The sources stay with their television; a clone brings the pictures alone.
///
/// Errors common to all: UnknownService when the television does not have it, and those of `Database`.
/// Threads and processes: any.
class SourceList {
 public:
    explicit SourceList(Database& database) : database_(database) {}

    /// As in DataService.
    static void create(SQLite::Database& connection, const ServiceSection& section);
    static Texts texts(SQLite::Database& connection);
    static Texts keptTexts(SQLite::Database& connection);

    /// All sources, ordered by their keys, those of one key as the profile has them.
    Result<std::vector<Source>> list() const;

    /// Notes which pictures the source has now. Errors: UnknownEntry when there is no such source,
    /// BadArgument when a path is no absolute one of a PNG or JPEG file.
    Result<void> setIcons(int id, const SourceIcons& icons) const;

 private:
    Database& database_;
};

}  // namespace vxtv
