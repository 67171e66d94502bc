#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/package/safety_store.h"
#include "cloning_app/run/admission.h"
#include "cloning_app/run/loading.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/recorded_run.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// When and before what the safety backup was made.
std::string describeSafety(const Tree& safety) {
    const auto manifest = readManifest(safety, PackageKey::ofTelevision());
    if (!manifest || !*manifest) {
        return "the safety backup";
    }
    const PackageOrigin& origin = (*manifest)->manifest.origin;
    return fmt::format("the safety backup of {} (\"{}\")", origin.madeAt, vxcommon::printable(origin.name));
}

/// All that a television holds. One that had no boot logo has its new one removed again, which the library
/// does for a package that holds none.
void restoreBootLogo(Plan& plan, bool hadBootLogo) {
    const auto isLogo = [](const Row& row) { return row.category == VXCLONE_HOSPITALITY_LOGO; };
    if (hadBootLogo) {
        return;
    }
    plan.leftOut.erase(std::remove_if(plan.leftOut.begin(), plan.leftOut.end(), isLogo), plan.leftOut.end());
    if (hasBootLogo()) {
        plan.list.push_back(VXCLONE_HOSPITALITY_LOGO);
        std::sort(plan.list.begin(), plan.list.end());
    } else {
        plan.leftOut.push_back(
            {VXCLONE_HOSPITALITY_LOGO, Verdict::NotThere, "there was none, and there is none"});
    }
}

Result<ReadyPackage> getReady(const CloneContext& context, const Tree& safety, bool hadBootLogo) {
    auto package = StagedPackage::copyOf(context, safety);
    if (!package) {
        return tl::make_unexpected(package.error());
    }
    auto examined = admit(context, *package, {});
    if (!examined) {
        return tl::make_unexpected(examined.error());
    }
    auto ready = makeReady(context, std::move(*package), std::move(*examined), {allCategories(), {}, true});
    if (ready) {
        restoreBootLogo(ready->plan, hadBootLogo);
    }
    return ready;
}

Result<Report> undo(const CloneContext& context, bool readBack, RunRecorder& recorder) {
    const auto store = SafetyStore::open(recordFolderOf(context.cloneRoot));
    const auto opened = store ? store->openSafety() : tl::make_unexpected(store.error());
    if (!opened) {
        return tl::make_unexpected(opened.error());
    }
    if (!opened->valid()) {
        return failure(ErrorCode::NoSafetyBackup,
                       "there is no safety backup to go back to: nothing was restored here, or with "
                       "--no-safety; restore a package from a stick");
    }
    const Tree safety{opened->get(), safetyPathIn(store->path()), Place::Television};
    const std::string which = describeSafety(safety);
    const auto hadBootLogo = holdsEntry(safety, VXCLONE_HOSPITALITY_LOGO);
    if (!hadBootLogo) {
        return tl::make_unexpected(hadBootLogo.error());
    }
    auto ready = getReady(context, safety, *hadBootLogo);
    if (!ready) {
        return tl::make_unexpected(ready.error());
    }
    recorder.setDigest(ready->examined.digest.value_or(""));
    LoadOptions options{readBack};
    options.removesLogo = !*hadBootLogo;
    auto report = load(context, *ready, options, recorder);
    if (report) {
        report->closing.push_back(endSentence(*report, "Gone back to " + which));
    }
    return report;
}

}  // namespace

Result<Report> runUndo(const CloneContext& context, bool readBack) {
    return recordedRun(
        context, {RunKind::Undo, {}, phasesOfLoad(false, readBack)},
        [&](const CloneContext& shown, RunRecorder& recorder) { return undo(shown, readBack, recorder); });
}

}  // namespace vxclone
