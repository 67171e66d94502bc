#include "cloning_app/run/output.h"

#include <utility>

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

void sayAsText(const Output& output, std::ostream& out) {
    for (const OutputLine& line : output.lines) {
        if (!line.text.empty()) {
            out << line.text << '\n';
        }
    }
    for (const std::string& sentence : output.closing) {
        out << sentence << '\n';
    }
    out << std::flush;
}

}  // namespace

OutputLine lineOf(const Check& check) {
    return {Event::Finding, jsonOf(check)};
}

void addLacks(Output& output, const std::vector<Lack>& lacks) {
    for (const Lack& lack : lacks) {
        output.lines.push_back({Event::Finding, jsonOf(lack)});
    }
    for (std::string& sentence : lackSentences(lacks, "The package")) {
        output.closing.push_back(std::move(sentence));
    }
}

OutputLine lineOf(std::string text) {
    return {Event::Result, {}, std::move(text)};
}

int sayOutput(const Result<Output>& output, bool json, std::ostream& out, std::ostream& err) {
    JsonLines lines(out);
    if (!output) {
        if (json) {
            lines.error(output.error());
        } else {
            err << "vxclone: " << output.error().sentence << '\n' << std::flush;
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
