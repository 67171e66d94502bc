#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// What kind of thing a setting is.
enum class SettingKind {
    Ordinary,  ///< the same on every television of a hotel
    Identity,  ///< belongs to one room or one television: an address, a network, a number, its use by a
               ///< developer
    Secret     ///< belongs to one television, and nobody is shown its value
};

/// The type of a setting in the television's settings store.
enum class SettingType { Int, Bool, Text };

/// A setting that travels in a package.
struct SettingFacts {
    std::string_view key;  ///< of the settings store
    SettingType type;
    SettingKind kind;
};

inline constexpr std::size_t kSettingCount = 54;

/// All of them, in the order in which the library reads and writes them.
std::span<const SettingFacts> clonedSettings();

/// The setting with this key; none where no such setting travels.
const SettingFacts* clonedSetting(std::string_view key);

/// The kind of the setting with this key; `Ordinary` where none travels.
SettingKind kindOf(std::string_view key);

/// The keys of every setting of the kind.
std::vector<std::string> keysOfKind(SettingKind kind);

/// Whether the value has the type that the setting has in the store.
bool hasTypeOf(const SettingFacts& facts, const Setting& setting);

/// The kind in JSON: "ordinary", "identity" or "secret".
std::string_view nameOf(SettingKind kind);

}  // namespace vxclone
