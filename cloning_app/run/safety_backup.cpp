#include "cloning_app/run/safety_backup.h"

#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/check/compared_state.h"
#include "cloning_app/report/progress_view.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/package_completion.h"
#include "cloning_app/storage/safety_store.h"
#include "cloning_app/television/television_folders.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr const char* kHowToGoOn =
    "; the restore did not begin and nothing was changed (to go on without a safety backup: --no-safety)";

/// Takes away what is left when the safety backup did not come to its end.
class Leftovers {
 public:
    explicit Leftovers(std::filesystem::path folder) : folder_(std::move(folder)) {}
    Leftovers(const Leftovers&) = delete;
    Leftovers& operator=(const Leftovers&) = delete;
    ~Leftovers() { removeLeftovers(folder_); }

 private:
    std::filesystem::path folder_;
};

Error withTheWayOn(Error error) {
    if (!isStop(error.code)) {
        error.sentence = "the safety backup failed: " + error.sentence + kHowToGoOn;
    }
    return error;
}

/// The failed categories that the restore would change.
std::vector<Row> failedAndChosen(const std::vector<Row>& rows, const std::vector<VXClone>& list) {
    std::vector<Row> failed;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(failed), [&list](const Row& row) {
        return isFailure(row.verdict) && std::find(list.begin(), list.end(), row.category) != list.end();
    });
    return failed;
}

/// Whether the load may change what is lacking. What is left out of it stays as it is, and so does the data
/// of an application of which the package holds none.
bool mayChange(const ReadyPackage& ready, const Lack& lack) {
    if (!ready.plan.holds(lack.category)) {
        return false;
    }
    const bool ofApplication = lack.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA && !lack.what.empty();
    return !ofApplication || ready.holdings.hasEntry(lack.what);
}

/// The keys of the settings that the load may change and that no backup holds.
std::vector<std::string> textsThatWouldBeLost(const Report& report) {
    std::vector<std::string> keys;
    for (const Lack& lack : report.lacks) {
        const auto& foreign = report.foreignTexts;
        if (!lack.declared && std::find(foreign.begin(), foreign.end(), lack.what) != foreign.end()) {
            keys.push_back(lack.what);
        }
    }
    return keys;
}

/// A safety backup that was made.
struct MadeSafety {
    ComparedState state;
    std::vector<Lack> lacks;
};

/// The backup in the clone folder, made a package.
Result<MadeSafety> backUpIntoRoot(const CloneContext& context, const Tree& root, const ReadyPackage& ready,
                                  const Means& means) {
    const auto results = saveTelevision(context);
    VX_RETURN_IF_FAILED(results);
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    const auto report = completePackage(context, root, *results, means);
    VX_RETURN_IF_FAILED(report);
    if (const auto lost = textsThatWouldBeLost(*report); !lost.empty()) {
        return failure(ErrorCode::SafetyIncomplete,
                       fmt::format("it cannot hold {0}, which is not UTF-8 text on this television, so undo "
                                   "could not bring it back (to restore all the same: --without {0})",
                                   fmt::join(lost, ",")));
    }
    if (isIncomplete(report->lacks)) {
        return failure(ErrorCode::SafetyIncomplete,
                       "it lacks " + lackingText(report->lacks, false) +
                           " (if this television has no such thing: --without NAME,...)");
    }
    if (const auto failed = failedAndChosen(report->rows, ready.plan.list); !failed.empty()) {
        return failure(ErrorCode::SafetyIncomplete, "it lacks " + failedNames(failed));
    }
    return stateOfPackage(root).map([&report](ComparedState state) {
        return MadeSafety{std::move(state), report->lacks};
    });
}

/// A platform that failed once may do so no more. A stop and a full disk stay what they are.
Result<MadeSafety> backUpOnceOrTwice(const CloneContext& context, const Tree& root, const ReadyPackage& ready,
                                     const Means& means) {
    auto made = backUpIntoRoot(context, root, ready, means);
    const bool again = !made && !isStop(made.error().code) && made.error().code != ErrorCode::TelevisionFull;
    if (!again) {
        return made;
    }
    context.view.notice("The safety backup is not complete; making it once more.");
    return backUpIntoRoot(context, root, ready, means);
}

Result<ComparedState> makeSafety(const CloneContext& context, const ReadyPackage& ready,
                                 const Declared& without) {
    const StagedPackage& package = ready.package;
    const auto folder = recordFolderOf(context.cloneRoot);
    const Leftovers leftovers(folder);
    const auto store = SafetyStore::open(folder);
    VX_RETURN_IF_FAILED(store);
    auto means = readyToSeal(context.engine, ("before " + package.origin()).substr(0, kLongestPackageName));
    VX_RETURN_IF_FAILED(means);
    if (ready.plan.holds(VXCLONE_VXHOTEL_HOMEAPP_DATA)) {
        auto added = filesAddedBy(package.tree());
        VX_RETURN_IF_FAILED(added);
        means->origin.added = std::move(*added);
    }
    VX_RETURN_IF_FAILED(store->setAside(package.tree()));
    means->mayLack = [&](const Lack& lack) { return !mayChange(ready, lack) || without.holds(lack); };
    auto made = backUpOnceOrTwice(context, package.tree(), ready, *means);
    VX_RETURN_IF_FAILED(made);
    if (const std::string unneeded = without.sentenceAboutUnneeded(made->lacks); !unneeded.empty()) {
        context.view.notice(unneeded);
    }
    VX_RETURN_IF_FAILED(store->takeRoom());
    VX_RETURN_IF_FAILED(store->keep(package.tree()));
    VX_RETURN_IF_FAILED(store->bringBack(package.tree()));
    return std::move(made->state);
}

/// What the package holds of the categories whose size nobody knows of a television.
TreeSize restOf(const Tree& package) {
    TreeSize rest;
    const auto add = [&](const TreeEntry& entry) {
        const auto category =
            categoryCalled(categoryOfPath(std::string_view(entry.path).substr(package.path.size() + 1)));
        if (!category || categoryOf(*category).folder == nullptr) {
            ++rest.entries;
            rest.bytes += entry.bytes;
        }
        return std::string();
    };
    return measureTree(package, TreeLimits{}, add) ? rest : TreeSize{};
}

bool isThere(const CloneContext& context) {
    const auto store = SafetyStore::open(recordFolderOf(context.cloneRoot));
    const auto safety = store ? store->openSafety() : Result<Descriptor>(Descriptor());
    return safety && safety->valid();
}

}  // namespace

TreeSize safetyReserve(const Tree& package) {
    TreeSize reserve = restOf(package);
    for (const Category& category : categories()) {
        if (category.folder == nullptr) {
            continue;
        }
        const std::string path = category.folder();
        const auto opened = openTelevisionFolder(path);
        if (opened && opened->valid()) {
            const auto size = measureTree({opened->get(), path, Place::Television}, TreeLimits{});
            const TreeSize found = size.value_or(TreeSize{});
            reserve.entries += found.entries;
            reserve.bytes += found.bytes;
        }
    }
    return reserve;
}

Result<std::optional<ComparedState>> keepSafety(const CloneContext& context, const ReadyPackage& ready,
                                                const Declared& without, const RunRecord& record) {
    if (record.halfChanged && isThere(context)) {
        context.view.notice(record.wayBack
                                ? "The safety backup from before the run that broke off is kept."
                                : "An older safety backup is kept: this television may be half changed.");
        return std::optional<ComparedState>();
    }
    context.view.notice("Keeping a safety backup of this television.");
    QuietView quiet(context.view, ShownPhase::Safety);
    const CloneContext inner{context.engine, quiet, context.stop, context.cloneRoot, context.disk};
    auto state = makeSafety(inner, ready, without);
    if (!state) {
        return tl::make_unexpected(withTheWayOn(state.error()));
    }
    return std::optional(std::move(*state));
}

}  // namespace vxclone
