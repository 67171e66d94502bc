#pragma once

#include <nlohmann/json.hpp>

#include "tests/integration/session_test.h"

namespace vxtest {

/// Two televisions of one model with different settings, and a stick.
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

/// Milliseconds that no test waits for.
inline constexpr const char* kForEver = "600000";
inline constexpr const char* kWelcome = "db/vxhotel/hotelmenu/welcomemessage";

}  // namespace vxtest
