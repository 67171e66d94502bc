// `vxtv keyfile` and the mark of the secure storage, as a user sees them.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/machine/process.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/television/key_file.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using vxtest::Finished;

class KeyfileCommand : public testing::Test {
 protected:
    static Finished vxtv(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), vxtest::vxtvProgram().string());
        vxtest::Program program;
        program.command = std::move(arguments);
        return vxtest::run(program);
    }
    std::string path(const char* name) const { return (folder_.path() / name).string(); }
    fs::path placed() const { return placeOf(Folder(path("tv")), kCloneKeyFile); }
    void createTelevision() const {
        const Finished made = vxtv({"create", path("tv"), "--profile", "room-101"});
        ASSERT_EQ(made.status, 0) << made.errors;
    }

    test::TestFolder folder_;
};

TEST_F(KeyfileCommand, createMakesAFileForTheOwnerAloneThatOpensWithItsSecret) {
    test::writeFile(path("secret"), std::string(32, 's'));
    const Finished made = vxtv({"keyfile", "create", path("key"), "--secret", path("secret")});
    ASSERT_EQ(made.status, 0) << made.errors;
    EXPECT_NE(made.output.find(path("key")), std::string::npos);
    struct stat status {};
    ASSERT_EQ(stat(path("key").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, mode_t{0600});
    const auto key = unsealKeyFile(test::readFile(path("key")), std::string(32, 's'), "key");
    ASSERT_TRUE(key) << key.error().sentence;
    EXPECT_EQ(std::string(key->credential.identifier.data(), 20), "VXCLONE-HOTEL-KEY-01");
    EXPECT_EQ(key->credential.owner, 1);
    EXPECT_EQ(key->credential.group, 0);
}

TEST_F(KeyfileCommand, createRefusesAnExistingFileAndABadSecret) {
    test::writeFile(path("key"), "mine");
    const Finished refused = vxtv({"keyfile", "create", path("key")});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find(path("key")), std::string::npos);
    EXPECT_EQ(test::readFile(path("key")), "mine");
    EXPECT_EQ(vxtv({"keyfile", "create", path("new"), "--secret", path("key")}).status, 2);
    EXPECT_FALSE(fs::exists(path("new")));
}

TEST_F(KeyfileCommand, installReplacesTheKeyFileOnlyWithForce) {
    createTelevision();
    const std::string shipped = test::readFile(placed());
    ASSERT_EQ(vxtv({"keyfile", "create", path("key")}).status, 0);
    const Finished refused = vxtv({"keyfile", "install", path("tv"), path("key")});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("--force"), std::string::npos);
    EXPECT_EQ(test::readFile(placed()), shipped);
    EXPECT_EQ(vxtv({"keyfile", "install", path("tv"), path("key"), "--force"}).status, 0);
    EXPECT_EQ(test::readFile(placed()), test::readFile(path("key")));
}

TEST_F(KeyfileCommand, installRefusesTheKeyFileOfAnotherFleet) {
    createTelevision();
    const std::string shipped = test::readFile(placed());
    test::writeFile(path("secret"), std::string(32, 's'));
    ASSERT_EQ(vxtv({"keyfile", "create", path("key"), "--secret", path("secret")}).status, 0);
    const Finished refused = vxtv({"keyfile", "install", path("tv"), path("key"), "--force"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("another fleet"), std::string::npos);
    EXPECT_EQ(test::readFile(placed()), shipped);
}

TEST_F(KeyfileCommand, sessionShowsTheMarkWhileTheStorageIsUp) {
    createTelevision();
    const std::vector<std::string> look = {"run",  path("tv"), "--quiet",          "--",
                                           "test", "-f",       kSecureStorageReady};
    const Finished up = vxtv(look);
    EXPECT_EQ(up.status, 0) << up.errors;
    EXPECT_EQ(up.errors, "");
    EXPECT_FALSE(fs::exists(placeOf(Folder(path("tv")), kSecureStorageReady)));
    fs::remove(Folder(path("tv")).deviceKey());
    test::writeFile(placeOf(Folder(path("tv")), kSecureStorageReady), "of somebody else");
    const Finished down = vxtv(look);
    EXPECT_EQ(down.status, 1) << "the command did not run, or saw a mark: " << down.errors;
    EXPECT_NE(down.errors.find("device.key"), std::string::npos);
}

}  // namespace
}  // namespace vxtv
