#include "cloning_app/run/television_look.h"

#include <optional>
#include <string>
#include <utility>

#include "cloning_app/check/compared_state.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/television/settings_store.h"

namespace vxclone {

namespace {

/// Puts the library's result list back at its end.
class KeptResults {
 public:
    KeptResults() : results_(store::readString(kResultKey)) {}
    KeptResults(const KeptResults&) = delete;
    KeptResults& operator=(const KeptResults&) = delete;
    ~KeptResults() {
        if (results_) {
            store::writeString(kResultKey, *results_);
        }
    }

 private:
    std::optional<std::string> results_;
};

bool shouldBeReported(VXClone category) {
    return handlingOf(categoryOf(category), Direction::Backup) == Handling::Reported;
}

/// Sorts out the categories of which nobody knows that they were saved.
void nameTheUnsaved(TelevisionLook& look) {
    for (const Row& row : look.rows) {
        if (row.verdict == Verdict::Failed) {
            look.unread.push_back(row.category);
        } else if (row.verdict == Verdict::NotReported && shouldBeReported(row.category)) {
            look.unreported.push_back(row.category);
        }
    }
}

}  // namespace

Result<TelevisionLook> lookAtTelevision(const CloneContext& context, const Tree& root) {
    const KeptResults kept;
    const auto results = saveTelevision(context);
    VX_RETURN_IF_FAILED(results);
    TelevisionLook look;
    look.rows =
        tableRows(Direction::Backup, allCategories(), results->outcomes(), saveLogos(root, context.stop));
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    nameApplications(look.rows);
    nameTheUnsaved(look);
    // The library says nothing of the settings file, and writes an empty one on a full disk.
    auto settings = readSettings(root, &context.stop);
    if (!settings && isStop(settings.error().code)) {
        return tl::make_unexpected(settings.error());
    }
    if (settings && *settings) {
        look.state.settings = std::move(**settings);
    } else {
        look.unread.push_back(VXCLONE_VCONF_DATA);
    }
    auto files = filesOf(root);
    VX_RETURN_IF_FAILED(files);
    look.state.entries = std::move(*files);
    return look;
}

}  // namespace vxclone
