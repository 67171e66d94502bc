#include "cloning_app/check/package_look.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cloning_app/check/integrity.h"
#include "cloning_app/package/layout.h"

namespace vxclone {

Result<OpenPackage> OpenPackage::open(const std::filesystem::path& folder) {
    auto target = StickTarget::open(folder);
    VX_RETURN_IF_FAILED(target);
    VX_RETURN_IF_FAILED(target->meanWhatWasSetAside());
    auto opened = target->openPackage();
    VX_RETURN_IF_FAILED(opened);
    return OpenPackage(std::move(*opened), target->path());
}

Result<PackageLook> lookAt(const Tree& package) {
    PackageLook look;
    auto identity = readIdentity(package);
    VX_RETURN_IF_FAILED(identity);
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
    VX_RETURN_IF_FAILED(holdings);
    judgeCompleteness(look.manifest, *holdings, look.checks, look.lacks);
    const auto sealed = hasEntry(package, kSealFile);
    VX_RETURN_IF_FAILED(sealed);
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

using Json = nlohmann::ordered_json;

Json factsOf(const std::string& path, const PackageLook& look) {
    Json facts = {{"kind", "package"}, {"path", path}};
    if (look.manifest) {
        const PackageOrigin& origin = look.manifest->manifest.origin;
        facts.update(Json{{"name", origin.name},
                          {"madeAt", origin.madeAt},
                          {"madeBy", origin.madeBy},
                          {"digest", look.manifest->digest}});
    }
    if (look.identity) {
        facts["model"] = look.identity->model ? Json(*look.identity->model) : Json();
        facts["productTag"] = look.identity->productTag ? Json(*look.identity->productTag) : Json();
        facts["tuner"] = look.identity->tuner ? Json(*look.identity->tuner) : Json();
    }
    return facts;
}

std::string dayAndMinute(const std::string& time) {
    constexpr std::size_t kDay = std::string_view("2026-03-01").size();
    constexpr std::size_t kMinute = std::string_view("12:30").size();
    constexpr std::size_t kWhole = std::string_view("2026-03-01T12:30:00Z").size();
    const bool usual = time.size() == kWhole && time[kDay] == 'T' && time.back() == 'Z';
    return usual ? time.substr(0, kDay) + " " + time.substr(kDay + 1, kMinute) + " UTC" : time;
}

std::string orDash(const std::optional<std::string>& value) {
    return value && !value->empty() ? *value : "-";
}

}  // namespace vxclone
