#include "cloning_app/run/logos.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/unit/cloning_app/fake_paths.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

class LogosTest : public testing::Test {
 protected:
    LogosTest() {
        FakePaths::instance() = {folder_ / "boot", folder_ / "mbr"};
        std::filesystem::create_directory(root_);
        writeFile(folder_ / "boot/logo.png", "boot picture");
        writeFile(folder_ / "mbr/logo.png", "mbr picture");
        writeFile(folder_ / "mbr/stb_app_icon.png", "icon");
    }

    std::vector<Row> save() {
        const Descriptor root(open(root_.c_str(), O_RDONLY | O_DIRECTORY));
        auto rows = saveLogos({root.get(), root_.string() + "/", Place::Television}, stop_);
        EXPECT_THAT(rows, SizeIs(2));
        return rows;
    }

    TestFolder folder_;
    const std::filesystem::path root_ = folder_ / "root";
    StopFlag stop_;
};

TEST_F(LogosTest, saveOfBothPutsTheirFilesIntoThePackage) {
    const auto rows = save();
    EXPECT_EQ(rows[0].category, VXCLONE_HOSPITALITY_LOGO);
    EXPECT_EQ(textOf(rows[0]), "done: added by vxclone, 1 file");
    EXPECT_EQ(rows[1].category, VXCLONE_VXHOTEL_MBR_LOGO);
    EXPECT_EQ(textOf(rows[1]), "done: added by vxclone, 2 files");
    EXPECT_EQ(contentOf(root_ / "logo"), contentOf(folder_ / "boot"));
    EXPECT_EQ(contentOf(root_ / "VXMBRLogo"), contentOf(folder_ / "mbr"));
}

TEST_F(LogosTest, saveWithoutAFolderLeavesItOutOfThePackage) {
    std::filesystem::remove_all(folder_ / "boot");
    const auto rows = save();
    EXPECT_EQ(textOf(rows[0]), "not reported: this television has none");
    EXPECT_FALSE(std::filesystem::exists(root_ / "logo"));
    EXPECT_EQ(rows[1].verdict, Verdict::Done);
}

TEST_F(LogosTest, saveWhereTheTelevisionDoesNotNameTheFolderFailsInsteadOfSayingThatThereIsNone) {
    FakePaths::instance().bootLogo.clear();
    EXPECT_EQ(textOf(save()[0]),
              "failed: the television does not say where its logos and its home menu are; switch it off and "
              "on, then try again");
    EXPECT_FALSE(std::filesystem::exists(root_ / "logo"));
}

TEST_F(LogosTest, bootLogoIsThereUnlessTheTelevisionSaysWhereItWouldBeAndItIsNot) {
    EXPECT_TRUE(hasLogo(VXCLONE_HOSPITALITY_LOGO));
    std::filesystem::remove_all(folder_ / "boot");
    EXPECT_FALSE(hasLogo(VXCLONE_HOSPITALITY_LOGO));
    FakePaths::instance().bootLogo.clear();
    EXPECT_TRUE(hasLogo(VXCLONE_HOSPITALITY_LOGO));
}

TEST_F(LogosTest, saveOfAnEmptyFolderKeepsIt) {
    std::filesystem::remove(folder_ / "boot/logo.png");
    EXPECT_EQ(textOf(save()[0]), "done: added by vxclone, 0 files");
    EXPECT_TRUE(std::filesystem::is_empty(root_ / "logo"));
}

TEST_F(LogosTest, saveOfALinkAPipeOrAFolderInAFolderFailsAndLeavesNothing) {
    const auto spoil = {std::function([this] { symlink("/etc/passwd", (folder_ / "boot/x").c_str()); }),
                        std::function([this] { mkfifo((folder_ / "boot/x").c_str(), 0600); }),
                        std::function([this] { writeFile(folder_ / "boot/x/deep.png", "deep"); })};
    for (const auto& make : spoil) {
        make();
        const auto rows = save();
        EXPECT_EQ(rows[0].verdict, Verdict::Failed);
        EXPECT_THAT(rows[0].detail, HasSubstr("boot/x"));
        EXPECT_FALSE(std::filesystem::exists(root_ / "logo"));
        EXPECT_EQ(rows[1].verdict, Verdict::Done);
        std::filesystem::remove_all(folder_ / "boot/x");
        std::filesystem::remove_all(root_ / "VXMBRLogo");
    }
}

TEST_F(LogosTest, saveWhereAServiceHasPutSomethingFailsAndIsNotMixedIn) {
    writeFile(root_ / "logo", "a service's own file");
    EXPECT_EQ(save()[0].verdict, Verdict::Failed);
    EXPECT_EQ(readFile(root_ / "logo"), "a service's own file");
}

TEST_F(LogosTest, saveOfAFolderThatIsAFileFails) {
    std::filesystem::remove_all(folder_ / "boot");
    writeFile(folder_ / "boot", "no folder");
    EXPECT_EQ(save()[0].verdict, Verdict::Failed);
}

TEST_F(LogosTest, saveThatIsStoppedLeavesNothing) {
    stop_.raise(SIGINT);
    EXPECT_EQ(save()[0].verdict, Verdict::Failed);
    EXPECT_FALSE(std::filesystem::exists(root_ / "logo"));
}

}  // namespace
}  // namespace vxclone
