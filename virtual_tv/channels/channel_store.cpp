#include "virtual_tv/channels/channel_store.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/channels/channel_json.h"
#include "virtual_tv/channels/navigation_lists.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv {

using Json = nlohmann::json;

namespace {

constexpr const char* kClearTables =
    "DELETE FROM transponders; DELETE FROM channels; DELETE FROM hotel_channels";

void createTables(SQLite::Database& connection) {
    connection.exec(
        "CREATE TABLE transponders (id INTEGER PRIMARY KEY, system TEXT NOT NULL, frequency INTEGER NOT "
        "NULL, "
        "parameters TEXT NOT NULL)");
    connection.exec(
        "CREATE TABLE channels (number INTEGER PRIMARY KEY, transponder INTEGER NOT NULL, "
        "service_id INTEGER NOT NULL, name TEXT NOT NULL, radio INTEGER NOT NULL, encrypted INTEGER NOT "
        "NULL, "
        "UNIQUE (transponder, service_id))");
    connection.exec(
        "CREATE TABLE hotel_channels (position INTEGER PRIMARY KEY, channel INTEGER NOT NULL, "
        "name TEXT NOT NULL)");
}

void insertTransponders(SQLite::Database& connection, const std::vector<Transponder>& transponders) {
    SQLite::Statement insert(connection, "INSERT INTO transponders VALUES (NULL, ?, ?, ?)");
    for (const Transponder& transponder : transponders) {
        insert.reset();
        insert.bind(1, transponder.system);
        insert.bind(2, transponder.frequency);
        insert.bind(3, Json(transponder.parameters).dump());
        insert.exec();
    }
}

void insertChannels(SQLite::Database& connection, const std::vector<Channel>& channels) {
    SQLite::Statement insert(connection, "INSERT INTO channels VALUES (?, ?, ?, ?, ?, ?)");
    for (const Channel& channel : channels) {
        insert.reset();
        insert.bind(1, channel.number);
        insert.bind(2, channel.transponder);
        insert.bind(3, channel.serviceId);
        insert.bind(4, channel.name);
        insert.bind(5, channel.isRadio ? 1 : 0);
        insert.bind(6, channel.isEncrypted ? 1 : 0);
        insert.exec();
    }
}

void insertHotelList(SQLite::Database& connection, const std::vector<HotelChannel>& hotelList) {
    SQLite::Statement insert(connection, "INSERT INTO hotel_channels VALUES (NULL, ?, ?)");
    for (const HotelChannel& line : hotelList) {
        insert.reset();
        insert.bind(1, line.channel);
        insert.bind(2, line.name);
        insert.exec();
    }
}

std::vector<Transponder> selectTransponders(SQLite::Database& connection) {
    std::vector<Transponder> transponders;
    SQLite::Statement row(connection, "SELECT system, frequency, parameters FROM transponders ORDER BY id");
    while (row.executeStep()) {
        transponders.push_back({row.getColumn(0).getString(), row.getColumn(1).getInt64(),
                                Json::parse(row.getColumn(2).getString())});
    }
    return transponders;
}

std::vector<Channel> selectChannels(SQLite::Database& connection) {
    std::vector<Channel> channels;
    SQLite::Statement row(
        connection,
        "SELECT number, transponder, service_id, name, radio, encrypted FROM channels ORDER BY number");
    while (row.executeStep()) {
        channels.push_back({row.getColumn(0).getInt(), row.getColumn(1).getInt(), row.getColumn(2).getInt(),
                            row.getColumn(3).getString(), row.getColumn(4).getInt() != 0,
                            row.getColumn(5).getInt() != 0});
    }
    return channels;
}

std::vector<HotelChannel> selectHotelList(SQLite::Database& connection) {
    std::vector<HotelChannel> hotelList;
    SQLite::Statement row(connection, "SELECT channel, name FROM hotel_channels ORDER BY position");
    while (row.executeStep()) {
        hotelList.push_back({row.getColumn(0).getInt(), row.getColumn(1).getString()});
    }
    return hotelList;
}

template <class Value>
Value valueOrWrong(Result<Value> value, const std::string& where) {
    if (!value) {
        throw WrongMember{where, fmt::format("is of no use: {}", value.error().sentence)};
    }
    return std::move(*value);
}

std::vector<Transponder> readTable(const std::string& name, const std::string& where) {
    constexpr std::size_t kLargestTable = 1U << 20U;
    const auto file = valueOrWrong(findDvbTable(name), where);
    const auto text = readPlainFile(file, kLargestTable + 1);
    if (!text || text->size() > kLargestTable) {
        throw WrongMember{where, fmt::format("names {}: {}", file.string(),
                                             text ? "it is too large" : text.error().reason)};
    }
    return valueOrWrong(parseDvbTable(*text, name), where);
}

ChannelMap mapOf(const Json& content, const std::string& where) {
    constexpr std::size_t kMostTables = 16;
    const std::string inside = within(where, "tables");
    const Json& tables = memberOf(content, where, "tables");
    expectShortArray(tables, inside, kMostTables);
    ChannelMap map;
    for (std::size_t place = 0; place < tables.size(); ++place) {
        const std::string entry = entryOf(inside, place + 1);
        const auto more = readTable(stringIn(tables[place], entry), entry);
        map.transponders.insert(map.transponders.end(), more.begin(), more.end());
    }
    if (map.transponders.size() > kMostTransponders) {
        throw WrongMember{inside, fmt::format("hold more than {} transponders", kMostTransponders)};
    }
    const auto services =
        numberBetween(memberOf(content, where, "servicesPerTransponder"),
                      within(where, "servicesPerTransponder"), 1, kMostServicesPerTransponder);
    map.channels = makeChannels(map.transponders, static_cast<int>(services));
    if (map.channels.size() > kMostChannels) {
        throw WrongMember{where, fmt::format("has more than {} channels", kMostChannels)};
    }
    return map;
}

void createChannels(SQLite::Database& connection, const ServiceSection& section) {
    expectOnly(section.content, section.where,
               {"tables", "servicesPerTransponder", "hotelList", "navigation"});
    const ChannelMap map = mapOf(section.content, section.where);
    createTables(connection);
    insertTransponders(connection, map.transponders);
    insertChannels(connection, map.channels);
    insertHotelList(connection, hotelListIn(memberOf(section.content, section.where, "hotelList"),
                                            within(section.where, "hotelList"), map.channels));
    NavigationLists::create(connection, memberOf(section.content, section.where, "navigation"),
                            within(section.where, "navigation"));
}

Texts channelTexts(SQLite::Database& connection) {
    Texts texts;
    const std::vector<Transponder> transponders = selectTransponders(connection);
    for (std::size_t place = 0; place < transponders.size(); ++place) {
        const Transponder& it = transponders[place];
        texts[fmt::format("transponder {:04}", place + 1)] =
            fmt::format("{} {} {}", it.system, it.frequency, Json(it.parameters).dump());
    }
    for (const Channel& it : selectChannels(connection)) {
        texts[fmt::format("channel {:05}", it.number)] =
            fmt::format("{}, {}{}, service {} of transponder {}", it.name, it.isRadio ? "radio" : "tv",
                        it.isEncrypted ? ", encrypted" : "", it.serviceId, it.transponder);
    }
    const std::vector<HotelChannel> hotelList = selectHotelList(connection);
    for (std::size_t place = 0; place < hotelList.size(); ++place) {
        texts[fmt::format("hotel list {:04}", place + 1)] =
            fmt::format("{} on channel {}", hotelList[place].name, hotelList[place].channel);
    }
    return texts;
}

}  // namespace

constinit const DataService kChannelService = {"channels", createChannels, channelTexts,
                                               NavigationLists::texts, "navigation-lists"};

Result<ChannelMap> ChannelStore::map() const {
    return database_.read([](SQLite::Database& connection) -> Result<ChannelMap> {
        // One transaction, so that both tables are read in the same state.
        const SQLite::Transaction look(connection);
        return requireDataService(connection, kChannelService.name).map([&connection] {
            return ChannelMap{selectTransponders(connection), selectChannels(connection)};
        });
    });
}

Result<std::vector<HotelChannel>> ChannelStore::hotelList() const {
    return database_.read([](SQLite::Database& connection) -> Result<std::vector<HotelChannel>> {
        return requireDataService(connection, kChannelService.name).map([&connection] {
            return selectHotelList(connection);
        });
    });
}

Result<void> ChannelStore::replace(const ChannelMap& map, const std::vector<HotelChannel>& hotelList) {
    return database_.write([&](SQLite::Database& connection) -> Result<void> {
        if (const auto present = requireDataService(connection, kChannelService.name); !present) {
            return present;
        }
        connection.exec(kClearTables);
        insertTransponders(connection, map.transponders);
        insertChannels(connection, map.channels);
        insertHotelList(connection, hotelList);
        NavigationLists::markStale(connection);
        return {};
    });
}

}  // namespace vxtv
