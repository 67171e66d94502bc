#include "virtual_tv/services/timer_store.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/channels/channel_map.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

constexpr int kTimersVersion = 1;
constexpr std::string_view kRecording = "recording";
constexpr std::array<std::string_view, 2> kKinds = {kRecording, "wake-up"};
constexpr std::array<std::string_view, 5> kRepeats = {"once", "daily", "weekdays", "weekend", "weekly"};
constexpr std::size_t kMostTimers = 200;
constexpr int kHighestId = 1'000'000;
constexpr int kMinutesOfADay = 24 * 60;
constexpr std::size_t kLongestTitle = 200;

template <class Words>
std::string wordIn(const Json& value, const std::string& where, const Words& words) {
    const std::string word = stringIn(value, where);
    if (std::find(words.begin(), words.end(), word) == words.end()) {
        throw WrongMember{where, fmt::format("is none of {}", fmt::join(words, ", "))};
    }
    return word;
}

/// The number with two or four digits, or -1.
int digitsIn(std::string_view text) {
    int number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            return -1;
        }
        number = number * 10 + (c - '0');
    }
    return number;
}

int daysOf(int year, int month) {
    constexpr std::array kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return kDays.at(static_cast<std::size_t>(month) - 1) + (leap && month == 2 ? 1 : 0);
}

bool isMoment(std::string_view text) {
    constexpr std::string_view kShape = "0000-00-00T00:00";
    const auto fits = [](char shape, char c) { return shape == '0' ? c >= '0' && c <= '9' : c == shape; };
    if (text.size() != kShape.size() || !std::equal(kShape.begin(), kShape.end(), text.begin(), fits)) {
        return false;
    }
    const int year = digitsIn(text.substr(0, 4));
    const int month = digitsIn(text.substr(5, 2));
    const int day = digitsIn(text.substr(8, 2));
    return year > 0 && month >= 1 && month <= 12 && day >= 1 && day <= daysOf(year, month) &&
           digitsIn(text.substr(11, 2)) < 24 && digitsIn(text.substr(14, 2)) < 60;
}

Timer timerIn(const Json& value, const std::string& where) {
    expectOnly(value, where, {"id", "kind", "start", "minutes", "repeat", "channel", "title"});
    const auto member = [&](const char* name) -> const Json& { return memberOf(value, where, name); };
    const auto numberIn = [&](const char* name, int lowest, int highest) {
        return static_cast<int>(numberBetween(member(name), within(where, name), lowest, highest));
    };
    Timer timer;
    timer.id = numberIn("id", 1, kHighestId);
    timer.kind = wordIn(member("kind"), within(where, "kind"), kKinds);
    timer.start = stringIn(member("start"), within(where, "start"));
    if (!isMoment(timer.start)) {
        throw WrongMember{within(where, "start"), "is no moment as 2027-01-05T20:15"};
    }
    timer.minutes = numberIn("minutes", 1, kMinutesOfADay);
    timer.repeat = wordIn(member("repeat"), within(where, "repeat"), kRepeats);
    timer.channel = numberIn("channel", timer.kind == kRecording ? 1 : 0, kHighestChannelNumber);
    timer.title = visibleText(member("title"), within(where, "title"), kLongestTitle);
    return timer;
}

/// Timers, sorted by id.
std::vector<Timer> timersIn(const Json& document, const std::string& where) {
    expectShortArray(document, where, kMostTimers);
    std::vector<Timer> timers;
    for (const Json& value : document) {
        const std::string entry = entryOf(where, timers.size() + 1);
        Timer timer = timerIn(value, entry);
        if (!timers.empty() && timer.id <= timers.back().id) {
            throw WrongMember{within(entry, "id"), "is not above the one before"};
        }
        timers.push_back(std::move(timer));
    }
    return timers;
}

void insert(SQLite::Database& connection, const std::vector<Timer>& timers) {
    SQLite::Statement row(connection, "INSERT INTO timers VALUES (?, ?, ?, ?, ?, ?, ?)");
    for (const Timer& timer : timers) {
        row.reset();
        row.bind(1, timer.id);
        row.bind(2, timer.kind);
        row.bind(3, timer.start);
        row.bind(4, timer.minutes);
        row.bind(5, timer.repeat);
        row.bind(6, timer.channel);
        row.bind(7, timer.title);
        row.exec();
    }
}

std::vector<Timer> select(SQLite::Database& connection) {
    std::vector<Timer> timers;
    SQLite::Statement row(connection,
                          "SELECT id, kind, start, minutes, repeat, channel, title FROM timers ORDER BY id");
    while (row.executeStep()) {
        timers.push_back({row.getColumn(0).getInt(), row.getColumn(1).getString(),
                          row.getColumn(2).getString(), row.getColumn(3).getInt(),
                          row.getColumn(4).getString(), row.getColumn(5).getInt(),
                          row.getColumn(6).getString()});
    }
    return timers;
}

void createTimers(SQLite::Database& connection, const ServiceSection& section) {
    connection.exec(
        "CREATE TABLE timers (id INTEGER PRIMARY KEY, kind TEXT NOT NULL, start TEXT NOT NULL, "
        "minutes INTEGER NOT NULL, repeat TEXT NOT NULL, channel INTEGER NOT NULL, title TEXT NOT NULL)");
    insert(connection, timersIn(section.content, section.where));
}

Texts timerTexts(SQLite::Database& connection) {
    Texts texts;
    for (const Timer& it : select(connection)) {
        texts[fmt::format("timer {:07}", it.id)] =
            fmt::format("{} \"{}\" {}, {} minutes, {}, channel {}", it.kind, it.title, it.start, it.minutes,
                        it.repeat, it.channel);
    }
    return texts;
}

}  // namespace

constinit const DataService kTimerService = {"timers", createTimers, timerTexts};

Json timersToJson(const std::vector<Timer>& timers) {
    Json document = Json::array();
    for (const Timer& timer : timers) {
        document.push_back({{"id", timer.id},
                            {"kind", timer.kind},
                            {"start", timer.start},
                            {"minutes", timer.minutes},
                            {"repeat", timer.repeat},
                            {"channel", timer.channel},
                            {"title", timer.title}});
    }
    return document;
}

Result<std::vector<Timer>> TimerStore::list() const {
    return database_.read([](SQLite::Database& connection) -> Result<std::vector<Timer>> {
        return requireDataService(connection, kTimerService.name).map([&connection] {
            return select(connection);
        });
    });
}

Result<void> TimerStore::exportTo(const fs::path& directory) const {
    return list().and_then([&directory](const std::vector<Timer>& timers) {
        return writeBackupFile(directory / kTimerFile, kTimerService.name, kTimersVersion,
                               timersToJson(timers));
    });
}

Result<void> TimerStore::importFrom(const fs::path& directory) {
    const fs::path file = directory / kTimerFile;
    const Result<Json> document = readBackupFile(file, kTimerService.name, kTimersVersion);
    VX_RETURN_IF_FAILED(document);
    std::vector<Timer> timers;
    try {
        timers = timersIn(*document, "timers");
    } catch (const WrongMember& wrong) {
        return failure(ErrorCode::BadBackup,
                       fmt::format("the timers of {} cannot be taken: \"{}\" {}; make the backup anew",
                                   file.string(), wrong.member, wrong.reason));
    }
    return database_.write([&timers](SQLite::Database& connection) -> Result<void> {
        return requireDataService(connection, kTimerService.name).map([&] {
            connection.exec("DELETE FROM timers");
            insert(connection, timers);
        });
    });
}

}  // namespace vxtv
