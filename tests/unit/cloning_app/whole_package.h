#pragma once

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "cloning_app/television/category.h"
#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/test_folder.h"

/// All outcomes that the library reports for a successful run.
inline const std::string kWholeReport = [] {
    std::string report;
    for (const vxclone::Category& category : vxclone::categories()) {
        const bool succeeds = category.inRestore == vxclone::Handling::Reported;
        if (succeeds || category.inRestore == vxclone::Handling::NotEvaluated) {
            report += std::string(category.enumerator) + (succeeds ? "-SUCCESS\n" : "-FAIL\n");
        }
    }
    return report;
}();

/// The settings by their keys, each as JSON: `7`, `"text"`.
using SettingValues = std::map<std::string, std::string>;

/// A settings file with a value for every setting: 1 or "x", or the one in `values`. An empty value leaves
/// the setting out.
inline std::string wholeSettings(const SettingValues& values = {}) {
    std::string text;
    for (const vxclone::SettingFacts& facts : vxclone::clonedSettings()) {
        const bool isText = facts.type == vxclone::SettingType::Text;
        const std::string type =
            isText ? "string" : (facts.type == vxclone::SettingType::Bool ? "bool" : "int");
        const auto chosen = values.find(std::string(facts.key));
        const std::string value = chosen != values.end() ? chosen->second : (isText ? "\"x\"" : "1");
        if (!value.empty()) {
            text += (text.empty() ? "{" : ",") + std::string("\"") + std::string(facts.key) + "\":{\"" +
                    type + "\":" + value + "}";
        }
    }
    return text + "}";
}

/// Fills the folder with a complete package without logos: settings, an entry of each service, an
/// application.
inline void writeWholePackage(const std::filesystem::path& folder, const SettingValues& values = {}) {
    writeFile(folder / "vconf/Vconf.json", wholeSettings(values));
    for (const vxclone::Category& category : vxclone::categories()) {
        for (const std::string_view part : category.parts) {
            // What the library names alone is a folder, in which a service puts a file of its own.
            const bool isFolder = category.entryBy == vxclone::EntryBy::Library && part == category.entry;
            const std::string path =
                std::string(part) + (isFolder ? "/" + std::string(category.name) + ".backup" : "");
            writeFile(folder / path, path);
        }
    }
    writeFile(folder / "org.vorta.orvel-app/data", "org.vorta.orvel-app/data");
    std::filesystem::create_directories(folder / "VXHotel");
}

/// The library's load of the settings: writes each into the store, and 0 or "" if it is missing.
inline void loadSettings(const std::filesystem::path& folder) {
    const auto read = nlohmann::json::parse(readFile(folder / "vconf/Vconf.json"), nullptr, false);
    const nlohmann::json settings = read.is_object() ? read : nlohmann::json::object();
    for (const vxclone::SettingFacts& facts : vxclone::clonedSettings()) {
        const std::string key(facts.key);
        const nlohmann::json typed = settings.value(key, nlohmann::json::object());
        if (facts.type == vxclone::SettingType::Text) {
            vxclone::store::writeString(key, typed.value("string", ""));
        } else if (facts.type == vxclone::SettingType::Bool) {
            vxclone::store::writeBool(key, typed.value("bool", 0) == 1);
        } else {
            vxclone::store::writeInt(key, typed.value("int", 0));
        }
    }
}
