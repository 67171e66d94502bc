#include "tests/sweeps/storage/storage_test.h"

#include <algorithm>
#include <sstream>

namespace vxtest {

StorageTest::StorageTest() {
    vxtv({"create", first, "--profile", "room-101"});
    vxtv({"create", second, "--profile", "room-102"});
    vxtv({"create", judge, "--profile", "room-102"});
    std::filesystem::create_directory(stick);
}

Finished StorageTest::vxtv(const std::vector<std::string>& arguments) const {
    Program program;
    program.command = {vxtvProgram().string()};
    program.command.insert(program.command.end(), arguments.begin(), arguments.end());
    const Finished finished = run(program);
    EXPECT_EQ(finished.status, 0) << finished.output << finished.errors;
    return finished;
}

Program StorageTest::program(const std::string& television, const std::vector<std::string>& arguments,
                             const Variables& variables) const {
    Program program;
    program.command = {vxtvProgram().string(), "run", television, "--quiet", "--stick", stick, "--", "env"};
    for (const auto& [name, value] : variables) {
        program.command.push_back(name + "=" + value);
    }
    program.command.push_back(vxcloneProgram().string());
    program.command.insert(program.command.end(), arguments.begin(), arguments.end());
    program.timeLimit = std::chrono::seconds(60);
    return program;
}

Finished StorageTest::vxclone(const std::string& television, const std::vector<std::string>& arguments,
                              const Variables& variables) const {
    Finished finished = run(program(television, arguments, variables));
    EXPECT_FALSE(finished.timedOut) << finished.output << finished.errors;
    return finished;
}

void StorageTest::backUp(const std::string& television) const {
    const Finished backup = vxclone(television, {"backup", kPackage});
    ASSERT_EQ(backup.status, 0) << backup.output << backup.errors;
}

Variables StorageTest::journalling() {
    return {{"LD_PRELOAD", interposer("vx-file-journal")},
            {"VX_JOURNAL", "/tmp/journal"},
            {"VX_JOURNAL_OF", "/media/usb"}};
}

FileTree StorageTest::package() const {
    return below(onStick(), "clone");
}

bool StorageTest::stickIsTidy() const {
    const FileTree tree = onStick();
    return std::all_of(tree.begin(), tree.end(),
                       [](const auto& entry) { return entry.first.rfind("clone/", 0) == 0; });
}

testing::AssertionResult StorageTest::packageIsGood(const FileTree& complete,
                                                    const std::vector<int>& statuses) const {
    const FileTree found = package();
    for (const auto& [path, content] : complete) {
        if (found.count(path) == 0) {
            return testing::AssertionFailure() << path << " is missing";
        }
    }
    const Finished verify = vxclone(judge, {"verify", kPackage});
    const bool expected = std::find(statuses.begin(), statuses.end(), verify.status) != statuses.end();
    return (expected ? testing::AssertionSuccess() : testing::AssertionFailure())
           << verify.output << verify.errors;
}

std::string StorageTest::settingsOf(const std::string& television) const {
    std::istringstream all(vxtv({"settings", television}).output);
    std::string kept;
    for (std::string line; std::getline(all, line);) {
        if (line.find("db/hotel/clone_") == std::string::npos) {
            kept += line + "\n";
        }
    }
    return kept;
}

FileTree below(const FileTree& tree, const std::string& folder) {
    const std::string beginning = folder + "/";
    FileTree inside;
    for (const auto& [path, content] : tree) {
        if (path.size() > beginning.size() && path.rfind(beginning, 0) == 0) {
            inside[path.substr(beginning.size())] = content;
        }
    }
    return inside;
}

std::string interposer(const std::string& name) {
    return (libraryFolder() / (name + ".so")).string();
}

}  // namespace vxtest
