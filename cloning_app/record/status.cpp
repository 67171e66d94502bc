#include "cloning_app/record/status.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "cloning_app/base/error_catalogue.h"
#include "cloning_app/record/run_remains.h"
#include "cloning_app/television/kept_run_keys.h"
#include "cloning_app/television/settings_store.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr std::chrono::milliseconds kFollowInterval{50};
constexpr const char* kLooking =
    "Going on: another vxclone looks at this television (diff, verify or a dry run), and changes nothing.";

Direction directionOf(const std::optional<LastRun>& last) {
    return last && last->record.kind == RunKind::Backup ? Direction::Backup : Direction::Restore;
}

/// The meaning of a run's exit status.
std::string_view meaningOf(int status) {
    const auto facts = exitStatuses();
    const auto found = std::find_if(facts.begin(), facts.end(),
                                    [status](const StatusFact& fact) { return fact.status == status; });
    return found == facts.end() ? "ended in an unknown way" : found->meaning;
}

/// Whether the two keys belong to this run, and not to a safety backup or an earlier run.
bool isReported(RunPhase phase) {
    return phase == RunPhase::Saving || phase == RunPhase::Restoring;
}

/// For a run that is done.
std::string howItBrokeOff(const RunRecord& record) {
    if (remainsOf(record)) {
        return fmt::format(" in phase {}: {}", nameOf(*record.brokeOffIn), consequenceOf(record));
    }
    const bool late = record.exitStatus == exitStatusOf(ErrorCode::Interrupted);
    return late && !record.brokeOffIn ? " after its end: nothing is missing" : "";
}

/// Whether a finished run left the television changed in an unintended way.
bool leftTheTelevisionChanged(const LastRun& last) {
    return !last.goingOn && last.record.halfChanged;
}

std::string sentenceOf(const LastRun& last) {
    const RunRecord& record = last.record;
    const std::string what = describe(record);
    if (last.goingOn) {
        const std::string far = last.progress ? fmt::format(", {} %", last.progress->percent) : std::string();
        return fmt::format("Going on: {}; phase {}{}.", what, nameOf(record.phase), far);
    }
    if (last.unfinished()) {
        return fmt::format("UNFINISHED: {}; it died in phase {}: {}.", what, nameOf(record.phase),
                           consequenceOf(record));
    }
    const std::string failed = failedNames(record.rows);
    return fmt::format("Last run: {}, ended {}: {}{}{}.", what, timeText(record.ended.value_or(0)),
                       meaningOf(record.exitStatus.value_or(kExitOk)),
                       failed.empty() ? "" : " (" + failed + ")", howItBrokeOff(record));
}

/// The package by its name and its digest, as far as they are recorded.
std::vector<std::string> packageSentences(const RunRecord& record) {
    std::string text = record.name.empty() ? "" : fmt::format(" \"{}\"", vxcommon::printable(record.name));
    if (!record.digest.empty()) {
        text += (text.empty() ? " digest " : ", digest ") + vxcommon::printable(record.digest).text();
    }
    return text.empty() ? std::vector<std::string>() : std::vector{"The package:" + text + "."};
}

/// For a finished run, the record has more details than the library's list: the application of each result,
/// and the read-back.
bool hasResults(const Status& status) {
    return status.last && status.last->record.phase == RunPhase::Done && !status.last->record.rows.empty();
}

nlohmann::ordered_json jsonOf(const LastRun& last) {
    const RunRecord& record = last.record;
    nlohmann::ordered_json members = {{"run", nameOf(record.kind)},
                                      {"phase", nameOf(record.phase)},
                                      {"package", record.package},
                                      {"begun", timeText(record.begun)}};
    if (!record.name.empty()) {
        members["name"] = record.name;
    }
    if (!record.digest.empty()) {
        members["digest"] = record.digest;
    }
    if (record.ended) {
        members["ended"] = timeText(*record.ended);
    }
    if (record.exitStatus) {
        members["exit"] = *record.exitStatus;
    }
    if (record.brokeOffIn) {
        members["brokeOffIn"] = nameOf(*record.brokeOffIn);
    }
    if (const auto remains = remainsOf(record); remains && !last.goingOn) {
        members["left"] = nameOf(*remains);
    }
    if (leftTheTelevisionChanged(last)) {
        members["television"] = nameOf(record.allLoaded ? Remains::NotReadBack : Remains::HalfChanged);
    }
    const std::string_view state = last.unfinished() ? "unfinished" : "ended";
    return {{"check", "last-run"}, {"result", last.goingOn ? "going-on" : state}, {"lastRun", members}};
}

/// The keys of the last run. If a look begins meanwhile, it saves them before it changes them.
RunKeys keysOfLastRun(const std::filesystem::path& folder) {
    if (const auto before = notedRunKeys(folder)) {
        return *before;
    }
    const RunKeys now{store::readInt(kProgressKey), store::readString(kResultKey).value_or("")};
    return notedRunKeys(folder).value_or(now);
}

Progress progressOf(const ToldProgress& told) {
    Progress progress;
    progress.phase = told.phase;
    progress.percent = told.percent;
    return progress;
}

}  // namespace

Result<Status> readStatus(const std::filesystem::path& folder) {
    auto last = readLastRun(folder);
    VX_RETURN_IF_FAILED(last);
    const RunKeys keys = keysOfLastRun(folder);
    const auto loaded = *last && (*last)->goingOn ? std::nullopt : keys.percent;
    Status status{.percent = loaded,
                  .reported = {},
                  .unknown = {},
                  .last = *std::move(last),
                  .looking = isLookGoingOn(folder)};
    ResultList results;
    for (const Outcome& outcome : results.update(keys.results)) {
        status.reported.push_back(rowOf(outcome, directionOf(status.last)));
    }
    status.unknown = results.unknownLines();
    return status;
}

std::vector<std::string> sentencesOf(const Status& status) {
    std::vector<std::string> sentences;
    for (const std::string& line : status.unknown) {
        sentences.push_back("The library reported something unknown: " + vxcommon::printable(line));
    }
    if (status.percent && !hasResults(status)) {
        sentences.push_back(fmt::format("Progress of the last restore: {} %.", *status.percent));
    }
    sentences.push_back(status.last ? sentenceOf(*status.last) : "No run is recorded.");
    const auto package = status.last ? packageSentences(status.last->record) : std::vector<std::string>();
    sentences.insert(sentences.end(), package.begin(), package.end());
    if (status.last && !status.last->goingOn) {
        if (auto earlier = sentenceAboutEarlier(status.last->record)) {
            sentences.push_back(*std::move(earlier));
        }
    }
    if (status.looking) {
        sentences.emplace_back(kLooking);
    }
    return sentences;
}

Output outputOf(const Status& status) {
    Output output;
    if (status.percent) {
        output.lines.push_back({Event::Progress, {{"percent", *status.percent}}});
    } else if (status.last && status.last->progress) {
        const ToldProgress& told = *status.last->progress;
        output.lines.push_back({Event::Progress,
                                {{"run", nameOf(status.last->record.kind)},
                                 {"phase", nameOf(told.phase)},
                                 {"percent", told.percent}}});
    }
    const bool ended = hasResults(status);
    const std::vector<Row>& rows = ended ? status.last->record.rows : status.reported;
    for (const Row& row : rows) {
        output.lines.push_back({Event::Result, vxclone::jsonOf(row)});
    }
    if (!rows.empty()) {
        output.lines.push_back(lineOf(tableOf(rows, {}, ended ? "result" : "reported by the library")));
        output.lines.push_back(lineOf(vxcommon::printable(notChosen(rows))));
    }
    if (status.last) {
        output.lines.push_back({Event::Finding, jsonOf(*status.last)});
    }
    const bool unfinished =
        status.last && (status.last->unfinished() || leftTheTelevisionChanged(*status.last));
    output.exitStatus = unfinished ? exitStatusOf(ErrorCode::CategoryFailed) : kExitOk;
    output.closing = sentencesOf(status);
    if (status.looking) {
        output.summary = {{"looking", true}};
    }
    return output;
}

void nameUnfinishedRun(Output& output, const std::filesystem::path& folder) {
    const auto last = readLastRun(folder);
    if (!last || !*last || (*last)->goingOn) {
        return;
    }
    const RunRecord& record = (*last)->record;
    auto earlier = sentenceAboutEarlier(record);
    if ((*last)->unfinished() || (record.halfChanged && !earlier)) {
        output.closing.push_back(sentenceOf(**last));
    }
    if (earlier) {
        output.closing.push_back(*std::move(earlier));
    }
}

Result<Status> followRun(const std::filesystem::path& folder, ProgressView& view, const StopFlag& stop) {
    std::size_t shown = 0;
    std::optional<ToldProgress> told;
    for (;;) {
        auto status = readStatus(folder);
        if (!status || !status->last || !status->last->goingOn) {
            return status;
        }
        if (stop.raised()) {
            return tl::make_unexpected(stopError(stop.signal()));
        }
        const RunPhase phase = status->last->record.phase;
        shown = std::min(shown, status->reported.size());
        for (; isReported(phase) && shown < status->reported.size(); ++shown) {
            view.category(status->reported[shown]);
        }
        if (const auto& now = status->last->progress; now && now != told) {
            told = now;
            view.progress(progressOf(*now));
        }
        view.tick();
        std::this_thread::sleep_for(kFollowInterval);
    }
}

}  // namespace vxclone
