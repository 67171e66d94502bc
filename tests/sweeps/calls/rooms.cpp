#include "rooms.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/machine/tool_paths.h"

namespace vxtest {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr std::chrono::seconds kLongestCommand(60);

Finished finish(std::vector<std::string> command) {
    Program program;
    program.command = std::move(command);
    program.timeLimit = kLongestCommand;
    return run(program);
}

/// The command line of a process; empty if it has ended.
std::string commandLine(const fs::path& process) {
    std::ifstream file(process / "cmdline");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

}  // namespace

std::vector<std::string> withDeclared(std::vector<std::string> command, bool withApplications) {
    if (!withApplications) {
        command.insert(command.end(), {"--without", "apps"});
    }
    return command;
}

Rooms::Rooms(bool withApplications) {
    fs::create_directories(place_ / "made/stick");
    makeProfiles(withApplications);
    for (const auto& [room, profile] : {std::pair(kFirst, "room-101"), std::pair(kSecond, "room-102")}) {
        const Finished made = vxtv({"create", (place_ / "made" / room).string(), "--profile",
                                    (place_ / "profiles" / profile).string() + ".json"});
        EXPECT_EQ(made.status, 0) << made.errors;
    }
    renew();
    EXPECT_EQ(vxclone(kFirst, withDeclared({"backup", kPackage}, withApplications)).status, 0);
    fs::copy(folder(kStick), place_ / "made/stick", fs::copy_options::recursive);
}

void Rooms::makeProfiles(bool withApplications) const {
    fs::copy(sourceFolder() / "virtual_tv/profiles", place_ / "profiles", fs::copy_options::recursive);
    for (const char* const name : {"room-101.json", "room-102.json"}) {
        Json profile = Json::parse(readFile(place_ / "profiles" / name));
        if (!withApplications) {
            profile["applications"] = Json::array();
            profile["settings"].erase("db/first_screen/type");
        }
        writeFile(place_ / "profiles" / name, profile.dump());
    }
}

void Rooms::renew() const {
    fs::remove_all(place_ / "now");
    fs::copy(place_ / "made", place_ / "now", fs::copy_options::recursive);
}

Finished Rooms::vxtv(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), vxtvProgram().string());
    return finish(std::move(arguments));
}

Finished Rooms::vxclone(const std::string& room, std::vector<std::string> arguments) const {
    std::vector<std::string> command = {
        vxtvProgram().string(),  "run", folder(room).string(),    "--quiet", "--stick",
        folder(kStick).string(), "--",  vxcloneProgram().string()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return finish(std::move(command));
}

std::vector<std::string> Rooms::callsOf(const std::string& room) const {
    std::vector<std::string> calls;
    std::istringstream lines(vxtv({"calls", folder(room).string(), "--json"}).output);
    for (std::string line; std::getline(lines, line);) {
        calls.push_back(Json::parse(line).at("call").get<std::string>());
    }
    return calls;
}

void Rooms::addFault(const std::string& room, const FaultPoint& point) const {
    std::vector<std::string> command = {"fault", folder(room).string()};
    const std::vector<std::string> fault = point.arguments();
    command.insert(command.end(), fault.begin(), fault.end());
    const Finished added = vxtv(std::move(command));
    EXPECT_EQ(added.status, 0) << added.errors;
}

int Rooms::processes() const {
    int count = 0;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        count += commandLine(entry.path()).find(place_.path().string()) != std::string::npos ? 1 : 0;
    }
    return count;
}

}  // namespace vxtest
