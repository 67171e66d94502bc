#include "cloning_app/run/package_facts.h"

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

std::string orDash(const std::optional<std::string>& value) {
    return value && !value->empty() ? *value : "-";
}

}  // namespace vxclone
