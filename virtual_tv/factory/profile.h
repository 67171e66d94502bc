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

/// A picture for a new television.
struct Picture {
    std::string area;              ///< as in picture_areas.h
    std::string name;              ///< the file's name in the television
    std::filesystem::path source;  ///< an existing regular file
};

/// The description of a new television. profiles/README.md describes the format.
struct Profile {
    Identity identity;
    std::vector<Feature> features;
    std::vector<Setting> settings;  ///< including status keys
    std::vector<Picture> pictures;
    std::string installationSecret;  ///< of the fleet; empty: the television has none
    std::string keyFile;             ///< the bytes of a key file; empty: the television has none
    std::string packageKey;          ///< of the cloning application; empty: the television has none
    /// The data of the services, by their names. A service that is not here does not exist.
    std::map<std::string, nlohmann::json> services;
    std::vector<ProfileApplication> applications;
    std::filesystem::path file;  ///< the profile's file; empty if a program made the profile
};

/// Reads a profile strictly. Errors: UnknownProfile if there is no such file, Io if it cannot be read,
/// BadProfile with the member and the reason in the sentence.
Result<Profile> readProfile(const std::filesystem::path& file);

/// The error that names the profile and the mistake in it.
tl::unexpected<Error> badProfile(const std::filesystem::path& file, std::string_view why);
tl::unexpected<Error> badProfile(const std::filesystem::path& file, const WrongMember& wrong);

}  // namespace vxtv
