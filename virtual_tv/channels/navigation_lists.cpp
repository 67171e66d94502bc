#include "virtual_tv/channels/navigation_lists.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <utility>

#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/channels/channel_store.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv {

using Json = nlohmann::json;

namespace {

constexpr int kEvery = -1;
constexpr int kHighestAntenna = 2;
constexpr int kHighestService = 31;
constexpr std::array kServicesOfEveryAntenna = {3, 16, 19, 20};
constexpr int kHighestEntryMode = 99;
constexpr int kHighestFlag = 255;
constexpr std::size_t kMostEntries = 200;
constexpr std::size_t kMostPlaces = 100;
constexpr std::size_t kMostNames = 16;
constexpr std::size_t kLongestName = 128;

bool canBeStored(TvMode place) {
    return place.antenna != kEvery ||
           std::find(kServicesOfEveryAntenna.begin(), kServicesOfEveryAntenna.end(), place.service) !=
               kServicesOfEveryAntenna.end();
}

int memberBetween(const Json& object, const std::string& where, const char* name, int lowest, int highest) {
    return static_cast<int>(
        numberBetween(memberOf(object, where, name), within(where, name), lowest, highest));
}

TvMode placeIn(const Json& value, const std::string& where) {
    expectOnly(value, where, {"antenna", "service"});
    const TvMode place = {memberBetween(value, where, "antenna", kEvery, kHighestAntenna),
                          memberBetween(value, where, "service", 0, kHighestService)};
    if (!canBeStored(place)) {
        throw WrongMember{where, fmt::format("is for every antenna; that is for the service modes {} alone",
                                             fmt::join(kServicesOfEveryAntenna, ", "))};
    }
    return place;
}

NavigationEntry entryIn(const Json& value, const std::string& where) {
    expectOnly(value, where, {"mode", "id", "names", "order", "flag", "places"});
    NavigationEntry entry;
    entry.mode = memberBetween(value, where, "mode", 0, kHighestEntryMode);
    entry.id = numberBetween(memberOf(value, where, "id"), within(where, "id"), 0,
                             std::numeric_limits<std::int64_t>::max());
    entry.order = memberBetween(value, where, "order", 0, std::numeric_limits<int>::max());
    entry.flag = memberBetween(value, where, "flag", 0, kHighestFlag);
    const Json& names = memberOf(value, where, "names");
    expectShortArray(names, within(where, "names"), kMostNames);
    for (const Json& name : names) {
        entry.names.push_back(visibleText(name, within(where, "names"), kLongestName));
    }
    const Json& places = memberOf(value, where, "places");
    expectShortArray(places, within(where, "places"), kMostPlaces);
    for (const Json& place : places) {
        entry.places.push_back(placeIn(place, within(where, "places")));
    }
    if (entry.places.empty()) {
        throw WrongMember{within(where, "places"), "is empty"};
    }
    return entry;
}

void insert(SQLite::Database& connection, const NavigationEntry& entry) {
    SQLite::Statement insertEntry(connection, "INSERT INTO navigation_entries VALUES (?, ?, ?, ?, ?, 0)");
    insertEntry.bind(1, entry.mode);
    insertEntry.bind(2, entry.id);
    insertEntry.bind(3, Json(entry.names).dump());
    insertEntry.bind(4, entry.order);
    insertEntry.bind(5, entry.flag);
    insertEntry.exec();
    SQLite::Statement insertPlace(connection, "INSERT OR IGNORE INTO navigation_places VALUES (?, ?, ?, ?)");
    for (const TvMode& place : entry.places) {
        insertPlace.reset();
        insertPlace.bind(1, entry.mode);
        insertPlace.bind(2, entry.id);
        insertPlace.bind(3, place.antenna);
        insertPlace.bind(4, place.service);
        insertPlace.exec();
    }
}

std::vector<TvMode> placesOf(SQLite::Database& connection, const NavigationEntry& entry) {
    SQLite::Statement row(connection,
                          "SELECT antenna, service FROM navigation_places WHERE mode = ? AND id = ? "
                          "ORDER BY antenna, service");
    row.bind(1, entry.mode);
    row.bind(2, entry.id);
    std::vector<TvMode> places;
    while (row.executeStep()) {
        places.push_back({row.getColumn(0).getInt(), row.getColumn(1).getInt()});
    }
    return places;
}

/// Each place as antenna and service mode, such as "0/3"; -1 means every one.
std::string placesText(const std::vector<TvMode>& places) {
    std::string text;
    for (const TvMode& place : places) {
        text += fmt::format("{}{}/{}", text.empty() ? "" : " ", place.antenna, place.service);
    }
    return text;
}

bool meets(TvMode asked, TvMode stored) {
    return (asked.antenna == kEvery || asked.antenna == stored.antenna) &&
           (asked.service == kEvery || asked.service == stored.service);
}

std::vector<NavigationEntry> entriesFor(SQLite::Database& connection, TvMode mode) {
    std::vector<NavigationEntry> entries;
    SQLite::Statement row(connection,
                          "SELECT mode, id, names, sort_order, flag, stale FROM navigation_entries "
                          "ORDER BY sort_order, mode, id");
    while (row.executeStep()) {
        NavigationEntry entry = {row.getColumn(0).getInt(),
                                 row.getColumn(1).getInt64(),
                                 Json::parse(row.getColumn(2).getString()),
                                 row.getColumn(3).getInt(),
                                 row.getColumn(4).getInt(),
                                 row.getColumn(5).getInt() != 0,
                                 {}};
        entry.places = placesOf(connection, entry);
        if (std::any_of(entry.places.begin(), entry.places.end(),
                        [mode](TvMode place) { return meets(mode, place); })) {
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

Result<void> check(SQLite::Database& connection, TvMode mode) {
    const bool known = mode.antenna >= kEvery && mode.antenna <= kHighestAntenna && mode.service >= kEvery &&
                       mode.service <= kHighestService;
    if (!known) {
        return failure(
            ErrorCode::OutOfRange,
            fmt::format("there is no antenna mode {} with a service mode {}; antenna modes go from "
                        "{} to {}, service modes from {} to {}",
                        mode.antenna, mode.service, kEvery, kHighestAntenna, kEvery, kHighestService));
    }
    return requireDataService(connection, kChannelService.name);
}

}  // namespace

void NavigationLists::create(SQLite::Database& connection, const Json& content, const std::string& where) {
    connection.exec(
        "CREATE TABLE navigation_entries (mode INTEGER NOT NULL, id INTEGER NOT NULL, names TEXT NOT NULL, "
        "sort_order INTEGER NOT NULL, flag INTEGER NOT NULL, stale INTEGER NOT NULL, PRIMARY KEY (mode, id)) "
        "WITHOUT ROWID");
    connection.exec(
        "CREATE TABLE navigation_places (mode INTEGER NOT NULL, id INTEGER NOT NULL, "
        "antenna INTEGER NOT NULL, service INTEGER NOT NULL, PRIMARY KEY (mode, id, antenna, service)) "
        "WITHOUT ROWID");
    expectShortArray(content, where, kMostEntries);
    std::set<std::pair<int, std::int64_t>> names;
    for (const Json& value : content) {
        const std::string inside = entryOf(where, names.size() + 1);
        const NavigationEntry entry = entryIn(value, inside);
        if (!names.emplace(entry.mode, entry.id).second) {
            throw WrongMember{inside, "is there already, by its mode and id"};
        }
        insert(connection, entry);
    }
}

Texts NavigationLists::texts(SQLite::Database& connection) {
    Texts texts;
    for (const NavigationEntry& entry : entriesFor(connection, {})) {
        texts[fmt::format("navigation list {:02}/{}", entry.mode, entry.id)] =
            fmt::format("{}; order {}, flag {}, stored for {}{}", fmt::join(entry.names, ", "), entry.order,
                        entry.flag, placesText(entry.places), entry.isStale ? ", out of date" : "");
    }
    return texts;
}

void NavigationLists::markStale(SQLite::Database& connection) {
    connection.exec("UPDATE navigation_entries SET stale = 1 WHERE mode IN (10, 11)");
}

Result<std::vector<NavigationEntry>> NavigationLists::list(TvMode mode) const {
    return database_.read([mode](SQLite::Database& connection) -> Result<std::vector<NavigationEntry>> {
        const SQLite::Transaction look(connection);
        return check(connection, mode).map([&connection, mode] { return entriesFor(connection, mode); });
    });
}

Result<void> NavigationLists::remove(TvMode mode, int entryMode, std::int64_t id) {
    return database_.write([mode, entryMode, id](SQLite::Database& connection) -> Result<void> {
        return check(connection, mode).map([&] {
            SQLite::Statement places(connection,
                                     "DELETE FROM navigation_places WHERE mode = ?1 AND id = ?2 AND "
                                     "(?3 = -1 OR antenna = ?3) AND (?4 = -1 OR service = ?4)");
            SQLite::Statement entry(
                connection,
                "DELETE FROM navigation_entries WHERE mode = ?1 AND id = ?2 AND NOT EXISTS "
                "(SELECT 1 FROM navigation_places WHERE mode = ?1 AND id = ?2)");
            for (SQLite::Statement* statement : {&places, &entry}) {
                statement->bind(1, entryMode);
                statement->bind(2, id);
            }
            places.bind(3, mode.antenna);
            places.bind(4, mode.service);
            places.exec();
            entry.exec();
        });
    });
}

}  // namespace vxtv
