#include "platform/settings_data_clone.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

// The service says 0 when it failed.
constexpr int kFailed = 0;

}  // namespace

int SettingsDataCloneAPI::BackupSettingsData(std::string directory) {
    return absent("SettingsDataCloneAPI::BackupSettingsData", {named("directory", directory)}, kFailed);
}

int SettingsDataCloneAPI::RestoreSettingsData(std::string directory, RESTORE_TYPE type) {
    return absent("SettingsDataCloneAPI::RestoreSettingsData",
                  {named("directory", directory), number("type", type)}, kFailed);
}
