#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/report/json_lines.h"
#include "common/writer.h"

namespace vxclone {

/// One thing that a command found, for both kinds of readers. A form that is empty is not written.
struct OutputLine {
    Event event;
    nlohmann::ordered_json members = {};  ///< for programs
    vxcommon::Printable text = {};        ///< for people; may be several lines, the last one without its end
    /// For people, below the text, and apart from what is above it.
    std::optional<vxcommon::TerminalTable> table = {};
};

/// What a command found that looks and changes nothing.
struct Output {
    std::vector<OutputLine> lines;
    int exitStatus = kExitOk;
    std::vector<std::string> closing = {};  ///< sentences for the end
    nlohmann::ordered_json summary = {};    ///< what the summary says besides, for programs; may be empty
};

/// The line for a check of a package, for programs alone.
OutputLine lineOf(const Check& check);
/// Adds what a package lacks: a line each for programs, sentences at the end for people. `path` says which
/// one it is, where there is more than one.
void addLacks(Output& output, const std::vector<Lack>& lacks, const std::string& path = {});
/// Text for people alone.
OutputLine lineOf(vxcommon::Printable text);
/// A table for people alone.
OutputLine lineOf(vxcommon::TerminalTable table);

/// Where a command writes, and what is behind it.
struct Outlet {
    vxcommon::Writer writer = vxcommon::standardOutput();
    vxcommon::Screen screen = {};
};

/// Writes all of it, or the error, as text that fits the screen or as JSON lines. Result: the exit status.
int sayOutput(const Result<Output>& output, bool json, Outlet out, Outlet err);

}  // namespace vxclone
