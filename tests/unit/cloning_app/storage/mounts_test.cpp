#include "cloning_app/storage/mounts.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mount.h>

#include <cerrno>
#include <map>

#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t kOwnDisk = 0x801;
constexpr std::uint64_t kStickDisk = 0x811;
constexpr std::uint64_t kMemory = 0x15;

constexpr std::uint64_t kRootMount = 1;
constexpr std::uint64_t kOptMount = 2;
constexpr std::uint64_t kMediaMount = 3;
constexpr std::uint64_t kStickMount = 4;

const FolderPlace kCloneFolder{kOwnDisk, kOptMount};

Mount optMount() {
    return {kOptMount, kOwnDisk, "/tv/opt", "/opt"};
}

/// Whether a folder on the mount belongs to the television, whose clone folder is on /opt.
bool isOwnOn(const Mount& mount) {
    return isTelevisionsOwn({mount.device, mount.number}, kCloneFolder, {optMount(), mount});
}

TEST(Mounts, folderOnTheMountOfTheCloneFolderIsTheTelevisionsOwn) {
    EXPECT_TRUE(isOwnOn(optMount()));
    EXPECT_TRUE(isTelevisionsOwn(kCloneFolder, kCloneFolder, {}));
}

TEST(Mounts, folderOnAMountBelowMediaIsOnAStick) {
    EXPECT_FALSE(isOwnOn({kStickMount, kStickDisk, "/", "/media/usb"}));
    EXPECT_FALSE(isOwnOn({kStickMount, kStickDisk, "/", "/media/usb/inner"}));
    // A folder of the same disk that the television does not show as its own: a virtual stick.
    EXPECT_FALSE(isOwnOn({kStickMount, kOwnDisk, "/stick", "/media/usb"}));
}

TEST(Mounts, mediaItselfIsNoStick) {
    EXPECT_TRUE(isOwnOn({kMediaMount, kOwnDisk, "/tv/media", "/media"}));
    EXPECT_TRUE(isOwnOn({kMediaMount, kMemory, "/", "/media"}));
    EXPECT_TRUE(isOwnOn({kRootMount, kStickDisk, "/", "/"}));
}

TEST(Mounts, televisionsOwnFolderThatIsShownBelowMediaIsNoStick) {
    EXPECT_TRUE(isOwnOn({kStickMount, kOwnDisk, "/tv/opt", "/media/usb"}));
    EXPECT_TRUE(isOwnOn({kStickMount, kOwnDisk, "/tv/opt/usr/share", "/media/usb"}));
    EXPECT_FALSE(isOwnOn({kStickMount, kOwnDisk, "/tv/optional", "/media/usb"}));
}

TEST(Mounts, folderElsewhereIsJudgedByItsDevice) {
    EXPECT_TRUE(isOwnOn({kStickMount, kOwnDisk, "/tv/tmp", "/tmp"}));
    EXPECT_FALSE(isOwnOn({kStickMount, kStickDisk, "/", "/mnt/disk"}));
    EXPECT_FALSE(isOwnOn({kStickMount, kStickDisk, "/", "/mediathek"}));
}

TEST(Mounts, kernelThatTellsNoMountLeavesTheDevice) {
    EXPECT_TRUE(isTelevisionsOwn({kOwnDisk, {}}, {kOwnDisk, {}}, {optMount()}));
    EXPECT_FALSE(isTelevisionsOwn({kStickDisk, {}}, {kOwnDisk, {}}, {optMount()}));
}

TEST(Mounts, sticksAreNamedByWhereTheyAre) {
    const std::vector<Mount> mounts = {
        {kRootMount, kStickDisk, "/", "/"},         {6, kStickDisk, "/", "/media/usb2"},
        {kMediaMount, kMemory, "/", "/media"},      optMount(),
        {5, kOwnDisk, "/tv/opt/usr", "/media/not"}, {kStickMount, kStickDisk, "/", "/media/usb"},
        {7, kStickDisk, "/", "/media/usb"}};
    EXPECT_THAT(pluggedIn(kCloneFolder, mounts), ElementsAre("/media/usb", "/media/usb2"));
    EXPECT_THAT(pluggedIn(kCloneFolder, {optMount()}), IsEmpty());
}

TEST(Mounts, listOfTheKernelIsUnderstood) {
    const auto mounts = parseMounts(
        "21 1 8:1 / / rw,relatime - ext4 /dev/sda1 rw\n"
        "36 21 8:17 /a\\040b\\134 /media/My\\040Stick rw,nosuid shared:7 - vfat /dev/sdb1 rw\n"
        "no line of this kind\n"
        "40 21 0:22 /\n");
    ASSERT_EQ(mounts.size(), 2U);
    EXPECT_EQ(mounts[0].number, 21U);
    EXPECT_EQ(mounts[0].device, kOwnDisk);
    EXPECT_EQ(mounts[0].root, "/");
    EXPECT_EQ(mounts[0].point, "/");
    EXPECT_EQ(mounts[1].number, 36U);
    EXPECT_EQ(mounts[1].device, kStickDisk);
    EXPECT_EQ(mounts[1].root, "/a b\\");
    EXPECT_EQ(mounts[1].point, "/media/My Stick");
}

TEST(Mounts, backslashThatBeginsNoNumberStays) {
    const auto mounts = parseMounts("21 1 8:1 / /a\\09\\ rw\n");
    ASSERT_EQ(mounts.size(), 1U);
    EXPECT_EQ(mounts[0].point, "/a\\09\\");
}

/// The place of written files, for a television with a scripted kernel.
class GoesOntoAStickTest : public testing::Test {
 protected:
    GoesOntoAStickTest() {
        std::filesystem::create_directories(folder_ / "media/clones");
        questions_.placeOf = [this](int) -> std::optional<FolderPlace> {
            errno = EIO;
            // The first query is for the user's folder, the second for the television's.
            const std::size_t asked = asked_++;
            return asked < answers_.size() ? std::optional(answers_[asked]) : std::nullopt;
        };
        questions_.mounts = [this] {
            errno = EMFILE;
            return mounts_;
        };
    }

    Result<bool> ask(bool onThisDisk = false) {
        asked_ = 0;
        const Descriptor opened(open((folder_ / "media").c_str(), O_RDONLY | O_DIRECTORY));
        return goesOntoAStick({{opened.get(), "/media", Place::Stick}, "/media/clone", onThisDisk},
                              folder_ / "opt/no/Clone/", questions_);
    }
    void expectError(ErrorCode code, const std::string& sentence) {
        const auto answer = ask();
        ASSERT_FALSE(answer);
        EXPECT_EQ(answer.error().code, code);
        EXPECT_EQ(answer.error().sentence, sentence);
    }

    TestFolder folder_;
    MountQuestions questions_;
    std::size_t asked_ = 0;
    std::vector<FolderPlace> answers_ = {{kOwnDisk, kMediaMount}, kCloneFolder};
    std::optional<std::string> mounts_ =
        "2 1 8:1 /tv/opt /opt rw\n3 1 8:1 /tv/media /media rw\n4 3 8:17 / /media/usb rw\n";
};

TEST_F(GoesOntoAStickTest, folderOfTheTelevisionIsRefusedAndTheStickIsNamed) {
    expectError(ErrorCode::StickMissing,
                "/media/clone is on this television itself, not on a stick (plugged in: /media/usb); name a "
                "place on the stick, or write here with --on-this-disk");
    *mounts_ += "5 3 8:33 / /media/red\\040one rw\n";
    EXPECT_THAT(ask().error().sentence, testing::HasSubstr("(plugged in: /media/red one, /media/usb)"));
}

TEST_F(GoesOntoAStickTest, folderOfATelevisionWithoutAStickIsRefusedAndThatIsSaid) {
    mounts_ = "2 1 8:1 /tv/opt /opt rw\n3 1 8:1 /tv/media /media rw\n";
    expectError(ErrorCode::StickMissing,
                "/media/clone is on this television itself, and no stick is plugged in; put a stick in, or "
                "write here with --on-this-disk");
}

TEST_F(GoesOntoAStickTest, folderOfTheTelevisionThatIsWantedIsLetInAndNoStick) {
    EXPECT_EQ(ask(true), false);
}

TEST_F(GoesOntoAStickTest, folderOnAStickIsLetInWhetherTheOtherIsWantedOrNot) {
    answers_.front() = {kStickDisk, kStickMount};
    EXPECT_EQ(ask(), true);
    EXPECT_EQ(ask(true), true);
}

TEST_F(GoesOntoAStickTest, whatTheKernelDoesNotTellIsAnError) {
    mounts_.reset();
    expectError(ErrorCode::TelevisionIo,
                "cannot read /proc/self/mountinfo: Too many open files; check the television's disk and run "
                "vxclone as root");
    answers_.pop_back();
    expectError(ErrorCode::TelevisionIo, "cannot read " + folder_.path().string() +
                                             ": Input/output error; check the television's disk and run "
                                             "vxclone as root");
    answers_.clear();
    expectError(ErrorCode::StickIo,
                "cannot read /media: Input/output error; try again, or take another stick");
}

TEST_F(GoesOntoAStickTest, kernelTellsAnotherDiskFromThatOfTheCloneFolder) {
    const auto isOnAStick = [this](const std::string& folder, const std::string& cloneRoot) {
        const Descriptor opened(open((folder_ / folder).c_str(), O_PATH | O_DIRECTORY));
        const auto answer = goesOntoAStick({{opened.get(), folder, Place::Stick}, folder},
                                           folder_ / cloneRoot, realMountQuestions());
        EXPECT_TRUE(answer || answer.error().code == ErrorCode::StickMissing);
        return answer.has_value();
    };
    EXPECT_FALSE(isOnAStick("media", "opt/Clone"));
    std::filesystem::create_directory_symlink("media/clones", folder_ / "link");
    const bool allowed = withOwnMounts([&] {
        ASSERT_EQ(mount("tmpfs", (folder_ / "media").c_str(), "tmpfs", 0, nullptr), 0);
        EXPECT_TRUE(isOnAStick("media", "opt/Clone"));
        std::filesystem::create_directory(folder_ / "media/clones");
        EXPECT_FALSE(isOnAStick("media", "link/Clone")) << "the clone folder is there by a link";
        std::filesystem::create_directory(folder_ / "again");
        ASSERT_EQ(mount((folder_ / "media").c_str(), (folder_ / "again").c_str(), nullptr, MS_BIND, nullptr),
                  0);
        EXPECT_FALSE(isOnAStick("again", "media/clones/no/Clone")) << "the same disk at another place";
        umount((folder_ / "again").c_str());
        umount((folder_ / "media").c_str());
    });
    if (!allowed) {
        GTEST_SKIP() << "this machine allows no mounts";
    }
}

}  // namespace
}  // namespace vxclone
