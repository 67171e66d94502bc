#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/store/database.h"

namespace vxtv {

/// Makes a platform call fail or come late. Calls of all processes are counted from the moment the fault was
/// added.
struct Fault {
    std::int64_t id = 0;             ///< given by the plan
    std::string call;                ///< as in contract_calls.h
    std::int64_t nth = 1;            ///< the first affected call
    bool fromThenOn = false;         ///< every later call is affected, too
    std::optional<int> status;       ///< what the call returns instead of doing its work
    std::optional<int> delayMs;      ///< how long the call waits first
    std::int64_t seen = 0;           ///< matching calls so far
    std::optional<std::string> key;  ///< matches only calls with this first argument
};

/// The effect of the plan on one call.
struct FaultAction {
    std::int64_t id = 0;  ///< the first fault that takes effect
    std::optional<int> status;
    std::int64_t delayMs = 0;  ///< the sum of all faults that take effect
};

/// The faults of one television. Threads and processes: any. Errors common to all: those of `Database`.
class FaultPlan {
 public:
    explicit FaultPlan(Database& database) : database_(database) {}

    /// Makes the table; part of the creation of a television.
    static void create(SQLite::Database& connection);

    /// Adds the fault; ignores its `id` and `seen`. Result: the new id. Errors: UnknownCall; OutOfRange for
    /// an nth below 1 or a negative delay; BadArgument if it has neither status nor delay, a status for a
    /// call that never fails, an empty key, or a key for a call whose first argument is not a text.
    Result<std::int64_t> add(const Fault& fault);

    /// All faults, ordered by id.
    Result<std::vector<Fault>> list() const;

    /// Removes all faults. Result: the number of removed faults.
    Result<int> clear();

    /// Counts one call. Result: what happens to it, usually nothing, which costs one look-up. `key` is its
    /// first argument if that is a text.
    Result<std::optional<FaultAction>> onCall(std::string_view call,
                                              std::optional<std::string_view> key = std::nullopt);

 private:
    Database& database_;
};

}  // namespace vxtv
