#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <optional>
#include <string>
#include <vector>

#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// The pictures that a program has set for a source.
struct SourceIcons {
    std::string icon;
    std::string firstAppIcon;
    std::string secondAppIcon;
    int iconType = 0;
};

/// A source of pictures: a socket, a device connected to it, or a tuner.
struct Source {
    int key = 0;  ///< its position in the list; several may have the same
    int id = 0;   ///< its own
    std::string name;
    int iconType = 0;
    std::optional<SourceIcons> icons;
};

/// The list of sources. The sources themselves are not cloned; a restore sets only their pictures.
///
/// Errors common to all: UnknownService if the television does not have this service, and those of
/// `Database`. Threads and processes: any.
class SourceList {
 public:
    explicit SourceList(Database& database) : database_(database) {}

    /// As in DataService.
    static void create(SQLite::Database& connection, const ServiceSection& section);
    static Texts texts(SQLite::Database& connection);
    static Texts keptTexts(SQLite::Database& connection);

    /// All sources, sorted by their keys. Sources with the same key are in the order of the profile.
    Result<std::vector<Source>> list() const;

    /// Records the current pictures of the source. Errors: UnknownEntry if there is no such source,
    /// BadArgument if a path is not the absolute path of a PNG or JPEG file.
    Result<void> setIcons(int id, const SourceIcons& icons) const;

 private:
    Database& database_;
};

}  // namespace vxtv
