#include "cloning_app/run/loading.h"

#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/package/disk_space.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/run/applications.h"
#include "cloning_app/run/compared_state.h"
#include "cloning_app/run/kept_identity.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/run_parts.h"
#include "cloning_app/run/settings_store.h"

namespace vxclone {

namespace {

constexpr std::size_t kMostKeysNamed = 3;

std::string someOf(const std::vector<std::string>& keys) {
    std::string text;
    for (std::size_t index = 0; index < std::min(keys.size(), kMostKeysNamed); ++index) {
        text += (text.empty() ? "" : " ") + keys[index];
    }
    return keys.size() > kMostKeysNamed ? text + fmt::format(" and {} more", keys.size() - kMostKeysNamed)
                                        : text;
}

Row judgeSettings(const std::optional<std::vector<Setting>>& settings) {
    if (!settings) {
        return {VXCLONE_VCONF_DATA, Verdict::Failed, fmt::format("the package holds no {}", kSettingsFile)};
    }
    const std::vector<std::string> missed = settingsNotApplied(*settings);
    const std::size_t all = settings->size();
    if (missed.empty()) {
        return {VXCLONE_VCONF_DATA, Verdict::Done, "applied, " + countText(all, "setting")};
    }
    return {VXCLONE_VCONF_DATA, Verdict::Failed,
            fmt::format("{} of {} applied; not {}", all - missed.size(), all, someOf(missed))};
}

/// Puts the television's own values back, and says so.
void putBack(const std::vector<Setting>& kept, Row& row) {
    const std::vector<std::string> lost = writeBack(kept);
    if (lost.empty()) {
        row.detail += "; kept, " + countText(kept.size(), "setting");
    } else {
        row.verdict = Verdict::Failed;
        row.detail += "; not kept: " + someOf(lost);
    }
}

/// Says of a failed category when the package did not hold what it needs.
void explainMissingEntries(std::vector<Row>& rows, const Tree& root) {
    for (Row& row : rows) {
        if (row.verdict == Verdict::Failed && !holdsEntry(root, row.category).value_or(true)) {
            row.detail = "the package holds no " + std::string(categoryOf(row.category).entry);
        }
    }
}

/// The library calls it a failure to take the boot logo away.
void judgeRemovedLogo(std::vector<Row>& rows) {
    for (Row& row : rows) {
        if (row.category == VXCLONE_HOSPITALITY_LOGO && row.verdict == Verdict::Failed && !hasBootLogo()) {
            row = {VXCLONE_HOSPITALITY_LOGO, Verdict::Done, "taken away: there was none before"};
        }
    }
}

/// What the package holds of what is loaded.
Result<ComparedState> expectedOf(const Tree& package, const std::optional<std::vector<Setting>>& settings) {
    auto contents = readContents(package);
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    ComparedState state{settings.value_or(std::vector<Setting>{}), {}};
    for (PackageEntry& entry : contents->entries) {
        if (!entry.folder && entry.path != kSettingsFile) {
            state.entries.push_back(std::move(entry));
        }
    }
    return state;
}

/// What is made ready before the library is let loose.
struct Preparation {
    std::vector<Setting> kept;                     ///< the television's own
    std::optional<std::vector<Setting>> settings;  ///< the package's that are to be applied
    std::optional<Expectation> expected;           ///< none where nothing is read back
};

Result<Preparation> prepare(const CloneContext& context, ReadyPackage& ready, const LoadOptions& options,
                            RunRecorder& recorder) {
    Preparation made{{}, ready.settings, {}};
    if (options.keepIdentity && ready.settings) {
        made.kept = identityOfTelevision();
        made.settings = withoutKept(*ready.settings, made.kept);
    }
    if (options.readBack) {
        auto expected = expectedOf(ready.package.tree(), made.settings);
        if (!expected) {
            return tl::make_unexpected(expected.error());
        }
        made.expected = Expectation{std::move(*expected), options.before, ready.plan.everything};
    }
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    if (const auto reset = resetRunKeys(Direction::Restore); !reset) {
        return tl::make_unexpected(reset.error());
    }
    if (const auto entered = recorder.enter(RunPhase::Restoring); !entered) {
        return tl::make_unexpected(entered.error());
    }
    return made;
}

/// The rows of all categories, as they are known before anything is read back.
std::vector<Row> judge(const CloneContext& context, const ReadyPackage& ready, const Preparation& made,
                       const ResultList& results) {
    std::vector<Row> own = ready.plan.leftOut;
    if (ready.plan.holds(VXCLONE_VCONF_DATA)) {
        Row row = judgeSettings(made.settings);
        if (!made.kept.empty()) {
            putBack(made.kept, row);
        }
        own.push_back(row);
        context.view.category(row);
    }
    std::vector<Row> rows = tableRows(Direction::Restore, ready.plan.list, results.outcomes(), own);
    nameApplications(rows);
    explainMissingEntries(rows, ready.package.tree());
    return rows;
}

void compareWithPackage(const CloneContext& context, ReadyPackage& ready, const Expectation& expected,
                        RunRecorder& recorder, Report& report) {
    if (const auto entered = recorder.enter(RunPhase::ReadingBack); !entered) {
        context.view.notice("The record of this run is not up to date: " + entered.error().sentence + ".");
    }
    Comparison comparison = readBack(context, ready.package, expected, report.rows);
    report.differences = {"the package", "this television", std::move(comparison.differences)};
    report.closing.insert(report.closing.end(), comparison.sentences.begin(), comparison.sentences.end());
    if (!comparison.complete || anyFailed(report.rows)) {
        report.exitStatus = exitStatusOf(ErrorCode::CategoryFailed);
    }
    ready.package.discard();
}

}  // namespace

bool Plan::holds(VXClone category) const {
    return std::find(list.begin(), list.end(), category) != list.end();
}

Result<ReadyPackage> makeReady(const CloneContext& context, StagedPackage package, Examination examined,
                               Plan plan) {
    auto settings = plan.holds(VXCLONE_VCONF_DATA)
                        ? readSettings(package.tree())
                        : Result<std::optional<std::vector<Setting>>>(std::nullopt);
    if (!settings) {
        return tl::make_unexpected(settings.error());
    }
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    return ReadyPackage{std::move(package), std::move(examined), std::move(plan), std::move(*settings)};
}

Result<Report> load(const CloneContext& context, ReadyPackage& ready, const LoadOptions& options,
                    RunRecorder& recorder) {
    auto made = prepare(context, ready, options, recorder);
    if (!made) {
        return tl::make_unexpected(made.error());
    }
    ready.package.keep();
    const auto results = runAndFollow(context, Direction::Restore, ready.plan.list,
                                      [&] { return context.engine.restore(ready.plan.list); });
    if (!results) {
        static_cast<void>(writeBack(made->kept));
        return tl::make_unexpected(results.error());
    }
    Report report{judge(context, ready, *made, *results), kExitOk, unknownLineSentences(*results),
                  ready.examined.checks, ready.examined.digest.value_or("")};
    if (options.removesLogo) {
        judgeRemovedLogo(report.rows);
    }
    report.exitStatus = exitStatusFor(report.rows, *results);
    if (made->expected && !context.stop.raised()) {
        compareWithPackage(context, ready, *made->expected, recorder, report);
    }
    if (context.stop.raised()) {
        report.exitStatus = exitStatusOf(stopError(context.stop.signal()).code);
        report.closing.emplace_back("Stopped as you asked, after the end of the run.");
    }
    return report;
}

std::string endSentence(const Report& report, const std::string& done) {
    if (report.exitStatus == kExitOk) {
        return done + ".";
    }
    const std::string failed = failedNames(report.rows);
    return failed.empty() ? done + ", but not all of it could be checked."
                          : fmt::format("{}, but not all of it (failed or different: {}).", done, failed);
}

}  // namespace vxclone
