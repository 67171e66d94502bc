#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/report/json_lines.h"
#include "common/writer.h"

namespace vxclone {

/// One item of a command's output, for people and for programs. An empty form is not written.
struct OutputLine {
    Event event;
    nlohmann::ordered_json members = {};  ///< for programs
    vxcommon::Printable text = {};  ///< for people; may be several lines, the last one without a line end
    /// For people, below the text, separated from what is above.
    std::optional<vxcommon::TerminalTable> table = {};
};

/// The output of a command that changes nothing.
struct Output {
    std::vector<OutputLine> lines;
    int exitStatus = kExitOk;
    std::vector<std::string> closing = {};  ///< sentences for the end
    nlohmann::ordered_json summary = {};    ///< further members of the summary, for programs; may be empty
};

/// The line for a check of a package, only for programs.
OutputLine lineOf(const Check& check);
/// Adds what a package lacks: one line for each lack for programs, and sentences at the end for people. If
/// there are several packages, `path` says which one it is.
void addLacks(Output& output, const std::vector<Lack>& lacks, const std::string& path = {});
/// A text only for people.
OutputLine lineOf(vxcommon::Printable text);
/// A table only for people.
OutputLine lineOf(vxcommon::TerminalTable table);

/// A stream for the output, and the screen at its end.
struct Outlet {
    vxcommon::Writer writer = vxcommon::standardOutput();
    vxcommon::Screen screen = {};
};

/// Writes the output or the error, as text that fits the screen or as JSON lines. Result: the exit status.
int sayOutput(const Result<Output>& output, bool json, Outlet out, Outlet err);

}  // namespace vxclone
