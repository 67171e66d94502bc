#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// One setting of a package. The value is none where the file gives it a type or a value that no setting has.
struct Setting {
    struct Int {
        int value;
    };
    struct Bool {
        bool value;
    };
    std::string key;
    std::variant<std::monostate, Int, Bool, std::string> value;
};

/// The largest settings file that is read, and the most settings in one: a television has some fifty.
inline constexpr std::size_t kMostSettingsBytes = std::size_t{16} << 20U;
inline constexpr std::size_t kMostSettings = 10'000;

/// Reads the settings file of the package. Result: its settings in the order of their keys, or none when the
/// package holds no such file. Errors: `SettingsDamaged`, the file cannot be read, or `stop`, which may be
/// none, was raised meanwhile.
Result<std::optional<std::vector<Setting>>> readSettings(const Tree& package, const StopFlag* stop = nullptr);

/// Takes the settings with these keys out of the package's settings file, which is written as the library
/// writes it. Keys that it does not hold do no harm. Errors: those of `readSettings`; there is no such file;
/// the disk says no.
Result<void> takeOutSettings(const Tree& package, const std::vector<std::string>& keys);

}  // namespace vxclone
