#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "cloning_app/report/lack.h"
#include "cloning_app/report/result_table.h"
#include "common/writer.h"

namespace vxclone {

/// The version of the JSON lines: a member may be added, none is renamed or removed without a new version.
inline constexpr int kJsonVersion = 1;

/// What one line tells.
enum class Event {
    Progress,  ///< where a run stands
    Result,    ///< what became of one thing: a category, a setting, a file
    Finding,   ///< what was judged of a package or of the television
    Summary,   ///< the end of a command that did its work; the last line
    Failure    ///< the end of a command that did not; the last line
};

std::string_view nameOf(Event event);

/// Writes JSON objects, one a line.
class JsonLines {
 public:
    explicit JsonLines(vxcommon::Writer out) : out_(out) {}

    /// The line has the version, the event and then the members, an object.
    void write(Event event, const nlohmann::ordered_json& members);

    /// The last line of a command that could not do its work.
    void error(const Error& error);

 private:
    vxcommon::Writer out_;
};

/// The members that tell a row, a check, and what is lacking; what is empty is left out.
nlohmann::ordered_json jsonOf(const Row& row);
nlohmann::ordered_json jsonOf(const Check& check);
nlohmann::ordered_json jsonOf(const Lack& lack);

}  // namespace vxclone
