#include "cloning_app/run/package_facts.h"

#include <string_view>

namespace vxclone {

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
