#include "cloning_app/run/identity_check.h"

#include "cloning_app/package/layout.h"
#include "cloning_app/package/small_file.h"

namespace vxclone {

namespace {

std::string shown(const std::optional<std::string>& value) {
    return value ? *value : "unknown";
}
std::string shown(const std::optional<int>& value) {
    return value ? std::to_string(*value) : "unknown";
}

template <class Value>
Check compare(Subject subject, const Value& television, const Value& package) {
    Finding finding = television == package ? Finding::Same : Finding::Differs;
    if (!television || !package) {
        finding = television ? Finding::Absent : Finding::Unknown;
    }
    return {subject, finding, shown(television), shown(package)};
}

}  // namespace

std::vector<Check> compareIdentities(const Identity& television, const Identity& package) {
    return {compare(Subject::Model, television.model, package.model),
            compare(Subject::ProductTag, television.productTag, package.productTag),
            compare(Subject::Tuner, television.tuner, package.tuner)};
}

Result<std::optional<Identity>> readIdentity(const Tree& package) {
    const auto text = readSmallFile(package, kIdentityFile, kMostIdentityBytes);
    if (!text) {
        return tl::make_unexpected(text.error());
    }
    return *text ? std::optional(parseIdentity(**text)) : std::nullopt;
}

Check missingIdentity() {
    return {Subject::Identity, Finding::Missing, "", "", kIdentityFile};
}

bool overrideModel(std::vector<Check>& checks) {
    for (Check& check : checks) {
        if (check.subject == Subject::Model && check.finding == Finding::Differs) {
            check.finding = Finding::Overridden;
            return true;
        }
    }
    return false;
}

}  // namespace vxclone
