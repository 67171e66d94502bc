#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "cloning_app/report/lack.h"
#include "cloning_app/report/result_table.h"
#include "common/writer.h"

namespace vxclone {

/// The version of the JSON lines: a member may be added, none is renamed or removed without a new version.
inline constexpr int kJsonVersion = 1;

/// The kind of a line.
enum class Event {
    Progress,  ///< the progress of a run
    Result,    ///< the result for one thing: a category, a setting, a file
    Finding,   ///< the result of a check of a package or of the television
    Summary,   ///< the end of a successful command; the last line
    Failure    ///< the end of a command that failed; the last line
};

std::string_view nameOf(Event event);

/// Writes JSON objects, one on each line.
class JsonLines {
 public:
    explicit JsonLines(vxcommon::Writer out) : out_(out) {}

    /// The line contains the version, the event and the members, which are an object.
    void write(Event event, const nlohmann::ordered_json& members);

    /// The last line of a command that failed.
    void error(const Error& error);

 private:
    vxcommon::Writer out_;
};

/// The members for a row, a check, and a lack. Empty members are left out.
nlohmann::ordered_json jsonOf(const Row& row);
nlohmann::ordered_json jsonOf(const Check& check);
nlohmann::ordered_json jsonOf(const Lack& lack);

}  // namespace vxclone
