#include "cloning_app/run/television_comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/check/compared_state.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/television/kept_run_keys.h"
#include "cloning_app/television/settings_store.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr const char* kNotSaved = "the television could not save it";
constexpr const char* kQuick = "of --quick";
/// What the package says of itself, which no television holds.
constexpr std::string_view kIdentity = "identity";

template <class Value>
bool holds(const std::vector<Value>& values, const Value& wanted) {
    return std::find(values.begin(), values.end(), wanted) != values.end();
}

bool hasContent(const ComparedState& state, std::string_view part) {
    return std::any_of(state.entries.begin(), state.entries.end(), [part](const PackageEntry& entry) {
        return entry.path == part || entry.path.rfind(std::string(part) + "/", 0) == 0;
    });
}

/// Whether the television saved everything of the category that it must have saved where the package holds
/// it: the library calls some categories a success whatever the television answered.
bool hasAllParts(const Category& category, const ComparedState& saved, const ComparedState& wanted) {
    return std::all_of(category.parts.begin(), category.parts.end(), [&](std::string_view part) {
        return hasContent(saved, part) || !hasContent(wanted, part);
    });
}

nlohmann::ordered_json lineOf(const PackagePart& part, std::string_view result) {
    nlohmann::ordered_json members = {{"kind", "category"}, {"category", part.category}, {"result", result}};
    if (!part.subject.empty()) {
        members[part.isOfApplication() ? "application" : "path"] = part.subject;
    }
    return members;
}

class TelevisionComparer {
 public:
    explicit TelevisionComparer(const TelevisionLook* look) : look_(look) {
        if (look != nullptr) {
            saved_ = partsOf(look->state);
            outcomeLost_ =
                lostAnOutcome(look->rows, [this](const Row& row) { return hasSaved(row.subject); });
        }
    }

    TelevisionComparison compare(const ComparedState& package) && {
        const auto parts = partsOf(package);
        for (const auto& [part, wanted] : parts) {
            if (part.category != kIdentity) {
                compare(part, wanted);
            }
        }
        nameParts(result_.differences);
        nameNotHeld(parts);
        return std::move(result_);
    }

 private:
    bool hasSaved(const std::string& application) const {
        return saved_.count({std::string(categoryOf(VXCLONE_VXHOTEL_FIRSTSCREEN_DATA).name), application}) !=
               0;
    }

    /// Whether nobody reported a failure of the part, and its outcome, where it has one, is known.
    bool isReportedSaved(const PackagePart& part, VXClone category) const {
        if (category != VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) {
            return !holds(look_->unread, category) && !holds(look_->unreported, category);
        }
        // A row without a name may be this application's. A folder of none of them is a service's, which
        // reports nothing.
        return !outcomeLost_ && std::all_of(look_->rows.begin(), look_->rows.end(), [&part](const Row& row) {
            const bool tells = row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA &&
                               (row.subject.empty() || row.subject == part.subject);
            return !tells || (row.verdict == Verdict::Done && !row.subject.empty());
        });
    }

    void leaveOut(const PackagePart& part, const std::string& why, bool asAsked = false) {
        result_.notCompared.push_back({part, why, asAsked});
    }

    void note(const PackagePart& part, const ComparedState& found, const ComparedState& wanted) {
        result_.compared.push_back(part);
        auto differences = differencesOf(found, wanted);
        std::move(differences.begin(), differences.end(), std::back_inserter(result_.differences));
    }

    void compare(const PackagePart& part, const ComparedState& wanted) {
        const auto category = categoryCalled(part.category);
        if (category == VXCLONE_VCONF_DATA) {
            note(part, {settingsOfTelevision(wanted.settings), {}}, wanted);
        } else if (category && categoryOf(*category).folder != nullptr) {
            compareFolder(part, categoryOf(*category), wanted);
        } else if (look_ == nullptr) {
            leaveOut(part, kQuick, true);
        } else if (const auto found = saved_.find(part);
                   found == saved_.end() || (category && !isSaved(part, *category, wanted) &&
                                             !isTheSameUnreported(part, found->second, wanted))) {
            leaveOut(part, kNotSaved);
        } else {
            note(part, found->second, wanted);
        }
    }

    bool isSaved(const PackagePart& part, VXClone category, const ComparedState& wanted) const {
        return isReportedSaved(part, category) && hasAllParts(categoryOf(category), saved_.at(part), wanted);
    }

    /// The library's list loses an outcome now and then. An application that has saved the package's bytes
    /// has saved all that it has, whoever reported it.
    bool isTheSameUnreported(const PackagePart& part, const ComparedState& found,
                             const ComparedState& wanted) const {
        const bool noneFailed = std::none_of(look_->rows.begin(), look_->rows.end(), [&part](const Row& row) {
            return row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA && row.verdict == Verdict::Failed &&
                   (row.subject.empty() || row.subject == part.subject);
        });
        return part.isOfApplication() && noneFailed && differencesOf(found, wanted).empty();
    }

    void compareFolder(const PackagePart& part, const Category& category, const ComparedState& wanted) {
        if (look_ != nullptr && !isReportedSaved(part, category.value)) {
            leaveOut(part, kNotSaved);
            return;
        }
        auto found = filesOfTelevision(category);
        if (found) {
            note(part, {{}, std::move(*found)}, wanted);
        } else {
            leaveOut(part, found.error().sentence);
        }
    }

    void nameNotHeld(const std::map<PackagePart, ComparedState>& parts) {
        for (const Category& category : categories()) {
            const bool held = std::any_of(parts.begin(), parts.end(), [&category](const auto& each) {
                return each.first.category == category.name;
            });
            if (!held && category.holding != Holding::Nothing) {
                result_.notHeld.emplace_back(category.name);
            }
        }
    }

    const TelevisionLook* look_;
    std::map<PackagePart, ComparedState> saved_;
    bool outcomeLost_ = false;
    TelevisionComparison result_;
};

}  // namespace

bool TelevisionComparison::complete() const {
    return !compared.empty() && std::all_of(notCompared.begin(), notCompared.end(),
                                            [](const NotCompared& each) { return each.asAsked; });
}

TelevisionComparison compareWithTelevision(const ComparedState& package, const TelevisionLook* look) {
    return TelevisionComparer(look).compare(package);
}

Result<TelevisionLook> lookForComparison(const CloneContext& context, const Tree& root,
                                         const TreeSize& needed) {
    if (const int reason = removeContents(root.descriptor); reason != 0) {
        return tl::make_unexpected(writeError(root.place, root.path, reason));
    }
    if (auto space = checkSpace(root, needed); !space) {
        space.error().sentence =
            "the television cannot be saved for a comparison: " + space.error().sentence +
            ", or compare less with --quick";
        return tl::make_unexpected(space.error());
    }
    VX_RETURN_IF_FAILED(keepRunKeys(recordFolderOf(context.cloneRoot)));
    context.view.notice("Saving the television, to compare it with the package.");
    auto look = lookAtTelevision(context, root);
    if (look && context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    return look;
}

std::vector<std::string> sentencesOf(const TelevisionComparison& comparison) {
    std::vector<std::pair<std::string, std::vector<std::string>>> reasons;
    for (const NotCompared& each : comparison.notCompared) {
        auto reason = std::find_if(reasons.begin(), reasons.end(),
                                   [&each](const auto& known) { return known.first == each.why; });
        if (reason == reasons.end()) {
            reason = reasons.insert(reasons.end(), {each.why, {}});
        }
        reason->second.push_back(vxcommon::printable(nameOf(each.part)));
    }
    std::vector<std::string> sentences;
    for (const auto& [why, names] : reasons) {
        sentences.push_back(fmt::format("Not compared, because {}: {}.", why, fmt::join(names, ", ")));
    }
    return sentences;
}

std::vector<nlohmann::ordered_json> linesOf(const TelevisionComparison& comparison) {
    std::vector<nlohmann::ordered_json> lines;
    for (const PackagePart& part : comparison.compared) {
        const bool differs = std::any_of(comparison.differences.begin(), comparison.differences.end(),
                                         [&part](const Difference& each) { return belongsTo(each, part); });
        lines.push_back(lineOf(part, differs ? "differs" : "same"));
    }
    for (const NotCompared& each : comparison.notCompared) {
        lines.push_back(lineOf(each.part, "not-compared"));
        lines.back()["detail"] = each.why;
    }
    for (const std::string& name : comparison.notHeld) {
        lines.push_back(lineOf({name}, "not-held"));
    }
    return lines;
}

std::vector<std::string> namesNotCompared(const TelevisionComparison& comparison) {
    std::vector<std::string> names;
    for (const NotCompared& each : comparison.notCompared) {
        if (!holds(names, each.part.category)) {
            names.push_back(each.part.category);
        }
    }
    return names;
}

}  // namespace vxclone
