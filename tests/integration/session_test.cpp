#include "tests/integration/session_test.h"

namespace vxtest {

void createTelevision(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder.parent_path());
    const auto made = run({{vxtvProgram(), "create", folder, "--profile", "room-101"}, {}, {}, {}});
    ASSERT_EQ(made.status, 0) << made.errors;
}

Program inTelevision(const std::filesystem::path& folder, std::vector<std::string> command,
                     std::vector<std::string> options) {
    Program program;
    program.command = {vxtvProgram(), "run", folder};
    program.command.insert(program.command.end(), options.begin(), options.end());
    program.command.insert(program.command.end(), {"--quiet", "--"});
    program.command.insert(program.command.end(), command.begin(), command.end());
    return program;
}

SessionTest::SessionTest() {
    createTelevision(television.root());
}

Finished SessionTest::runInside(std::vector<std::string> command, std::vector<std::string> options) const {
    return run(inTelevision(television.root(), std::move(command), std::move(options)));
}

FileTree surroundings(const vxtv::Folder& television) {
    FileTree all;
    for (const auto& directory : {television.opt(), television.tmp(), television.media(), television.run()}) {
        for (const auto& [name, content] : snapshot(directory)) {
            all[directory.filename().string() + "/" + name] = content;
        }
    }
    return all;
}

}  // namespace vxtest
