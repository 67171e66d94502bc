#include "platform/factory_clone.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/services/value_services.h"
#include "virtual_tv/store/folder.h"

using namespace vxtv;

namespace {}  // namespace

int factory_clone_tv_to_usb() {
    return answer("factory_clone_tv_to_usb", {}, kFailed, [](Television& television) {
        const ServiceValues values(television.database(), factoryService());
        return serviceStatus(values.backUp(cloneDirectory(television.folder())));
    });
}

int factory_clone_usb_to_tv() {
    return answer("factory_clone_usb_to_tv", {}, kFailed, [](Television& television) {
        const ServiceValues values(television.database(), factoryService());
        return serviceStatus(values.restore(cloneDirectory(television.folder())));
    });
}
