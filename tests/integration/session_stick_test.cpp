#include <sys/mount.h>

#include "tests/integration/session_test.h"

namespace vxtest {
namespace {

using testing::HasSubstr;
using testing::Not;

class SessionStick : public SessionTest {
 protected:
    SessionStick() { writeFile(stick / "file", "on the stick"); }

    std::filesystem::path stick = place / "stick";
};

TEST_F(SessionStick, unnamedIsCalledUsb) {
    EXPECT_EQ(runInside({"cat", "/media/usb/file"}, {"--stick", stick}).output, "on the stick");
}

TEST_F(SessionStick, namedHasItsName) {
    const auto seen = runInside({"cat", "/media/blue/file"}, {"--stick", stick.string() + ":blue"});
    EXPECT_EQ(seen.output, "on the stick") << seen.errors;
}

TEST_F(SessionStick, severalAreSeenSideBySide) {
    writeFile(place / "other/file", ", on the other");
    const auto seen = runInside({"cat", "/media/usb/file", "/media/two/file"},
                                {"--stick", stick, "--stick", (place / "other").string() + ":two"});
    EXPECT_EQ(seen.output, "on the stick, on the other") << seen.errors;
}

TEST_F(SessionStick, writesLandOnTheHost) {
    ASSERT_EQ(runInside({"cp", "/media/usb/file", "/media/usb/copy"}, {"--stick", stick}).status, 0);
    EXPECT_EQ(readFile(stick / "copy"), "on the stick");
}

TEST_F(SessionStick, missingFolderIsRefused) {
    const auto refused = runInside({"true"}, {"--stick", place / "none"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr((place / "none").string()));
}

TEST_F(SessionStick, fileIsRefused) {
    const auto refused = runInside({"true"}, {"--stick", stick / "file"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("is not a folder"));
}

TEST_F(SessionStick, nameThatIsNoPlainComponentIsRefused) {
    for (const auto* name : {"", ".", "..", "a\nb"}) {
        const auto refused = runInside({"true"}, {"--stick", stick.string() + ":" + name});
        EXPECT_EQ(refused.status, 2) << name;
        EXPECT_THAT(refused.errors, HasSubstr("no name for a stick")) << name;
    }
}

TEST_F(SessionStick, oneNameTwiceIsRefused) {
    const auto refused = runInside({"true"}, {"--stick", stick, "--stick", place.path()});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("two sticks are called 'usb'"));
}

TEST_F(SessionStick, nameOfAFileInTheTelevisionIsRefused) {
    writeFile(television.media() / "usb", "not a directory");
    const auto refused = runInside({"true"}, {"--stick", stick});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr((television.media() / "usb").string()));
}

TEST_F(SessionStick, linkInTheTelevisionIsNotFollowed) {
    std::filesystem::create_directory(place / "elsewhere");
    std::filesystem::create_directory_symlink(place / "elsewhere", television.media() / "usb");
    EXPECT_EQ(runInside({"true"}, {"--stick", stick}).status, 2);
}

TEST_F(SessionStick, writeProtectedFolderStaysReadOnly) {
    std::filesystem::permissions(stick, std::filesystem::perms(0555));
    const auto refused = runInside({"touch", "/media/usb/new"}, {"--stick", stick});
    EXPECT_NE(refused.status, 0);
    EXPECT_THAT(refused.errors, HasSubstr("Read-only"));
    EXPECT_FALSE(std::filesystem::exists(stick / "new"));
}

TEST_F(SessionStick, readOnlyMountStaysReadOnly) {
    ASSERT_EQ(mount("tmpfs", stick.c_str(), "tmpfs", MS_RDONLY | MS_NOSUID | MS_NODEV, nullptr), 0);
    const auto refused = runInside({"touch", "/media/usb/new"}, {"--stick", stick});
    umount(stick.c_str());
    EXPECT_THAT(refused.errors, HasSubstr("Read-only"));
}

TEST_F(SessionStick, realStickInMediaCanHoldTheTelevision) {
    createTelevision("/media/key/tv");
    const auto seen = run(
        inTelevision("/media/key/tv", {"test", "-e", "/media/key/tv/tv.db"}, {"--stick", "/media/key:key"}));
    std::filesystem::remove_all("/media/key");
    EXPECT_EQ(seen.status, 0) << seen.errors;
}

TEST_F(SessionStick, nameThatWouldHideTheTelevisionIsRefused) {
    createTelevision("/media/key/tv");
    const auto refused = run(inTelevision("/media/key/tv", {"true"}, {"--stick", stick.string() + ":key"}));
    std::filesystem::remove_all("/media/key");
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("'key' would hide"));
}

}  // namespace
}  // namespace vxtest
