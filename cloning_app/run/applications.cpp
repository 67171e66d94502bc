#include "cloning_app/run/applications.h"

#include <algorithm>
#include <optional>
#include <string>

#include "cloning_app/television/settings_store.h"

namespace vxclone {

namespace {

constexpr const char* kOrvelApplication = "org.vorta.orvel-app";
constexpr const char* kFirstScreenKey = "db/first_screen/type";
constexpr const char* kNotAsked = "not installed, or it did not start";
constexpr const char* kOutcomeLost = "it runs; its outcome may be lost";
constexpr const char* kMayBeAnothers = "the one outcome that came may be another application's";

/// Whether the row tells of an application, be it that the library said nothing of any.
bool tellsOfApplication(const Row& row) {
    return row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA &&
           (row.verdict == Verdict::Done || row.verdict == Verdict::Failed ||
            row.verdict == Verdict::NotReported);
}

std::string firstScreenName(const std::string& identifier) {
    return identifier.empty() ? "first screen, without a name" : identifier;
}

}  // namespace

void nameApplications(std::vector<Row>& rows) {
    const auto first = std::find_if(rows.begin(), rows.end(), tellsOfApplication);
    if (first == rows.end()) {
        return;
    }
    const auto firstScreen = store::readString(kFirstScreenKey);
    const bool hasOrvel = !firstScreen || std::count_if(rows.begin(), rows.end(), tellsOfApplication) > 1;
    if (firstScreen) {
        const auto last = hasOrvel ? first + 1 : first;
        last->subject = firstScreenName(*firstScreen);
    }
    if (hasOrvel) {
        first->subject = kOrvelApplication;
        first->detail = first->verdict == Verdict::NotReported ? kNotAsked : first->detail;
    } else {
        rows.insert(first,
                    {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::NotReported, kNotAsked, kOrvelApplication});
    }
}

bool lostAnOutcome(const std::vector<Row>& rows, const std::function<bool(const Row&)>& hasRun) {
    return std::any_of(rows.begin(), rows.end(), [&hasRun](const Row& row) {
        return row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA && row.verdict == Verdict::NotReported &&
               hasRun(row);
    });
}

void sayThatItRuns(Row& row) {
    if (row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA && row.verdict == Verdict::NotReported &&
        !row.subject.empty()) {
        row.detail = kOutcomeLost;
    }
}

void doubt(Row& row) {
    if (row.verdict == Verdict::NotReported) {
        return;
    }
    row.verdict = row.verdict == Verdict::Done ? Verdict::NotReported : row.verdict;
    addDetail(row, kMayBeAnothers);
}

}  // namespace vxclone
