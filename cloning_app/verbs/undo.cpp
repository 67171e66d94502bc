#include "cloning_app/verbs/undo.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <memory>

#include "cloning_app/run/loading.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/staged_package.h"
#include "cloning_app/storage/safety_store.h"
#include "cloning_app/television/television_folders.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr mode_t kFolderMode = 0755;

/// When the safety backup was made, and before which restore.
std::string describeSafety(const Tree& safety) {
    const auto manifest = readManifest(safety, PackageKey::ofTelevision());
    if (!manifest || !*manifest) {
        return "the safety backup";
    }
    const PackageOrigin& origin = (*manifest)->manifest.origin;
    return fmt::format("the safety backup of {} (\"{}\")", origin.madeAt, vxcommon::printable(origin.name));
}

/// The package for an undo, and the logos that this television did not have before.
struct WayBack {
    ReadyPackage ready;
    std::vector<VXClone> removedLogos;
};

/// Makes the load remove a logo that the restore added.
Result<void> takeLogoAway(WayBack& back, Row& row) {
    const Category& logo = categoryOf(row.category);
    const std::string entry(logo.entry);
    const Tree package = back.ready.package.tree();
    if (logo.removal == Removal::ByEmptyEntry &&
        mkdirat(package.descriptor, entry.c_str(), kFolderMode) != 0) {
        return tl::make_unexpected(writeError(package.place, package.path + "/" + entry, errno));
    }
    back.ready.plan.list.push_back(row.category);
    back.removedLogos.push_back(row.category);
    return {};
}

/// Only for visible logos. If the save of a logo failed, that logo is not changed.
Result<void> takeLogosAway(WayBack& back) {
    std::vector<Row>& leftOut = back.ready.plan.leftOut;
    for (Row& row : leftOut) {
        const bool hadNone =
            categoryOf(row.category).removal != Removal::Never && row.verdict == Verdict::NotThere;
        if (hadNone && !hasLogo(row.category)) {
            row.detail = "there was none, and there is none";
        } else if (hadNone) {
            if (const auto taken = takeLogoAway(back, row); !taken) {
                return taken;
            }
        }
    }
    const auto isTaken = [&back](const Row& row) { return back.ready.plan.holds(row.category); };
    leftOut.erase(std::remove_if(leftOut.begin(), leftOut.end(), isTaken), leftOut.end());
    std::sort(back.ready.plan.list.begin(), back.ready.plan.list.end());
    return {};
}

Result<WayBack> getReady(const CloneContext& context, const Tree& safety) {
    auto package = StagedPackage::ofSafety(context, safety);
    VX_RETURN_IF_FAILED(package);
    auto examined = admit(context, *package, {});
    VX_RETURN_IF_FAILED(examined);
    auto ready = makeReady(context, std::move(*package), std::move(*examined), {allCategories(), {}, true});
    VX_RETURN_IF_FAILED(ready);
    WayBack back{std::move(*ready), {}};
    VX_RETURN_IF_FAILED(takeLogosAway(back));
    return back;
}

Result<Report> undo(const CloneContext& context, bool readBack, RunRecorder& recorder) {
    VX_RETURN_IF_FAILED(checkSafe(context.cloneRoot));
    const auto store = SafetyStore::open(recordFolderOf(context.cloneRoot));
    const auto opened = store ? store->openSafety() : tl::make_unexpected(store.error());
    VX_RETURN_IF_FAILED(opened);
    if (!opened->valid()) {
        return failure(ErrorCode::NoSafetyBackup,
                       "there is no safety backup to go back to: nothing was restored here, or with "
                       "--no-safety; restore a package from a stick");
    }
    const Tree safety{opened->get(), safetyPathIn(store->path()), Place::Television};
    const std::string which = describeSafety(safety);
    auto back = getReady(context, safety);
    VX_RETURN_IF_FAILED(back);
    const auto manifest = readManifest(back->ready.package.tree(), PackageKey::ofTelevision(), &context.stop);
    VX_RETURN_IF_FAILED(manifest);
    recorder.setName(back->ready.examined.name);
    recorder.setDigest(back->ready.examined.digest.value_or(""));
    recorder.setWayBack();
    LoadOptions options{.readBack = readBack, .removedLogos = back->removedLogos};
    if (*manifest) {
        options.added = (*manifest)->manifest.origin.added;
    }
    auto report = load(context, back->ready, options, recorder);
    if (report) {
        report->closing.push_back(endSentence(*report, "Gone back to " + which));
    }
    return report;
}

struct UndoArguments {
    bool noReadBack = false;
    bool json = false;
};

}  // namespace

Result<Report> runUndo(const CloneContext& context, bool readBack) {
    return recordedRun(
        context, {RunKind::Undo, {}, phasesOfLoad(false, readBack)},
        [&](const CloneContext& shown, RunRecorder& recorder) { return undo(shown, readBack, recorder); });
}

void addUndoCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<UndoArguments>();
    CLI::App* const verb = app.add_subcommand("undo", "Go back to how it was before the last restore");
    verb->add_flag("--no-read-back", arguments->noReadBack,
                   "No comparison afterwards, unless a result is missing");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments](CloneEngine& engine) {
            return runCommand(
                engine, "undo", viewKindOfRun(arguments->json),
                [&](const CloneContext& context) { return runUndo(context, !arguments->noReadBack); });
        };
    });
}

}  // namespace vxclone
