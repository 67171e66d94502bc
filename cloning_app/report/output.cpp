#include "cloning_app/report/output.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <utility>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

void sayAsJson(const Output& output, JsonLines& lines) {
    for (const OutputLine& line : output.lines) {
        if (!line.members.empty()) {
            lines.write(line.event, line.members);
        }
    }
    nlohmann::ordered_json summary = {{"exit", output.exitStatus}, {"messages", output.closing}};
    summary.update(output.summary.is_null() ? nlohmann::ordered_json::object() : output.summary);
    lines.write(Event::Summary, summary);
}

/// A list entry is indented, and its continuation lines by two more columns.
void sayLine(Outlet& out, std::string_view line) {
    constexpr std::size_t kFarther = 2;
    const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
    out.writer.line(sentenceFor(out.screen, line, blanks == 0 ? 0 : blanks + kFarther));
}

void sayAsText(const Output& output, Outlet& out) {
    bool first = true;
    for (const OutputLine& line : output.lines) {
        std::istringstream text(line.text.text());
        for (std::string each; std::getline(text, each);) {
            sayLine(out, each);
        }
        if (line.table) {
            if (!first) {
                out.writer.write("\n");
            }
            out.writer.write(line.table->render(out.screen));
        }
        first = first && line.text.empty() && !line.table;
    }
    for (const std::string& sentence : output.closing) {
        sayLine(out, sentence);
    }
    out.writer.flush();
}

}  // namespace

OutputLine lineOf(const Check& check) {
    return {Event::Finding, jsonOf(check)};
}

void addLacks(Output& output, const std::vector<Lack>& lacks, const std::string& path) {
    for (const Lack& lack : lacks) {
        output.lines.push_back({Event::Finding, jsonOf(lack)});
        if (!path.empty()) {
            output.lines.back().members["path"] = path;
        }
    }
    const std::string subject = path.empty() ? "The package" : vxcommon::printable(path).text();
    for (std::string& sentence : lackSentences(lacks, subject)) {
        output.closing.push_back(std::move(sentence));
    }
}

OutputLine lineOf(vxcommon::Printable text) {
    return {Event::Result, {}, std::move(text)};
}

OutputLine lineOf(vxcommon::TerminalTable table) {
    return {Event::Result, {}, {}, std::move(table)};
}

int sayOutput(const Result<Output>& output, bool json, Outlet out, Outlet err) {
    JsonLines lines(out.writer);
    if (!output) {
        if (json) {
            lines.error(output.error());
        } else {
            sayLine(err, "vxclone: " + output.error().sentence);
            err.writer.flush();
        }
        return exitStatusOf(output.error().code);
    }
    if (json) {
        sayAsJson(*output, lines);
    } else {
        sayAsText(*output, out);
    }
    return output->exitStatus;
}

}  // namespace vxclone
