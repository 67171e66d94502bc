#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// The description of an installed application.
struct ApplicationManifest {
    std::string id;
    std::string title;
    std::string program;  ///< a program of vxtv by name, or a path with a "/" in the application's folder
    std::vector<std::string> arguments;
    bool autostart = false;  ///< every session starts it
};

/// The manifest's name in an application's folder.
inline constexpr const char* kManifestName = "app.json";

/// Whether the text is a valid application id: at most 128 letters, digits, "-", "_" and ".", beginning with
/// a letter or a digit.
bool isApplicationId(std::string_view id);

/// Reads the manifest from an object that may have further members. Throws WrongMember; `where` is the path
/// to the object.
ApplicationManifest manifestIn(const nlohmann::json& object, const std::string& where);

/// Reads the manifest in an application's folder strictly. Errors: UnknownApplication if it is missing;
/// BadApplication, with the member and the reason in the sentence.
Result<ApplicationManifest> readManifest(const std::filesystem::path& folder);

/// The manifest as text that `readManifest` can read.
std::string manifestText(const ApplicationManifest& manifest);

}  // namespace vxtv
