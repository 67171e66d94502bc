#include "virtual_tv/factory/application_profile.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "common/file_writing.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/base/json_reading.h"

namespace vxtv {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

// Profiles contain data only for this program.
constexpr const char* kProgramWithData = "hotel_app";
constexpr const char* kMember = "applications";

hotel::Card cardIn(const Json& value, const std::string& where, const ProfileApplication& application) {
    expectOnly(value, where, {"title", "body", "picture", "openings"});
    hotel::Card card;
    card.title = stringIn(memberOf(value, where, "title"), within(where, "title"));
    card.body = stringIn(memberOf(value, where, "body"), within(where, "body"));
    card.picture = stringIn(memberOf(value, where, "picture"), within(where, "picture"));
    card.openings = intIn(memberOf(value, where, "openings"), within(where, "openings"));
    if (application.pictures.count(card.picture) == 0) {
        throw WrongMember{within(where, "picture"), "names no picture of this application"};
    }
    return card;
}

void readPicturesOf(const Json& data, const std::string& where, const fs::path& profileFolder,
                    FindFile picture, ProfileApplication& application) {
    const std::string place = within(where, "pictures");
    const Json& pictures = memberOf(data, where, "pictures");
    expectObject(pictures, place);
    for (const auto& [name, source] : pictures.items()) {
        expectName(name, within(place, name));
        if (name.find('/') != std::string::npos || name == "." || name == "..") {
            throw WrongMember{within(place, name), "is not a plain file name"};
        }
        application.pictures[name] = picture(source, within(place, name), profileFolder);
    }
}

void readData(const Json& data, const std::string& where, const fs::path& profileFolder, FindFile picture,
              ProfileApplication& application) {
    expectOnly(data, where, {"greetings", "cards", "pictures"});
    readPicturesOf(data, where, profileFolder, picture, application);
    const std::string greetings = within(where, "greetings");
    expectObject(memberOf(data, where, "greetings"), greetings);
    for (const auto& [language, text] : data["greetings"].items()) {
        expectName(language, within(greetings, language));
        application.content.greetings[language] = stringIn(text, within(greetings, language));
    }
    const std::string cards = within(where, "cards");
    expectArray(memberOf(data, where, "cards"), cards);
    for (const Json& card : data["cards"]) {
        const std::string place = within(cards, std::to_string(application.content.cards.size() + 1));
        application.content.cards.push_back(cardIn(card, place, application));
    }
}

ProfileApplication applicationIn(const Json& value, const std::string& where, const fs::path& profileFolder,
                                 FindFile picture) {
    expectOnly(value, where, {"id", "title", "program", "arguments", "autostart", "data"});
    ProfileApplication application;
    application.manifest = manifestIn(value, where);
    if (application.manifest.program != kProgramWithData) {
        throw WrongMember{within(where, "program"), fmt::format("is not {}, the one that a profile has data "
                                                                "for; others are installed with `vxtv app`",
                                                                kProgramWithData)};
    }
    readData(memberOf(value, where, "data"), within(where, "data"), profileFolder, picture, application);
    return application;
}

Result<void> fillData(const fs::path& data, const ProfileApplication& application) {
    fs::create_directory(data / hotel::kPicturesName);
    for (const auto& [name, source] : application.pictures) {
        const fs::path place = data / hotel::kPicturesName / name;
        fs::copy_file(source, place);
        fs::permissions(place, fs::perms::owner_write, fs::perm_options::add);
    }
    return hotel::createDatabase(data / hotel::kDatabaseName, application.content);
}

}  // namespace

std::vector<ProfileApplication> readApplications(const Json& document, const fs::path& profileFolder,
                                                 FindFile picture) {
    const Json& list = memberOf(document, "", kMember);
    expectArray(list, kMember);
    std::vector<ProfileApplication> applications;
    for (const Json& value : list) {
        const std::string where = within(kMember, std::to_string(applications.size() + 1));
        applications.push_back(applicationIn(value, where, profileFolder, picture));
        const std::string& id = applications.back().manifest.id;
        const auto isTwin = [&id](const ProfileApplication& other) { return other.manifest.id == id; };
        if (std::count_if(applications.begin(), applications.end(), isTwin) > 1) {
            throw WrongMember{within(where, "id"), "is that of another application already"};
        }
    }
    return applications;
}

Result<void> createApplications(const Folder& folder, const std::vector<ProfileApplication>& applications) {
    const Applications installed(folder);
    for (const ProfileApplication& application : applications) {
        try {
            const auto made = installed.create(application.manifest).and_then([&] {
                return fillData(installed.dataOf(application.manifest.id), application);
            });
            if (!made) {
                return made;
            }
        } catch (const fs::filesystem_error& error) {
            const bool full = vxcommon::meansNoRoom(error.code().value());
            return failure(
                full ? ErrorCode::NoSpace : ErrorCode::Io,
                fmt::format("the data of {} cannot be written: {}; {}", application.manifest.id,
                            error.code().message(),
                            full ? "make room on the disk and try again" : "check who may write there"));
        }
    }
    return {};
}

}  // namespace vxtv
