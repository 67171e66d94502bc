#include "fuzz/small_television.h"

#include "fuzz/target.h"
#include "virtual_tv/services/data_services.h"

namespace vxfuzz {

vxtv::Texts SmallTelevision::texts(std::string_view service) const {
    const auto texts = database().read([&](SQLite::Database& connection) -> vxtv::Result<vxtv::Texts> {
        const vxtv::DataService& found = *vxtv::findDataService(service);
        vxtv::Texts all = found.texts(connection);
        if (found.keptTexts != nullptr) {
            all.merge(found.keptTexts(connection));
        }
        return all;
    });
    require(made_ && texts, "the service's values can be read");
    return *texts;
}

}  // namespace vxfuzz
