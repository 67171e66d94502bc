#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "common/json_text.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/calls/line_file.h"

namespace vxtv {

/// A platform call as it is logged.
struct CallRecord {
    std::int64_t timeUs = 0;  ///< of the monotonic clock, at the end of the call
    int process = 0;
    int thread = 0;
    std::string call;
    nlohmann::ordered_json arguments;  ///< names and numbers; for a value that may be secret, its length
    nlohmann::ordered_json result;
    std::optional<std::int64_t> fault;  ///< the fault that took effect
};

/// The record as one JSON object, without a line end.
vxcommon::JsonText toJsonText(const CallRecord& record);

/// The platform calls of one television, one JSON object for each line. Threads and processes: any.
class CallLog {
 public:
    explicit CallLog(const std::filesystem::path& file);

    /// Appends the call and fills in time, process and thread. Result: whether it was written.
    bool append(CallRecord record);

    /// Passes every record to `visit`, oldest first. Result: the number of lines that are not a record; a
    /// full disk or a killed process may leave such lines. Errors: Io.
    Result<int> read(const std::function<void(const CallRecord&)>& visit) const;

    /// Empties the log. Errors: Io.
    Result<void> clear();

 private:
    std::filesystem::path path_;
    LineFile file_;
};

}  // namespace vxtv
