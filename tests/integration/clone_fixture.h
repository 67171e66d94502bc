#pragma once

#include <nlohmann/json.hpp>
#include <regex>
#include <string>

#include "tests/integration/session_test.h"

namespace vxtest {

/// Two televisions of one model with different settings, and a stick. The text of vxclone about a stopped run
/// as it is if the library's list has every outcome. If two outcomes are appended at the same moment, the
/// list loses one, and without a read-back that category counts as failed.
inline std::string asIfAllWasReported(const std::string& text) {
    static const std::regex kLeft("the load had ended \\(failed: [a-z-]+\\)");
    static const std::regex kStatus(": interrupted \\([a-z-]+\\) in");
    return std::regex_replace(std::regex_replace(text, kLeft, "everything was loaded"), kStatus,
                              ": interrupted in");
}

class CloneTest : public testing::Test {
 protected:
    CloneTest() {
        vxtv({"create", first, "--profile", "room-101"});
        vxtv({"create", second, "--profile", "room-102"});
        std::filesystem::create_directory(place / "stick");
    }

    Finished vxtv(std::vector<std::string> arguments, int expected = 0) const {
        arguments.insert(arguments.begin(), vxtvProgram().string());
        Program program;
        program.command = std::move(arguments);
        const Finished finished = run(program);
        EXPECT_EQ(finished.status, expected) << finished.output << finished.errors;
        return finished;
    }

    Finished vxclone(const std::string& television, std::vector<std::string> arguments) const {
        std::vector<std::string> command = {
            vxtvProgram().string(),   "run", television, "--quiet", "--stick", stick, "--",
            vxcloneProgram().string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        Program program;
        program.command = std::move(command);
        return run(program);
    }

    std::string get(const std::string& television, const std::string& key) const {
        std::string value = vxtv({"get", television, key}).output;
        value.pop_back();
        return value;
    }

    FileTree package() const { return snapshot(place / "stick/clone"); }

    TemporaryDirectory place;
    const std::string first = (place / "first").string();
    const std::string second = (place / "second").string();
    const std::string stick = (place / "stick").string();
};

/// A number of milliseconds that no test waits.
inline constexpr const char* kForEver = "600000";
inline constexpr const char* kWelcome = "db/vxhotel/hotelmenu/welcomemessage";

}  // namespace vxtest
