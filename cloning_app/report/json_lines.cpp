#include "cloning_app/report/json_lines.h"

#include <array>
#include <nlohmann/json.hpp>

namespace vxclone {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 5> kEventNames = {"progress", "result", "finding", "summary", "error"};
static_assert(kEventNames.size() == static_cast<std::size_t>(Event::Failure) + 1);

void addText(Json& members, const char* name, const std::string& text) {
    if (!text.empty()) {
        members[name] = text;
    }
}

}  // namespace

std::string_view nameOf(Event event) {
    return kEventNames.at(static_cast<std::size_t>(event));
}

void JsonLines::write(Event event, const Json& members) {
    Json line = {{"version", kJsonVersion}, {"event", nameOf(event)}};
    line.update(members);
    out_.line(vxcommon::JsonText(line));
    out_.flush();
}

void JsonLines::error(const Error& error) {
    write(Event::Failure, {{"code", vxclone::nameOf(error.code)},
                           {"exit", exitStatusOf(error.code)},
                           {"message", error.sentence}});
}

Json jsonOf(const Row& row) {
    Json members = {
        {"kind", "category"}, {"category", categoryOf(row.category).name}, {"result", nameOf(row.verdict)}};
    addText(members, "application", row.subject);
    addText(members, "detail", row.detail);
    addText(members, "readBack", std::string(nameOf(row.readBack)));
    return members;
}

Json jsonOf(const Lack& lack) {
    Json members = {{"check", "completeness"},
                    {"result", lack.declared ? "declared" : "lacking"},
                    {"category", categoryOf(lack.category).name}};
    addText(members, "what", lack.what);
    return members;
}

Json jsonOf(const Check& check) {
    Json members = {{"check", nameOf(check.subject)}, {"result", nameOf(check.finding)}};
    addText(members, "television", check.television);
    addText(members, "package", check.package);
    addText(members, "detail", check.detail);
    return members;
}

}  // namespace vxclone
