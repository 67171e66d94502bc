#include "cloning_app/check/plan.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr const char* kKeepsItsOwn = "this television keeps its own";

std::vector<Lack> lacksOfCategory(const std::vector<Lack>& lacks, VXClone category) {
    std::vector<Lack> own;
    std::copy_if(lacks.begin(), lacks.end(), std::back_inserter(own),
                 [category](const Lack& lack) { return lack.category == category; });
    return own;
}

/// The lacks because of which the category is not loaded; empty if it is loaded.
std::vector<Lack> reasonsToLeaveOut(VXClone category, const std::vector<Lack>& lacks,
                                    const Holdings& holdings) {
    std::vector<Lack> own = lacksOfCategory(lacks, category);
    const bool everyPartCounts = categoryOf(category).holding == Holding::Parts;
    const bool whole = std::none_of(own.begin(), own.end(), [everyPartCounts](const Lack& lack) {
        return lack.what.empty() || (everyPartCounts && !lack.declared);
    });
    if (whole && holdsAnyOf(holdings, category)) {
        return {};
    }
    return own.empty() ? std::vector<Lack>{{category, "", true}} : own;
}

/// What the package lacks of another category that is loaded, and this category depends on: without it, this
/// one would put invalid values into effect.
std::vector<Lack> lacksOfNeeded(const Need& need, const Plan& plan, const std::vector<Lack>& lacks) {
    std::vector<Lack> needed;
    std::copy_if(lacks.begin(), lacks.end(), std::back_inserter(needed), [&](const Lack& lack) {
        return plan.holds(need.category) && lack.category == need.category &&
               std::find(need.settings.begin(), need.settings.end(), lack.what) != need.settings.end();
    });
    return needed;
}

Row rowOfLeftOut(VXClone category, const std::vector<Lack>& reasons) {
    std::string what;
    for (const Lack& lack : reasons) {
        if (!lack.what.empty() && categoryOf(category).holding != Holding::EachSetting) {
            what += (what.empty() ? "" : ", ") + vxcommon::printable(lack.what).text();
        }
    }
    return {category, isIncomplete(reasons) ? Verdict::Lacking : Verdict::NotThere,
            "the package holds no " + (what.empty() ? std::string(categoryOf(category).words) : what) + "; " +
                kKeepsItsOwn};
}

}  // namespace

bool Plan::holds(VXClone category) const {
    return std::find(list.begin(), list.end(), category) != list.end();
}

void leaveOutLacking(Plan& plan, const std::vector<Lack>& lacks, const Holdings& holdings) {
    const std::vector<VXClone> chosen = plan.list;
    plan.list.clear();
    for (const VXClone category : chosen) {
        std::vector<Lack> reasons = reasonsToLeaveOut(category, lacks, holdings);
        if (reasons.empty()) {
            reasons = lacksOfNeeded(categoryOf(category).need, plan, lacks);
        }
        if (reasons.empty()) {
            plan.list.push_back(category);
        } else {
            plan.leftOut.push_back(rowOfLeftOut(category, reasons));
        }
    }
    for (const Lack& lack : lacksOfCategory(lacks, VXCLONE_VCONF_DATA)) {
        if (plan.holds(VXCLONE_VCONF_DATA) && !lack.what.empty()) {
            plan.untouched.push_back(lack.what);
        }
    }
}

void sayLacking(std::vector<Row>& rows, const std::vector<Lack>& lacks, const Holdings& holdings) {
    for (Row& row : rows) {
        if (row.verdict == Verdict::NotChosen || row.verdict == Verdict::Lacking ||
            row.verdict == Verdict::NotThere) {
            continue;
        }
        std::vector<Lack> own = lacksOfCategory(lacks, row.category);
        if (!row.subject.empty()) {
            own.erase(std::remove_if(own.begin(), own.end(),
                                     [&row](const Lack& lack) { return lack.what != row.subject; }),
                      own.end());
            if (!holdings.hasEntry(row.subject)) {
                row.verdict = isIncomplete(own) ? Verdict::Lacking : Verdict::NotThere;
                row.detail = std::string("the package holds none of its data; ") + kKeepsItsOwn;
            }
        } else if (row.verdict == Verdict::Done && isIncomplete(own)) {
            row.verdict = Verdict::Lacking;
        }
    }
}

}  // namespace vxclone
