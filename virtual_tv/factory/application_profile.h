#pragma once

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "virtual_tv/applications/application_manifest.h"
#include "virtual_tv/applications/hotel_database.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// An application of a new television: a program that ships with vxtv, and its data.
struct ProfileApplication {
    ApplicationManifest manifest;
    hotel::Content content;
    std::map<std::string, std::filesystem::path>
        pictures;  ///< by their names in the application: existing regular files
};

/// Finds the file that a path in a profile means. Throws WrongMember.
using FindFile = std::filesystem::path (*)(const nlohmann::json& value, const std::string& where,
                                           const std::filesystem::path& profileFolder);

/// Reads the member "applications" of a profile. Throws WrongMember.
std::vector<ProfileApplication> readApplications(const nlohmann::json& document,
                                                 const std::filesystem::path& profileFolder,
                                                 FindFile picture);

/// Installs them in a new television. Errors: NoSpace, Io.
Result<void> createApplications(const Folder& folder, const std::vector<ProfileApplication>& applications);

}  // namespace vxtv
