// Vconf.json, as the library loads it and as vxclone reads it.

#include "cloning_app/package/settings_file.h"

#include <fcntl.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXClonePaths.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/scripted/scripted_platform.h"
#include "tests/unit/expected_settings.h"

namespace vxfuzz {
namespace {

using vxtest::BoolSetting;
using vxtest::ScriptedPlatform;
using vxtest::SettingType;

/// The store's settings as text: a bool as "bool 1".
using Settings = std::map<std::string, std::string>;

constexpr int kNumberBefore = -77;

std::string textOf(const vxtest::Setting& setting) {
    if (const int* const number = std::get_if<int>(&setting)) {
        return "int " + std::to_string(*number);
    }
    if (const BoolSetting* const flag = std::get_if<BoolSetting>(&setting)) {
        return "bool " + std::to_string(flag->value);
    }
    return "string " + std::get<std::string>(setting);
}

Settings settingsOf(ScriptedPlatform& tv) {
    return tv.locked([](ScriptedPlatform::State& state) {
        Settings settings;
        for (const auto& [key, value] : state.settings) {
            settings[key] = textOf(value);
        }
        return settings;
    });
}

void fillStore(ScriptedPlatform& tv) {
    tv.reset();
    for (const auto& [key, type] : vxtest::kExpectedSettings) {
        tv.setSetting(key, type == SettingType::Int    ? vxtest::Setting(kNumberBefore)
                           : type == SettingType::Bool ? vxtest::Setting(BoolSetting{0})
                                                       : vxtest::Setting("before"));
    }
}

bool clone(std::int32_t direction) {
    VXCloneHandler engine;
    VXCloneHandler::m_ecloneType = direction;
    return engine.m_VCONFDataClone();
}

std::optional<std::vector<vxclone::Setting>> readByVxclone() {
    const vxclone::Descriptor folder(open(kCloneDirectory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    auto settings = vxclone::readSettings({folder.get(), kCloneDirectory, vxclone::Place::Stick});
    if (!settings) {
        requireShowable(settings.error().sentence);
        return std::nullopt;
    }
    return *settings;
}

/// The value that vxclone expects in the store, as text; empty if it expects none.
std::string expectedText(const vxclone::Setting& setting) {
    if (const auto* const number = std::get_if<vxclone::Setting::Int>(&setting.value)) {
        return "int " + std::to_string(number->value);
    }
    if (const auto* const flag = std::get_if<vxclone::Setting::Bool>(&setting.value)) {
        return "bool " + std::to_string(flag->value ? 1 : 0);
    }
    const auto* const text = std::get_if<std::string>(&setting.value);
    return text != nullptr ? "string " + *text : "";
}

bool sameType(const std::string& one, const std::string& other) {
    return one.substr(0, one.find(' ')) == other.substr(0, other.find(' '));
}

void compareWithVxclone(const Settings& stored) {
    const auto read = readByVxclone();
    for (const vxclone::Setting& setting : read.value_or(std::vector<vxclone::Setting>())) {
        const auto found = stored.find(setting.key);
        const std::string expected = expectedText(setting);
        require(found == stored.end() || !sameType(expected, found->second) || expected == found->second,
                "vxclone and the library take a setting for the same value");
    }
}

bool isUtf8(const Settings& settings) {
    try {
        static_cast<void>(nlohmann::json(settings).dump());
        return true;
    } catch (const nlohmann::json::exception&) {
        return false;
    }
}

/// A backup of the restored settings must restore the same. Text that is not UTF-8 is an exception: the JSON
/// of a backup has another character in its place.
void cloneOnce(ScriptedPlatform& tv, const Settings& stored) {
    clone(kDirectionBackup);
    fillStore(tv);
    require(clone(kDirectionRestore), "the settings file of a backup is loaded");
    require(!isUtf8(stored) || settingsOf(tv) == stored, "a backup of restored settings brings the same");
}

void run(std::string_view bytes) {
    ScriptedPlatform& tv = ScriptedPlatform::instance();
    fillStore(tv);
    const Settings before = settingsOf(tv);
    vxtest::writeFile(std::string(kVconfDirectory) + kVconfFileName, bytes);
    const bool loaded = clone(kDirectionRestore);
    const Settings stored = settingsOf(tv);
    require(loaded || stored == before, "a settings file that is refused changes nothing");
    if (loaded) {
        compareWithVxclone(stored);
        cloneOnce(tv, stored);
    } else {
        static_cast<void>(readByVxclone());
    }
}

const Target kSettingsFile("settings_file", run);

}  // namespace
}  // namespace vxfuzz
