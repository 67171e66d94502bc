#include "platform/was_clone.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/services/value_services.h"
#include "virtual_tv/store/folder.h"

using namespace vxtv;

namespace {

constexpr const char* kNetworkSupport = "com.kestrel/featureconf/network.network_support";

/// The applications come from the network, so a model without network does not support them.
Result<void> requireNetwork(const Television& television) {
    return television.systemInformation().featureInt(kNetworkSupport).and_then([](int supported) {
        return supported != 0
                   ? Result<void>()
                   : failure(ErrorCode::NotSupported, "this model has no network; web applications need one");
    });
}

}  // namespace

int was_clone_backup() {
    return answer("was_clone_backup", {}, kFailed, [](Television& television) {
        return serviceStatus(requireNetwork(television).and_then([&television] {
            const ServiceValues values(television.database(), webApplicationService());
            return values.backUp(cloneDirectory(television.folder()));
        }));
    });
}

int was_clone_restore() {
    return answer("was_clone_restore", {}, kFailed, [](Television& television) {
        return serviceStatus(requireNetwork(television).and_then([&television] {
            const ServiceValues values(television.database(), webApplicationService());
            return values.restore(cloneDirectory(television.folder()));
        }));
    });
}
