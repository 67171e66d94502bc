#include "virtual_tv/services/network_time.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netinet/in.h>

#include <algorithm>

#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv {

namespace {

constexpr const char* kNetworkTimeName = "network-time";
constexpr int kLastTimezone = 90;

NetworkTime::State loadState(SQLite::Database& connection) {
    SQLite::Statement row(connection, "SELECT supported, is_on, timezone, server FROM network_time");
    if (!row.executeStep()) {
        return {};
    }
    return {row.getColumn(0).getInt() != 0, row.getColumn(1).getInt() != 0, row.getColumn(2).getInt(),
            row.getColumn(3).getString()};
}

void store(SQLite::Database& connection, const NetworkTime::State& state) {
    SQLite::Statement row(connection, "INSERT OR REPLACE INTO network_time VALUES (1, ?, ?, ?, ?)");
    row.bind(1, state.supported ? 1 : 0);
    row.bind(2, state.on ? 1 : 0);
    row.bind(3, state.timezone);
    row.bind(4, state.server);
    row.exec();
}

bool isHostNamePart(std::string_view part) {
    constexpr std::size_t kLongest = 63;
    constexpr std::string_view kAllowed = "-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    return !part.empty() && part.size() <= kLongest && part.front() != '-' && part.back() != '-' &&
           part.find_first_not_of(kAllowed) == std::string_view::npos;
}

bool isHostName(std::string_view name) {
    constexpr std::size_t kLongest = 253;
    if (name.size() > kLongest) {
        return false;
    }
    while (true) {
        const std::size_t dot = name.find('.');
        if (!isHostNamePart(name.substr(0, dot))) {
            return false;
        }
        if (dot == std::string_view::npos) {
            return true;
        }
        name.remove_prefix(dot + 1);
    }
}

bool isAddress(const std::string& text) {
    in6_addr address{};
    return inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

}  // namespace

bool NetworkTime::isTimezone(int timezone) {
    return timezone >= 0 && timezone <= kLastTimezone;
}

bool NetworkTime::isServer(std::string_view server) {
    return server.empty() || isHostName(server) || isAddress(std::string(server));
}

void NetworkTime::create(SQLite::Database& connection, const ServiceSection& section) {
    const std::string& where = section.where;
    expectOnly(section.content, where, {"supported", "on", "timezone", "server"});
    const auto member = [&](const char* name) { return memberOf(section.content, where, name); };
    const State state = {boolIn(member("supported"), within(where, "supported")),
                         boolIn(member("on"), within(where, "on")),
                         intIn(member("timezone"), within(where, "timezone")),
                         stringIn(member("server"), within(where, "server"))};
    if (!isTimezone(state.timezone)) {
        throw WrongMember{within(where, "timezone"),
                          fmt::format("is {}, not 0 to {}", state.timezone, kLastTimezone)};
    }
    if (!isServer(state.server)) {
        throw WrongMember{within(where, "server"), "is no host name"};
    }
    connection.exec(
        "CREATE TABLE network_time (only_row INTEGER PRIMARY KEY CHECK (only_row = 1), supported INTEGER NOT "
        "NULL, is_on INTEGER NOT NULL, timezone INTEGER NOT NULL, server TEXT NOT NULL)");
    store(connection, state);
}

Texts NetworkTime::texts(SQLite::Database& connection) {
    const State state = loadState(connection);
    Texts texts;
    if (state.supported) {
        texts["on"] = state.on ? "true" : "false";
    }
    if (state.supported && state.on) {
        texts["server"] = nlohmann::json(state.server).dump();
    }
    return texts;
}

Texts NetworkTime::keptTexts(SQLite::Database& connection) {
    const State state = loadState(connection);
    Texts texts = {{"supported", state.supported ? "true" : "false"},
                   {"timezone", std::to_string(state.timezone)}};
    if (!state.supported || !state.on) {
        texts["server"] = nlohmann::json(state.server).dump();
    }
    return texts;
}

Result<NetworkTime::State> NetworkTime::state() const {
    return database_.read([](SQLite::Database& connection) {
        return requireDataService(connection, kNetworkTimeName).map([&connection] {
            return loadState(connection);
        });
    });
}

template <class Change>
Result<void> NetworkTime::change(Change change) const {
    return database_.write([&change](SQLite::Database& connection) -> Result<void> {
        if (const auto present = requireDataService(connection, kNetworkTimeName); !present) {
            return present;
        }
        State state = loadState(connection);
        if (!state.supported) {
            return failure(ErrorCode::NotSupported,
                           "this television cannot take its time from the network; set its clock by hand");
        }
        change(state);
        store(connection, state);
        return {};
    });
}

Result<void> NetworkTime::setOn(bool on) const {
    return change([on](State& state) { state.on = on; });
}

Result<void> NetworkTime::setTimezone(int timezone) const {
    if (!isTimezone(timezone)) {
        return failure(ErrorCode::OutOfRange, fmt::format("there is no time zone {}; give one from 0 to {}",
                                                          timezone, kLastTimezone));
    }
    return change([timezone](State& state) { state.timezone = timezone; });
}

Result<void> NetworkTime::setServer(const std::string& server) const {
    if (!isServer(server)) {
        return failure(ErrorCode::BadArgument,
                       "the time server is no host name; give one, an address, or nothing");
    }
    return change([&server](State& state) { state.server = server; });
}

}  // namespace vxtv
