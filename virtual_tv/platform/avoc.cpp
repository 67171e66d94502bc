#include "platform/avoc.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

int avoc_backup_all_settings(const char* directory) {
    return absent("avoc_backup_all_settings", {named("directory", directory)}, kFailed);
}

int avoc_restore_all_settings(const char* directory) {
    return absent("avoc_restore_all_settings", {named("directory", directory)}, kFailed);
}
