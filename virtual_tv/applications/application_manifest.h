#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// What a television knows of an application that it has.
struct ApplicationManifest {
    std::string id;
    std::string title;
    std::string program;  ///< one of vxtv's own by its name, or a path with a "/" in the application's folder
    std::vector<std::string> arguments;
    bool autostart = false;  ///< sessions start it
};

/// The manifest's name in an application's folder.
inline constexpr const char* kManifestName = "app.json";

/// Whether the text is fit to be an application's id: up to 128 letters, digits, "-", "_" and ".", of which
/// the first is a letter or a digit.
bool isApplicationId(std::string_view id);

/// The manifest in an object that may hold more. Throws WrongMember; `where` is the path to the object.
ApplicationManifest manifestIn(const nlohmann::json& object, const std::string& where);

/// Reads the manifest of an application's folder strictly. Errors: UnknownApplication when it is missing,
/// BadApplication, whose sentence names the member and what is wrong with it.
Result<ApplicationManifest> readManifest(const std::filesystem::path& folder);

/// The text that `readManifest` reads.
std::string manifestText(const ApplicationManifest& manifest);

}  // namespace vxtv
