#include "cloning_app/run/loading.h"

#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/check/compared_state.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/staged_package.h"
#include "cloning_app/television/settings_store.h"
#include "cloning_app/television/television_folders.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr std::size_t kMostKeysNamed = 3;
constexpr const char* kDiskRanFull =
    "The television's disk ran full while the package was loaded: free some space on the television, and go "
    "back with vxclone undo or restore again.";

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

std::string allOf(const std::vector<Setting>& settings) {
    std::string text;
    for (const Setting& setting : settings) {
        text += (text.empty() ? "" : ", ") + setting.key;
    }
    return text;
}

/// The television's own values that the load is not to change.
struct Kept {
    std::vector<Setting> identity;  ///< because the user wants to keep them
    std::vector<Setting>
        untouched;  ///< because the package lacks them, and the library writes 0 or nothing then

    std::vector<Setting> all() const {
        std::vector<Setting> settings = identity;
        settings.insert(settings.end(), untouched.begin(), untouched.end());
        return settings;
    }
};

/// Puts the television's own values back, reads them back, and says so.
void putBack(const Kept& kept, Row& row) {
    const std::vector<std::string> lost = writeBack(kept.all());
    if (!kept.untouched.empty()) {
        addDetail(row, "left as they were: " + allOf(kept.untouched));
    }
    if (!kept.identity.empty() && lost.empty()) {
        addDetail(row, "kept, " + countText(kept.identity.size(), "setting"));
    }
    if (!lost.empty()) {
        row.verdict = Verdict::Failed;
        addDetail(row, "not kept: " + someOf(lost));
    }
}

/// Whether the package holds what the row tells of, and nobody reported what became of it.
bool isUnreported(const Row& row, const Holdings& holdings) {
    const bool held =
        row.subject.empty() ? holdsAnyOf(holdings, row.category) : holdings.hasEntry(row.subject);
    return row.verdict == Verdict::NotReported && held && isLoaded(categoryOf(row.category));
}

bool anyUnreported(const std::vector<Row>& rows, const Holdings& holdings) {
    return std::any_of(rows.begin(), rows.end(),
                       [&holdings](const Row& row) { return isUnreported(row, holdings); });
}

/// A category of which nothing was reported was not loaded, as far as anybody knows.
void failUnreported(std::vector<Row>& rows, const Holdings& holdings) {
    for (Row& row : rows) {
        if (isUnreported(row, holdings)) {
            row.verdict = Verdict::Failed;
            addDetail(row, "nobody reported that it was loaded");
        }
    }
}

/// The library calls it a failure to take a logo away.
void judgeRemovedLogos(const std::vector<VXClone>& removed, std::vector<Row>& rows) {
    for (Row& row : rows) {
        if (std::find(removed.begin(), removed.end(), row.category) == removed.end()) {
            continue;
        }
        removeEmptyLogo(row.category);
        if (row.verdict == Verdict::Failed && !hasLogo(row.category)) {
            row = {row.category, Verdict::Done, "taken away: there was none before"};
        }
    }
}

/// Says what became of the files that were to be taken out of the home menu.
void sayRemoved(const Result<std::size_t>& removed, std::vector<Row>& rows) {
    for (Row& row : rows) {
        if (row.category == VXCLONE_VXHOTEL_HOMEAPP_DATA && !removed) {
            row.verdict = Verdict::Failed;
            addDetail(row, removed.error().sentence);
        } else if (row.category == VXCLONE_VXHOTEL_HOMEAPP_DATA && *removed != 0) {
            addDetail(row, "taken away, " + countText(*removed, "file"));
        }
    }
}

/// What the package holds of what is loaded.
Result<ComparedState> expectedOf(const Tree& package, const std::optional<std::vector<Setting>>& settings) {
    auto contents = readContents(package);
    VX_RETURN_IF_FAILED(contents);
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
    Kept kept;
    std::optional<std::vector<Setting>> settings;  ///< the package's that are to be applied
    Expectation expected;
};

/// What the television holds of the settings that are to stay. One that nobody can read could not be put
/// back.
Result<Kept> keptOf(const ReadyPackage& ready, const LoadOptions& options) {
    if (!ready.plan.holds(VXCLONE_VCONF_DATA)) {
        return Kept{};
    }
    OwnSettings identity = ownSettings(options.keepIdentity ? identityKeys() : std::vector<std::string>());
    OwnSettings untouched = ownSettings(ready.plan.untouched);
    std::vector<std::string> unreadable = std::move(identity.unreadable);
    unreadable.insert(unreadable.end(), untouched.unreadable.begin(), untouched.unreadable.end());
    for (const std::string& key : unreadable) {
        const Lack lack{VXCLONE_VCONF_DATA, key};
        const bool isDeclared =
            options.without.holds(lack) ||
            std::any_of(ready.examined.lacks.begin(), ready.examined.lacks.end(), [&lack](const Lack& each) {
                return each.declared && each.category == lack.category && each.what == lack.what;
            });
        if (!isDeclared) {
            return failure(
                ErrorCode::SettingsRefused,
                fmt::format("this television does not tell its {}, which is to stay as it is; nothing was "
                            "changed; restart the television and try again, or, if it has no such "
                            "setting, add --without {}",
                            key, key));
        }
    }
    return Kept{std::move(identity.values), std::move(untouched.values)};
}

Result<Preparation> prepare(const CloneContext& context, ReadyPackage& ready, const LoadOptions& options,
                            RunRecorder& recorder) {
    auto kept = keptOf(ready, options);
    VX_RETURN_IF_FAILED(kept);
    std::optional<std::vector<Setting>> settings = ready.settings;
    if (settings) {
        settings = withoutKept(*settings, kept->all());
    }
    auto expected = expectedOf(ready.package.tree(), settings);
    VX_RETURN_IF_FAILED(expected);
    Preparation made{
        std::move(*kept), std::move(settings), {std::move(*expected), options.before, ready.plan.everything}};
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    VX_RETURN_IF_FAILED(checkSafe(context.cloneRoot));
    VX_RETURN_IF_FAILED(resetRunKeys(Direction::Restore));
    if (!ready.plan.everything) {
        recorder.setLoaded(ready.plan.list);
    }
    VX_RETURN_IF_FAILED(recorder.enter(RunPhase::Restoring));
    return made;
}

/// The rows of all categories, as they are known before anything is read back.
std::vector<Row> judge(const CloneContext& context, const ReadyPackage& ready, const Preparation& made,
                       const ResultList& results) {
    std::vector<Row> own = ready.plan.leftOut;
    if (ready.plan.holds(VXCLONE_VCONF_DATA)) {
        Row row = judgeSettings(made.settings);
        putBack(made.kept, row);
        own.push_back(row);
        context.view.category(row);
    }
    std::vector<Row> rows = tableRows(Direction::Restore, ready.plan.list, results.outcomes(), own);
    nameApplications(rows);
    return rows;
}

/// From now on the record says that all is loaded, and what failed of it.
void enterReadBack(const CloneContext& context, RunRecorder& recorder, const std::vector<Row>& rows) {
    recorder.setRows(rows);
    if (const auto entered = recorder.enter(RunPhase::ReadingBack); !entered) {
        context.view.notice("The record of this run is not up to date: " + entered.error().sentence + ".");
    }
}

/// Result: whether all that can be compared was.
bool compareWithPackage(const CloneContext& context, ReadyPackage& ready, const Expectation& expected,
                        Report& report) {
    Comparison comparison = readBack(context, ready.package, expected, report.rows);
    report.differences = {"the package", "this television", std::move(comparison.differences)};
    report.closing.insert(report.closing.end(), comparison.sentences.begin(), comparison.sentences.end());
    report.brokenOff = comparison.stopped;
    ready.package.discard();
    return comparison.complete;
}

}  // namespace

Result<ReadyPackage> makeReady(const CloneContext& context, StagedPackage package, Examination examined,
                               Plan plan) {
    auto holdings = Holdings::of(package.tree());
    VX_RETURN_IF_FAILED(holdings);
    auto settings = plan.holds(VXCLONE_VCONF_DATA)
                        ? readSettings(package.tree(), &context.stop)
                        : Result<std::optional<std::vector<Setting>>>(std::nullopt);
    VX_RETURN_IF_FAILED(settings);
    leaveOutLacking(plan, examined.lacks, *holdings);
    if (std::none_of(plan.list.begin(), plan.list.end(),
                     [](VXClone category) { return isLoaded(categoryOf(category)); })) {
        return failure(
            ErrorCode::CategoryFailed,
            fmt::format("{} holds nothing of the chosen categories; nothing was changed; choose others, or "
                        "another package",
                        vxcommon::printable(package.origin())));
    }
    if (!plan.holds(VXCLONE_VCONF_DATA)) {
        settings->reset();
    }
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    return ReadyPackage{.package = std::move(package),
                        .examined = std::move(examined),
                        .holdings = std::move(*holdings),
                        .plan = std::move(plan),
                        .settings = std::move(*settings)};
}

Result<Report> load(const CloneContext& context, ReadyPackage& ready, const LoadOptions& options,
                    RunRecorder& recorder) {
    auto made = prepare(context, ready, options, recorder);
    VX_RETURN_IF_FAILED(made);
    const auto removed = removeAdded(options.added);
    ready.package.keep();
    const auto results = runAndFollow(context, Direction::Restore, ready.plan.list,
                                      [&] { return context.engine.restore(ready.plan.list); });
    if (!results) {
        static_cast<void>(writeBack(made->kept.all()));
        return tl::make_unexpected(results.error());
    }
    const bool full = isFull(ready.package.tree());
    context.view.progress({ShownPhase::LookingUp});
    Report report{.rows = judge(context, ready, *made, *results),
                  .exitStatus = kExitOk,
                  .closing = unknownLineSentences(*results),
                  .checks = ready.examined.checks,
                  .digest = ready.examined.digest.value_or("")};
    sayRemoved(removed, report.rows);
    judgeRemovedLogos(options.removedLogos, report.rows);
    enterReadBack(context, recorder, report.rows);
    // The library's list loses an outcome now and then. Then only the television can tell.
    const bool readBack = options.readBack || anyUnreported(report.rows, ready.holdings);
    report.brokenOff = readBack && context.stop.raised();
    bool compared = !report.brokenOff;
    if (readBack && !report.brokenOff) {
        compared = compareWithPackage(context, ready, made->expected, report);
    }
    if (report.brokenOff) {
        failUnreported(report.rows, ready.holdings);
    }
    sayLacking(report.rows, ready.examined.lacks, ready.holdings);
    report.lacks = ready.examined.lacks;
    report.exitStatus =
        compared ? exitStatusFor(report.rows, *results) : exitStatusOf(ErrorCode::CategoryFailed);
    for (std::string& sentence : lackSentences(report.lacks, "The package")) {
        report.closing.push_back(std::move(sentence));
    }
    if (full && report.exitStatus != kExitOk) {
        report.closing.emplace_back(kDiskRanFull);
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
