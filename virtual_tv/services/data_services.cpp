#include "virtual_tv/services/data_services.h"

#include <algorithm>

#include "virtual_tv/channels/channel_store.h"
#include "virtual_tv/services/network_time.h"
#include "virtual_tv/services/source_list.h"
#include "virtual_tv/services/timer_store.h"
#include "virtual_tv/services/value_services.h"

namespace vxtv {

const std::vector<DataService>& dataServices() {
    static const std::vector<DataService> services = {
        valueDataService<factoryService>(),
        valueDataService<avService>(),
        valueDataService<settingsService>(),
        valueDataService<homeDataService>(),
        valueDataService<webApplicationService>(),
        kChannelService,
        kTimerService,
        {"network-time", NetworkTime::create, NetworkTime::texts, NetworkTime::keptTexts},
        {"sources", SourceList::create, SourceList::texts, SourceList::keptTexts},
    };
    return services;
}

const DataService* findDataService(std::string_view name) {
    const auto& services = dataServices();
    const auto found = std::find_if(services.begin(), services.end(),
                                    [name](const DataService& service) { return service.name == name; });
    return found != services.end() ? &*found : nullptr;
}

void createDataServices(SQLite::Database& connection, const std::map<std::string, nlohmann::json>& sections,
                        const std::filesystem::path& profileFolder) {
    createServiceTable(connection);
    for (const DataService& service : dataServices()) {
        const auto section = sections.find(std::string(service.name));
        if (section != sections.end()) {
            noteDataService(connection, service.name);
            service.create(connection, {section->second, "services > " + section->first, profileFolder});
        }
    }
}

}  // namespace vxtv
