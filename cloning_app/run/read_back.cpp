#include "cloning_app/run/read_back.h"

#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/report/progress_view.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/television_look.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr std::size_t kMostNamed = 3;

bool isOfApplication(const std::string& path, const Row& row) {
    return !row.subject.empty() && path.rfind(row.subject + "/", 0) == 0;
}

/// Whether the entry of a package belongs to the row's category, or to its application.
bool belongsTo(const std::string& path, const Row& row) {
    return row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA
               ? isOfApplication(path, row)
               : categoryOfPath(path) == categoryOf(row.category).name;
}

/// The part of the state that belongs to the row.
ComparedState stateOfRow(const ComparedState& state, const Row& row) {
    ComparedState part;
    if (row.category == VXCLONE_VCONF_DATA) {
        part.settings = state.settings;
    }
    std::copy_if(state.entries.begin(), state.entries.end(), std::back_inserter(part.entries),
                 [&row](const PackageEntry& entry) { return belongsTo(entry.path, row); });
    return part;
}

bool isEmpty(const ComparedState& state) {
    return state.settings.empty() && state.entries.empty();
}

/// Removes differences that exist only because the television has more than the package. Result: their
/// number.
std::size_t removeAdded(std::vector<Difference>& differences) {
    const auto end = std::remove_if(differences.begin(), differences.end(),
                                    [](const Difference& difference) { return !difference.inFirst; });
    const auto removed = static_cast<std::size_t>(differences.end() - end);
    differences.erase(end, differences.end());
    return removed;
}

std::string namesOf(const std::vector<Difference>& differences) {
    std::string text;
    for (std::size_t index = 0; index < std::min(differences.size(), kMostNamed); ++index) {
        text += (text.empty() ? "" : ", ") + vxcommon::printable(differences[index].what).text();
    }
    return differences.size() > kMostNamed
               ? text + fmt::format(" and {} more", differences.size() - kMostNamed)
               : text;
}

/// Whether the row's category was loaded or may have been. Other rows have nothing to compare.
bool isToBeRead(const Row& row) {
    return row.verdict == Verdict::Done || row.verdict == Verdict::Failed ||
           row.verdict == Verdict::NotEvaluated || row.verdict == Verdict::NotReported;
}

void sayDifferent(Row& row, const std::vector<Difference>& differences, bool asBefore) {
    row.readBack = ReadBack::Differs;
    if (row.verdict != Verdict::Failed) {
        row.verdict = asBefore ? Verdict::NotApplied : Verdict::Differs;
        row.detail.clear();
    }
    addDetail(row, namesOf(differences));
}

class Comparer {
 public:
    Comparer(const Expectation& expected, const ComparedState& after, const std::vector<Row>& unsaved,
             const std::vector<Row>& rows)
        : expected_(expected),
          after_(after),
          unsaved_(unsaved),
          outcomeLost_(
              lostAnOutcome(rows, [&after](const Row& row) { return !isEmpty(stateOfRow(after, row)); })) {}

    void compare(Row& row) {
        const ComparedState wanted = stateOfRow(expected_.package, row);
        const ComparedState found = stateOfRow(after_, row);
        if (!isToBeRead(row) || (isEmpty(wanted) && row.verdict != Verdict::Done)) {
            return;
        }
        // An application that has saved data again is running, even if the library's list lost its outcome.
        if (!isEmpty(found)) {
            sayThatItRuns(row);
        }
        if (row.verdict == Verdict::NotReported && row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA &&
            isEmpty(found)) {
            // Nobody reported a load, and the application did not even save data now: it was never started.
            row.verdict = Verdict::NotApplied;
            row.readBack = ReadBack::Unknown;
            addDetail(row, "its data in the package was not loaded");
        } else if (isUnread(row, wanted, found)) {
            sayUnread(row);
        } else if (isEmpty(wanted)) {
            // Reported as done, but the package has no files of it to compare with, as for network time.
            sayUnknown(row);
        } else {
            compareParts(row, wanted, found);
        }
    }

    /// Compares entries that services put into the package under names unknown to vxclone. Their formats are
    /// unknown, too, so other bytes are only mentioned and are no failure.
    void compareTheRest(const std::vector<Row>& rows) {
        const auto unknown = [&rows](const PackageEntry& entry) {
            return categoryOfPath(entry.path) == "other" &&
                   std::none_of(rows.begin(), rows.end(),
                                [&entry](const Row& row) { return isOfApplication(entry.path, row); });
        };
        ComparedState wanted;
        ComparedState found;
        std::copy_if(expected_.package.entries.begin(), expected_.package.entries.end(),
                     std::back_inserter(wanted.entries), unknown);
        std::copy_if(after_.entries.begin(), after_.entries.end(), std::back_inserter(found.entries),
                     unknown);
        if (const auto differences = differencesOf(wanted, found); !differences.empty()) {
            result_.sentences.push_back(
                fmt::format("Not the same bytes as in the package, which need not mean a difference: {}.",
                            namesOf(differences)));
        }
    }

    Comparison result() && { return std::move(result_); }

 private:
    /// Whether the new backup cannot show the row's state. A service always writes its entry, so a missing
    /// entry means that the save failed, even if the library reported nothing.
    bool isUnread(const Row& row, const ComparedState& wanted, const ComparedState& found) const {
        const bool failed = std::any_of(unsaved_.begin(), unsaved_.end(), [&row](const Row& each) {
            return each.category == row.category && (each.subject.empty() || each.subject == row.subject);
        });
        return failed ||
               (categoryOf(row.category).holding == Holding::Parts && !isEmpty(wanted) && isEmpty(found));
    }

    void sayUnread(Row& row) {
        addDetail(row, "it could not be saved again");
        // Neither the library nor the new backup says that it was loaded, so it cannot count as loaded.
        if (row.verdict == Verdict::NotReported) {
            row.verdict = Verdict::Failed;
        }
        sayUnknown(row);
        result_.complete = false;
    }

    /// Removes the settings that the new backup could not read: whether they differ is unknown.
    void takeOutUnread(Row& row, std::vector<Difference>& differences) {
        const auto end =
            std::stable_partition(differences.begin(), differences.end(),
                                  [](const Difference& difference) { return difference.inSecond; });
        const std::vector<Difference> unread(end, differences.end());
        differences.erase(end, differences.end());
        if (!unread.empty()) {
            addDetail(row, "not read again: " + namesOf(unread));
            row.readBack = ReadBack::Unknown;
            result_.complete = false;
        }
    }

    void compareParts(Row& row, const ComparedState& wanted, const ComparedState& found) {
        std::vector<Difference> differences = differencesOf(wanted, found);
        if (row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) {
            compareApplication(row, wanted.entries.size(), differences.size());
            return;
        }
        const Category& category = categoryOf(row.category);
        const std::size_t beside = category.surplus == Surplus::Stays ? removeAdded(differences) : 0;
        if (category.folder != nullptr && beside != 0) {
            addDetail(row, countText(beside, "file") + " beside the package's stay");
        }
        if (row.category == VXCLONE_VCONF_DATA) {
            takeOutUnread(row, differences);
        }
        if (differences.empty()) {
            row.readBack = row.readBack == ReadBack::None ? ReadBack::Same : row.readBack;
            return;
        }
        // If the television still has its old state, the load had no effect at all; people should know that.
        const bool asBefore =
            expected_.before && differencesOf(stateOfRow(*expected_.before, row), found).empty();
        sayDifferent(row, differences, asBefore);
        result_.differences.insert(result_.differences.end(), differences.begin(), differences.end());
    }

    /// Other bytes need not be a difference: an application may write equal data differently, such as a
    /// database.
    void compareApplication(Row& row, std::size_t files, std::size_t differing) {
        if (differing == 0) {
            row.readBack = ReadBack::Same;
            return;
        }
        addDetail(row, fmt::format("{} of {} the same, the rest only the application can compare",
                                   files - std::min(files, differing), countText(files, "file")));
        sayUnknown(row);
        // The library did not report the load, and the bytes do not prove it.
        result_.complete = result_.complete && row.verdict != Verdict::NotReported;
    }

    void sayUnknown(Row& row) const {
        row.readBack = ReadBack::Unknown;
        if (outcomeLost_ && row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) {
            doubt(row);
        }
    }

    const Expectation& expected_;
    const ComparedState& after_;
    const std::vector<Row>& unsaved_;
    bool outcomeLost_;
    Comparison result_;
};

}  // namespace

Comparison compareRows(const Expectation& expected, const ComparedState& after,
                       const std::vector<Row>& unsaved, std::vector<Row>& rows) {
    Comparer comparer(expected, after, unsaved, rows);
    for (Row& row : rows) {
        comparer.compare(row);
    }
    if (expected.everything) {
        comparer.compareTheRest(rows);
    }
    return std::move(comparer).result();
}

Comparison readBack(const CloneContext& context, const StagedPackage& package, const Expectation& expected,
                    std::vector<Row>& rows) {
    context.view.notice("Reading the television back.");
    QuietView quiet(context.view, ShownPhase::ReadBack);
    const CloneContext inner{.engine = context.engine,
                             .view = quiet,
                             .stop = context.stop,
                             .cloneRoot = context.cloneRoot,
                             .disk = context.disk};
    const auto look = lookAtTelevision(inner, package.tree());
    // A stop after the load is no failure of the television; the end of the run says that the read-back is
    // missing.
    if (!look && isStop(look.error().code)) {
        return {{}, {}, false, true};
    }
    if (!look) {
        return {{}, {"The television could not be read back: " + look.error().sentence + "."}, false};
    }
    // The files of a service that failed to save again do not show the television's state.
    std::vector<Row> unsaved;
    std::copy_if(look->rows.begin(), look->rows.end(), std::back_inserter(unsaved),
                 [](const Row& row) { return row.verdict == Verdict::Failed; });
    return compareRows(expected, look->state, unsaved, rows);
}

}  // namespace vxclone
