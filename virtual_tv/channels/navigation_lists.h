#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// What a navigation list is stored for. -1 means every one of the kind.
struct TvMode {
    int antenna = -1;
    int service = -1;
};

/// A list by which a guest leafs through channels: favourites, genres, ...
struct NavigationEntry {
    int mode = 0;  ///< what kind of list; with `id` its name
    std::int64_t id = 0;
    std::vector<std::string> names;
    int order = 0;
    int flag = 0;
    bool isStale = false;        ///< made for a channel map that has been replaced
    std::vector<TvMode> places;  ///< what it is stored for
};

/// The stored navigation lists, a part of the service "channels".
///
/// A list is stored for an antenna (0, 1 or 2) and a service mode, or for every antenna and one of the
/// service modes 3, 16, 19 and 20. A mode that is asked for with -1 meets every stored one, any other its
/// equal alone.
///
/// Errors common to all: UnknownService, OutOfRange for a mode that a television does not have, and those of
/// `Database`. Threads and processes: any.
class NavigationLists {
 public:
    explicit NavigationLists(Database& database) : database_(database) {}

    /// Makes the tables and fills them from the profile; part of the creation. Throws WrongMember.
    static void create(SQLite::Database& connection, const nlohmann::json& content, const std::string& where);

    /// All of each, by its mode and id.
    static Texts texts(SQLite::Database& connection);

    /// Marks the lists of the modes 10 and 11: they are of channels, and the channels have been replaced.
    static void markStale(SQLite::Database& connection);

    /// The lists that are stored for the mode, each once, by order and name, with all their places.
    Result<std::vector<NavigationEntry>> list(TvMode mode) const;

    /// Forgets the list for the mode, and altogether when it is stored for nothing any more. One that is not
    /// stored for it is no failure.
    Result<void> remove(TvMode mode, int entryMode, std::int64_t id);

 private:
    Database& database_;
};

}  // namespace vxtv
