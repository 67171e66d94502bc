#pragma once

#include <string>

#include "virtual_tv/television/television.h"

namespace vxtv {

/// The setting that a person typed the key of. Errors: those of `SettingsStore::get`; an unknown key comes
/// with the one that was likely meant.
Result<Setting> lookUpSetting(const Television& television, const std::string& key);

}  // namespace vxtv
