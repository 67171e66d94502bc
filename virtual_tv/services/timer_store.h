#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// The service of recordings and wake-ups.
extern const DataService kTimerService;

/// The file of the timers, in the directory that the caller passes; docs/service-backups.md describes it.
inline constexpr const char* kTimerFile = "timers.backup";

struct Timer {
    int id = 0;          ///< unique
    std::string kind;    ///< "recording" or "wake-up"
    std::string start;   ///< the television's local time: "2027-01-05T20:15"
    int minutes = 0;     ///< how long it lasts
    std::string repeat;  ///< "once", "daily", "weekdays", "weekend" or "weekly"
    int channel = 0;     ///< the channel's number; 0, only for a wake-up: the last channel
    std::string title;
};

/// The timers as the JSON document of their file and of `vxtv timers --json`.
nlohmann::json timersToJson(const std::vector<Timer>& timers);

/// The timers of a television, sorted by id.
///
/// Errors common to all: UnknownService if the television has no timers, and those of `Database`. Threads and
/// processes: any.
class TimerStore {
 public:
    explicit TimerStore(Database& database) : database_(database) {}

    Result<std::vector<Timer>> list() const;

    /// Writes the timers into the directory, which must exist. Errors: those of writeBackupFile.
    Result<void> exportTo(const std::filesystem::path& directory) const;

    /// Replaces the television's timers by those in the directory: all of them or, after an error, none.
    /// Errors: those of readBackupFile; BadBackup for an invalid timer.
    Result<void> importFrom(const std::filesystem::path& directory);

 private:
    Database& database_;
};

}  // namespace vxtv
