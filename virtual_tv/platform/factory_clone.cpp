#include "platform/factory_clone.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

int factory_clone_tv_to_usb() {
    return absent("factory_clone_tv_to_usb", {}, kFailed);
}

int factory_clone_usb_to_tv() {
    return absent("factory_clone_usb_to_tv", {}, kFailed);
}
