// The record of a run as JSON.

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "cloning_app/run/run_record.h"
#include "common/strict_json.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

using Json = nlohmann::json;

constexpr std::int64_t kFormatVersion = 1;
constexpr std::size_t kMostRows = 100;
constexpr std::int64_t kMostExitStatus = 255;
/// The deepest value stands in a row of the list of the whole. Each row has five values and their names;
/// there is room for what a later vxclone may add.
constexpr vxcommon::JsonLimits kRecordLimits{4, kMostRows * 20 + 100};

constexpr std::array<std::string_view, 3> kRunKinds = {"backup", "restore", "undo"};
constexpr std::array<std::string_view, 7> kPhases = {"staging",   "safety",       "saving", "writing",
                                                     "restoring", "reading-back", "done"};

/// The text of a member, or none.
std::optional<std::string> text(const Json& object, const char* name) {
    const auto found = object.find(name);
    return found != object.end() && found->is_string() ? std::optional(found->get<std::string>())
                                                       : std::nullopt;
}

/// The number of a member, or none where it is not one from 0 to `most`.
std::optional<std::int64_t> number(const Json& object, const char* name, std::int64_t most) {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_number_integer()) {
        return std::nullopt;
    }
    const auto value = found->get<std::int64_t>();
    return value >= 0 && value <= most ? std::optional(value) : std::nullopt;
}

/// A time that is only shown: one that no clock of ours gives stands for the nearest that it gives.
std::optional<std::int64_t> shownTime(const Json& object, const char* name) {
    const auto found = object.find(name);
    if (found == object.end() || !found->is_number_integer()) {
        return std::nullopt;
    }
    const bool late =
        found->is_number_unsigned() && found->get<std::uint64_t>() > static_cast<std::uint64_t>(kLatestTime);
    return late ? kLatestTime : std::clamp(found->get<std::int64_t>(), kEarliestTime, kLatestTime);
}

bool isTrue(const Json& object, const char* name) {
    const auto found = object.find(name);
    return found != object.end() && *found == true;
}

/// The value whose name the member holds.
template <class Value, std::size_t count>
std::optional<Value> named(const Json& object, const char* name,
                           const std::array<std::string_view, count>& names) {
    const auto wanted = text(object, name);
    for (std::size_t index = 0; wanted && index < count; ++index) {
        if (names.at(index) == *wanted) {
            return static_cast<Value>(index);
        }
    }
    return std::nullopt;
}

nlohmann::ordered_json jsonOfRow(const Row& row) {
    return {{"category", categoryOf(row.category).enumerator},
            {"result", nameOf(row.verdict)},
            {"detail", row.detail},
            {"application", row.subject},
            {"readBack", nameOf(row.readBack)}};
}

std::optional<Row> rowOf(const Json& object) {
    if (!object.is_object()) {
        return std::nullopt;
    }
    const auto category = categoryNamed(text(object, "category").value_or(""));
    const auto verdict = verdictNamed(text(object, "result").value_or(""));
    const auto detail = text(object, "detail");
    const auto subject = text(object, "application");
    if (!category || !verdict || !detail || !subject) {
        return std::nullopt;
    }
    const auto readBack = readBackNamed(text(object, "readBack").value_or(""));
    return Row{*category, *verdict, *detail, *subject, readBack.value_or(ReadBack::None)};
}

std::optional<std::vector<Row>> rowsOf(const Json& object) {
    const auto found = object.find("rows");
    if (found == object.end() || !found->is_array() || found->size() > kMostRows) {
        return std::nullopt;
    }
    std::vector<Row> rows;
    for (const Json& entry : *found) {
        const auto row = rowOf(entry);
        if (!row) {
            return std::nullopt;
        }
        rows.push_back(*row);
    }
    return rows;
}

std::optional<RunRecord> recordOf(const Json& object) {
    if (!object.is_object() || number(object, "version", kFormatVersion) != kFormatVersion) {
        return std::nullopt;
    }
    const auto kind = named<RunKind>(object, "kind", kRunKinds);
    const auto phase = named<RunPhase>(object, "phase", kPhases);
    const auto package = text(object, "package");
    const auto digest = text(object, "digest");
    const auto begun = shownTime(object, "begun");
    const auto rows = rowsOf(object);
    if (!kind || !phase || !package || !digest || !begun || !rows) {
        return std::nullopt;
    }
    RunRecord record{*kind, *phase, *package, *digest, *begun, {}, {}, *rows};
    record.ended = shownTime(object, "ended");
    if (const auto status = number(object, "exit", kMostExitStatus)) {
        record.exitStatus = static_cast<int>(*status);
    }
    record.brokeOffIn = named<RunPhase>(object, "brokeOffIn", kPhases);
    record.halfChanged = isTrue(object, "halfChanged");
    record.allLoaded = isTrue(object, "allLoaded");
    record.wayBack = isTrue(object, "wayBack");
    const bool done = *phase == RunPhase::Done;
    record.name = text(object, "name").value_or("");
    const bool ends = record.ended && record.exitStatus;
    const bool breaks = !record.brokeOffIn || (done && *record.brokeOffIn != RunPhase::Done);
    return ends == done && breaks ? std::optional(record) : std::nullopt;
}

std::optional<RunRecord> recordInText(const std::string& text) {
    try {
        return recordOf(vxcommon::parseStrictly(text, kRecordLimits));
    } catch (const vxcommon::WrongMember&) {
        return std::nullopt;
    } catch (const Json::parse_error&) {
        return std::nullopt;
    }
}

}  // namespace

std::string_view nameOf(RunKind kind) {
    return kRunKinds.at(static_cast<std::size_t>(kind));
}

std::string_view nameOf(RunPhase phase) {
    return kPhases.at(static_cast<std::size_t>(phase));
}

std::string recordText(const RunRecord& record) {
    using OrderedJson = nlohmann::ordered_json;
    OrderedJson object = {{"version", kFormatVersion},         {"kind", nameOf(record.kind)},
                          {"phase", nameOf(record.phase)},     {"package", record.package},
                          {"digest", record.digest},           {"begun", record.begun},
                          {"halfChanged", record.halfChanged}, {"allLoaded", record.allLoaded},
                          {"wayBack", record.wayBack},         {"rows", OrderedJson::array()}};
    if (record.brokeOffIn) {
        object["brokeOffIn"] = nameOf(*record.brokeOffIn);
    }
    if (!record.name.empty()) {
        object["name"] = record.name;
    }
    if (record.ended) {
        object["ended"] = *record.ended;
    }
    if (record.exitStatus) {
        object["exit"] = *record.exitStatus;
    }
    for (const Row& row : record.rows) {
        object["rows"].push_back(jsonOfRow(row));
    }
    return object.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

Result<RunRecord> parseRecord(const std::string& text, const std::string& path) {
    auto record = recordInText(text);
    if (!record) {
        return failure(ErrorCode::RecordDamaged,
                       "the record of the last run cannot be understood, so nothing is known of it; remove " +
                           vxcommon::printable(path));
    }
    return *std::move(record);
}

}  // namespace vxclone
