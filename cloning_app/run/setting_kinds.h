#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vxclone {

/// What kind of thing a setting is.
enum class SettingKind {
    Ordinary,  ///< the same on every television of a hotel
    Identity,  ///< belongs to one room or one television
    Secret     ///< belongs to one television, and nobody is shown its value
};

/// The kind of the setting with this key of the settings store.
SettingKind kindOf(std::string_view key);

/// The keys of every setting of the kind, which is not `Ordinary`.
std::vector<std::string> keysOfKind(SettingKind kind);

/// The kind in JSON: "ordinary", "identity" or "secret".
std::string_view nameOf(SettingKind kind);

}  // namespace vxclone
