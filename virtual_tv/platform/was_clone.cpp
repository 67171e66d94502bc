#include "platform/was_clone.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

int was_clone_backup() {
    return absent("was_clone_backup", {}, kFailed);
}

int was_clone_restore() {
    return absent("was_clone_restore", {}, kFailed);
}
