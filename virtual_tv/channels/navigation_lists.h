#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// The antenna and the service mode for which a navigation list is stored. -1 means every one.
struct TvMode {
    int antenna = -1;
    int service = -1;
};

/// A list with which a guest browses channels: favourites, genres, ...
struct NavigationEntry {
    int mode = 0;  ///< the kind of the list; together with `id` its name
    std::int64_t id = 0;
    std::vector<std::string> names;
    int order = 0;
    int flag = 0;
    bool isStale = false;        ///< made for a channel map that was replaced since
    std::vector<TvMode> places;  ///< the antennas and service modes for which it is stored
};

/// The stored navigation lists, a part of the service "channels".
///
/// A list is stored for an antenna (0, 1 or 2) and a service mode, or for every antenna and one of the
/// service modes 3, 16, 19 and 20. A query with -1 matches every stored value; another value matches only an
/// equal one.
///
/// Errors common to all: UnknownService, OutOfRange for an invalid mode, and those of `Database`. Threads and
/// processes: any.
class NavigationLists {
 public:
    explicit NavigationLists(Database& database) : database_(database) {}

    /// Makes the tables and fills them from the profile; called when a television is created. Throws
    /// WrongMember.
    static void create(SQLite::Database& connection, const nlohmann::json& content, const std::string& where);

    /// All details of each list, by its mode and id.
    static Texts texts(SQLite::Database& connection);

    /// Marks the lists of the modes 10 and 11 as out of date, because they list channels and the channels
    /// were replaced.
    static void markStale(SQLite::Database& connection);

    /// The lists that are stored for the mode, each once, sorted by order and name, with all their places.
    Result<std::vector<NavigationEntry>> list(TvMode mode) const;

    /// Removes the list for the mode, and completely if it is stored for nothing else. A list that is not
    /// stored for the mode is no failure.
    Result<void> remove(TvMode mode, int entryMode, std::int64_t id);

 private:
    Database& database_;
};

}  // namespace vxtv
