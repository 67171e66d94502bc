#pragma once

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/factory/application_profile.h"
#include "virtual_tv/store/settings_store.h"
#include "virtual_tv/store/system_information.h"

namespace vxtv {

/// A picture that a new television gets.
struct Picture {
    std::string area;              ///< as in picture_areas.h
    std::string name;              ///< the file's name in the television
    std::filesystem::path source;  ///< an existing regular file
};

/// What a new television is made from. The format is described in profiles/README.md.
struct Profile {
    Identity identity;
    std::vector<Feature> features;
    std::vector<Setting> settings;  ///< status keys among them
    std::vector<Picture> pictures;
    std::string installationSecret;  ///< the fleet's; empty: the television has none
    std::string keyFile;             ///< a key file's bytes; empty: the television has none
    std::string packageKey;          ///< the cloning application's; empty: the television has none
    /// What the services get that own data, by their names; one that is not here is absent.
    std::map<std::string, nlohmann::json> services;
    std::vector<ProfileApplication> applications;
    std::filesystem::path file;  ///< where the profile was read; empty: made by a program
};

/// Reads a profile strictly. Errors: UnknownProfile when there is no such file, Io when it cannot be read,
/// BadProfile, whose sentence names the member and what is wrong with it.
Result<Profile> readProfile(const std::filesystem::path& file);

/// The error that names the profile and what is wrong in it.
tl::unexpected<Error> badProfile(const std::filesystem::path& file, std::string_view why);
tl::unexpected<Error> badProfile(const std::filesystem::path& file, const WrongMember& wrong);

}  // namespace vxtv
