#include "virtual_tv/factory/profile.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "common/plain_reason.h"
#include "common/strict_json.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/own_file.h"
#include "virtual_tv/services/data_services.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/television/key_file.h"
#include "virtual_tv/television/key_installation.h"

namespace vxtv {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

constexpr std::uintmax_t kLargestProfile = 1 << 20;
constexpr std::uintmax_t kLargestPicture = 16 << 20;
constexpr int kDeepestProfile = 16;

SettingValue settingValueIn(const Json& value, const std::string& where) {
    expectOnly(value, where, {"int", "bool", "string"});
    if (value.size() != 1) {
        throw WrongMember{where, "needs exactly one of int, bool and string"};
    }
    const std::string& type = value.begin().key();
    const std::string member = within(where, type);
    if (type == "int") {
        return intIn(*value.begin(), member);
    }
    if (type == "bool") {
        return boolIn(*value.begin(), member);
    }
    return stringIn(*value.begin(), member);
}

void readSettings(const Json& document, const std::string& where, bool isStatus,
                  std::vector<Setting>& settings) {
    const Json& object = memberOf(document, "", where);
    expectObject(object, where);
    for (const auto& [key, value] : object.items()) {
        const std::string member = within(where, key);
        expectName(key, member);
        const bool twice = std::any_of(settings.begin(), settings.end(),
                                       [&key = key](const Setting& setting) { return setting.key == key; });
        if (twice) {
            throw WrongMember{member, "is a setting already"};
        }
        settings.push_back({key, settingValueIn(value, member), isStatus});
    }
}

std::vector<Feature> readFeatures(const Json& document) {
    const std::string where = "features";
    const Json& object = memberOf(document, "", where);
    expectObject(object, where);
    std::vector<Feature> features;
    for (const auto& [name, value] : object.items()) {
        const std::string member = within(where, name);
        expectName(name, member);
        if (value.is_boolean()) {
            features.push_back({name, value.get<bool>()});
        } else {
            features.push_back({name, intIn(value, member)});
        }
    }
    return features;
}

bool isPlainFileName(const std::string& name) {
    constexpr std::size_t kLongestName = 255;
    return !name.empty() && name != "." && name != ".." && name.size() <= kLongestName &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

bool liesBelow(const fs::path& path, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

fs::path fileIn(const Json& value, const std::string& where, const fs::path& profileFolder) {
    const fs::path relative = stringIn(value, where);
    std::error_code error;
    const fs::path source = fs::canonical(profileFolder / relative, error);
    if (error) {
        throw WrongMember{where, fmt::format("names the file {}, which cannot be found", relative.string())};
    }
    const fs::path folder = fs::canonical(profileFolder, error);
    if (error || relative.is_absolute() || !liesBelow(source, folder)) {
        throw WrongMember{where, fmt::format("names the file {}, which lies outside the profile's folder",
                                             relative.string())};
    }
    return source;
}

fs::path pictureFileIn(const Json& value, const std::string& where, const fs::path& profileFolder) {
    const fs::path source = fileIn(value, where, profileFolder);
    std::error_code error;
    if (!fs::is_regular_file(source, error) || fs::file_size(source, error) > kLargestPicture) {
        throw WrongMember{where, fmt::format("names {}, which is no file of at most {} MiB",
                                             value.get<std::string>(), kLargestPicture >> 20U)};
    }
    return source;
}

std::string valueOrWrong(const Result<std::string>& value, const std::string& where) {
    if (!value) {
        throw WrongMember{where, fmt::format("is of no use: {}", value.error().sentence)};
    }
    return *value;
}

void readKeys(const Json& document, const fs::path& profileFolder, Profile& profile) {
    const auto fileOf = [&](const char* member) {
        const Json& value = memberOf(document, "", member);
        fs::path file = fileIn(value, member, profileFolder);
        // A link could lead to any file that the user of the profile may read.
        if (linkOnTheWay(profileFolder, stringIn(value, member))) {
            throw WrongMember{member, fmt::format("names the file {}, to which a link leads; name the file "
                                                  "itself",
                                                  value.get<std::string>())};
        }
        return file;
    };
    const fs::path secret = fileOf("installationSecret");
    const fs::path keyFile = fileOf("keyFile");
    profile.installationSecret = valueOrWrong(readFleetSecret(secret), "installationSecret");
    profile.keyFile = valueOrWrong(readKeyFile(keyFile), "keyFile");
    profile.packageKey = valueOrWrong(readPackageKey(fileOf("packageKey")), "packageKey");
    if (const auto key = unsealKeyFile(profile.keyFile, profile.installationSecret, keyFile); !key) {
        throw WrongMember{"keyFile", fmt::format("is of no use: {}", key.error().sentence)};
    }
}

std::vector<Picture> readPictures(const Json& document, const fs::path& profileFolder) {
    const std::string where = "pictures";
    const Json& areas = memberOf(document, "", where);
    expectOnly(areas, where, {kBootLogoArea.name, kHomeMenuArea.name, kMbrLogoArea.name});
    std::vector<Picture> pictures;
    for (const PictureArea& area : kPictureAreas) {
        const std::string areaName(area.name);
        const Json& files = memberOf(areas, where, areaName);
        expectObject(files, within(where, areaName));
        for (const auto& [name, source] : files.items()) {
            const std::string member = within(within(where, areaName), name);
            if (!isPlainFileName(name)) {
                throw WrongMember{member, "is not a plain file name"};
            }
            pictures.push_back({areaName, name, pictureFileIn(source, member, profileFolder)});
        }
    }
    return pictures;
}

/// Each service checks its own member when it is made.
void readServices(const Json& document, Profile& profile) {
    const std::string where = "services";
    const Json& services = memberOf(document, "", where);
    expectObject(services, where);
    for (const auto& [name, section] : services.items()) {
        if (findDataService(name) == nullptr) {
            throw WrongMember{within(where, name), "is not a service that a television has"};
        }
        profile.services[name] = section;
    }
}

Profile profileIn(const Json& document, const fs::path& profileFolder) {
    expectOnly(document, "",
               {"model", "productTag", "tunerType", "features", "settings", "status", "pictures",
                "installationSecret", "keyFile", "packageKey", "services", "applications"});
    Profile profile;
    profile.identity.model = stringIn(memberOf(document, "", "model"), "model");
    profile.identity.productTag = stringIn(memberOf(document, "", "productTag"), "productTag");
    profile.identity.tunerType = intIn(memberOf(document, "", "tunerType"), "tunerType");
    profile.features = readFeatures(document);
    readSettings(document, "settings", false, profile.settings);
    readSettings(document, "status", true, profile.settings);
    profile.pictures = readPictures(document, profileFolder);
    readKeys(document, profileFolder, profile);
    readServices(document, profile);
    profile.applications = readApplications(document, profileFolder, pictureFileIn);
    return profile;
}

Result<std::string> textOf(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found) {
        return failure(ErrorCode::UnknownProfile,
                       fmt::format("there is no profile {}; give the path of a .json file", file.string()));
    }
    const std::uintmax_t size = fs::is_regular_file(status) ? fs::file_size(file, error) : 0;
    if (!fs::is_regular_file(status) || size > kLargestProfile) {
        return failure(ErrorCode::BadProfile, fmt::format("{} is no file of at most {} KiB, as a profile is",
                                                          file.string(), kLargestProfile >> 10U));
    }
    std::ifstream stream(file, std::ios::binary);
    std::string text(size, '\0');
    if (!stream.read(text.data(), static_cast<std::streamsize>(size))) {
        return failure(ErrorCode::Io, fmt::format("the profile {} cannot be read: {}; check who may read it",
                                                  file.string(), std::strerror(errno)));
    }
    return text;
}

}  // namespace

tl::unexpected<Error> badProfile(const fs::path& file, std::string_view why) {
    return failure(
        ErrorCode::BadProfile,
        fmt::format("the profile {} cannot be used: {}; correct it and try again", file.string(), why));
}

tl::unexpected<Error> badProfile(const fs::path& file, const WrongMember& wrong) {
    return badProfile(file, fmt::format("\"{}\" {}", wrong.member, wrong.reason));
}

Result<Profile> readProfile(const fs::path& file) {
    const Result<std::string> text = textOf(file);
    VX_RETURN_IF_FAILED(text);
    try {
        Profile profile =
            profileIn(vxcommon::parseStrictly(*text, {kDeepestProfile}), fs::absolute(file).parent_path());
        profile.file = fs::absolute(file);
        return profile;
    } catch (const WrongMember& wrong) {
        return badProfile(file, wrong);
    } catch (const Json::parse_error& error) {
        return badProfile(file, fmt::format("it is not JSON at byte {}", error.byte));
    } catch (const std::exception& error) {
        return badProfile(file, vxcommon::plainReason(error).text());
    }
}

}  // namespace vxtv
