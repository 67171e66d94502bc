#include "cloning_app/run/package_look.h"

#include <algorithm>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/run/identity_check.h"
#include "cloning_app/run/integrity.h"

namespace vxclone {

Result<OpenPackage> OpenPackage::open(const std::filesystem::path& folder) {
    auto target = StickTarget::open(folder);
    if (!target) {
        return tl::make_unexpected(target.error());
    }
    if (const auto meant = target->meanWhatWasSetAside(); !meant) {
        return tl::make_unexpected(meant.error());
    }
    auto opened = target->openPackage();
    if (!opened) {
        return tl::make_unexpected(opened.error());
    }
    return OpenPackage(std::move(*opened), target->path());
}

Result<PackageLook> lookAt(const Tree& package) {
    PackageLook look;
    auto identity = readIdentity(package);
    if (!identity) {
        return tl::make_unexpected(identity.error());
    }
    look.identity = std::move(*identity);
    look.checks = look.identity ? compareIdentities(televisionIdentity(), *look.identity)
                                : std::vector{missingIdentity()};
    auto manifest = readManifest(package, PackageKey::ofTelevision());
    if (manifest) {
        look.manifest = std::move(*manifest);
        look.checks.push_back(checkOf(look.manifest));
    } else if (manifest.error().code == ErrorCode::Altered) {
        look.checks.push_back({Subject::Manifest, Finding::Altered, "", "", kManifestFile});
    } else {
        return tl::make_unexpected(manifest.error());
    }
    const auto holdings = Holdings::of(package);
    if (!holdings) {
        return tl::make_unexpected(holdings.error());
    }
    judgeCompleteness(look.manifest, *holdings, look.checks, look.lacks);
    const auto sealed = hasEntry(package, kSealFile);
    if (!sealed) {
        return tl::make_unexpected(sealed.error());
    }
    if (!*sealed) {
        look.checks.push_back({Subject::Seal, Finding::Missing, "", "", kSealFile});
    }
    return look;
}

int statusOfLook(const PackageLook& look) {
    std::vector<Check> counting;
    std::copy_if(look.checks.begin(), look.checks.end(), std::back_inserter(counting),
                 [](const Check& check) {
                     return problemOf(check) != ErrorCode::NoKey && problemOf(check) != ErrorCode::DoesNotFit;
                 });
    const auto problem = problemOf(counting);
    return problem ? exitStatusOf(*problem) : kExitOk;
}

}  // namespace vxclone
