#include "cloning_app/run/applications.h"

#include <algorithm>
#include <optional>
#include <string>

#include "cloning_app/run/settings_store.h"

namespace vxclone {

namespace {

constexpr const char* kOrvelApplication = "org.vorta.orvel-app";
constexpr const char* kFirstScreenKey = "db/first_screen/type";
constexpr const char* kNotAsked = "not installed, or it did not start";

bool isOutcome(const Row& row) {
    return row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA &&
           (row.verdict == Verdict::Done || row.verdict == Verdict::Failed);
}

std::string firstScreenName(const std::string& identifier) {
    return identifier.empty() ? "first screen, without a name" : identifier;
}

}  // namespace

void nameApplications(std::vector<Row>& rows) {
    const auto first = std::find_if(rows.begin(), rows.end(), isOutcome);
    if (first == rows.end()) {
        return;
    }
    const auto firstScreen = store::readString(kFirstScreenKey);
    const bool hasOrvel = !firstScreen || std::count_if(rows.begin(), rows.end(), isOutcome) > 1;
    if (firstScreen) {
        const auto last = hasOrvel ? first + 1 : first;
        last->subject = firstScreenName(*firstScreen);
    }
    if (hasOrvel) {
        first->subject = kOrvelApplication;
    } else {
        rows.insert(first,
                    {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::NotReported, kNotAsked, kOrvelApplication});
    }
}

}  // namespace vxclone
