#include "cloning_app/check/package_parts.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "cloning_app/television/category.h"

namespace vxclone {

namespace {

constexpr std::string_view kOther = "other";
constexpr const char* kOfServices = "files of the television's services";

std::string_view nameOfApplications() {
    return categoryOf(VXCLONE_VXHOTEL_FIRSTSCREEN_DATA).name;
}

}  // namespace

bool PackagePart::isOfApplication() const {
    return category == nameOfApplications();
}

std::string nameOf(const PackagePart& part) {
    if (part.isOfApplication() && !part.subject.empty()) {
        return part.category + " (" + part.subject + ")";
    }
    if (part.category == kOther && part.subject.empty()) {
        return kOfServices;
    }
    return part.subject.empty() ? part.category : part.subject;
}

PackagePart partOf(std::string_view path) {
    const std::string_view category = categoryOfPath(path);
    if (category != kOther) {
        return {std::string(category)};
    }
    const bool inFolder = path.find('/') != std::string_view::npos;
    return {std::string(inFolder ? nameOfApplications() : kOther), std::string(topOf(path))};
}

std::map<PackagePart, ComparedState> partsOf(const ComparedState& state) {
    std::map<PackagePart, ComparedState> parts;
    if (!state.settings.empty()) {
        parts[{std::string(categoryOf(VXCLONE_VCONF_DATA).name)}].settings = state.settings;
    }
    for (const PackageEntry& entry : state.entries) {
        parts[partOf(entry.path)].entries.push_back(entry);
    }
    return parts;
}

void nameParts(std::vector<Difference>& differences) {
    for (Difference& difference : differences) {
        if (!difference.isSetting) {
            PackagePart part = partOf(difference.what);
            difference.application = part.isOfApplication() ? part.subject : "";
            difference.category = std::move(part.category);
        }
    }
    std::stable_sort(
        differences.begin(), differences.end(), [](const Difference& one, const Difference& other) {
            return std::tie(one.category, one.application) < std::tie(other.category, other.application);
        });
}

bool belongsTo(const Difference& difference, const PackagePart& part) {
    return difference.category == part.category &&
           (part.subject.empty() || topOf(difference.what) == part.subject);
}

}  // namespace vxclone
