#include "platform/settings_data_clone.h"

#include <optional>

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/services/value_services.h"

using namespace vxtv;

namespace {

// The service returns 0 for every failure.
constexpr int kNotCloned = 0;
constexpr int kCloned = 1;

std::optional<Stage> stageOf(SettingsDataCloneAPI::RESTORE_TYPE type) {
    switch (type) {
        case SettingsDataCloneAPI::EARLY_RESTORE:
            return Stage::Early;
        case SettingsDataCloneAPI::LATER_RESTORE:
            return Stage::Later;
    }
    return std::nullopt;
}

}  // namespace

int SettingsDataCloneAPI::BackupSettingsData(std::string directory) {
    return answer("SettingsDataCloneAPI::BackupSettingsData", {named("directory", directory)}, kNotCloned,
                  [&directory](Television& television) {
                      const ServiceValues values(television.database(), settingsService());
                      return values.backUp(directory) ? kCloned : kNotCloned;
                  });
}

int SettingsDataCloneAPI::RestoreSettingsData(std::string directory, RESTORE_TYPE type) {
    return answer("SettingsDataCloneAPI::RestoreSettingsData",
                  {named("directory", directory), number("type", type)}, kNotCloned,
                  [&directory, stage = stageOf(type)](Television& television) {
                      const ServiceValues values(television.database(), settingsService());
                      return stage && values.restore(directory, *stage) ? kCloned : kNotCloned;
                  });
}
