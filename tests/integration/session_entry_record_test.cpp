#include <gtest/gtest.h>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"
#include "virtual_tv/session/entry_record.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class EntryRecordTest : public testing::Test {
 protected:
    EntryRecordTest() {
        for (const auto& directory : {folder.opt(), folder.tmp(), folder.media(), folder.run()}) {
            fs::create_directory(directory);
        }
    }

    vxtest::TemporaryDirectory place;
    Folder folder{place.path()};
    EntryRecord record{folder};
};

TEST_F(EntryRecordTest, makeDirectoryMakesThoseAboveAndRemoveAllTakesAllAway) {
    const auto before = vxtest::snapshot(place.path());
    ASSERT_TRUE(record.makeDirectory("tmp/a/b/c"));
    EXPECT_TRUE(fs::is_directory(place / "tmp/a/b/c"));
    EXPECT_TRUE(record.holds("tmp/a/b"));
    record.removeAll();
    EXPECT_EQ(vxtest::snapshot(place.path()), before);
}

TEST_F(EntryRecordTest, removeAllKeepsWhatWasThereBefore) {
    fs::create_directories(place / "tmp/a");
    ASSERT_TRUE(record.makeDirectory("tmp/a/b"));
    EXPECT_FALSE(record.holds("tmp/a"));
    record.removeAll();
    EXPECT_TRUE(fs::is_directory(place / "tmp/a"));
    EXPECT_FALSE(fs::exists(place / "tmp/a/b"));
}

TEST_F(EntryRecordTest, removeAllKeepsWhatIsNoLongerEmpty) {
    ASSERT_TRUE(record.makeDirectory("tmp/a/b"));
    vxtest::writeFile(place / "tmp/a/file", "worth keeping");
    record.removeAll();
    EXPECT_EQ(vxtest::readFile(place / "tmp/a/file"), "worth keeping");
    EXPECT_FALSE(fs::exists(place / "tmp/a/b"));
}

TEST_F(EntryRecordTest, makeDirectoryFollowsNoLink) {
    vxtest::TemporaryDirectory outside;
    fs::create_directory_symlink(outside.path(), place / "tmp/link");
    const auto made = record.makeDirectory("tmp/link/b");
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().sentence.find((place / "tmp/link").string()), std::string::npos);
    EXPECT_TRUE(fs::is_empty(outside.path()));
}

TEST_F(EntryRecordTest, removeAllFollowsNoLink) {
    vxtest::TemporaryDirectory outside;
    fs::create_directory(outside / "b");
    ASSERT_TRUE(record.makeDirectory("tmp/a/b"));
    fs::remove_all(place / "tmp/a");
    fs::create_directory_symlink(outside.path(), place / "tmp/a");
    record.removeAll();
    EXPECT_TRUE(fs::is_directory(outside / "b"));
}

TEST_F(EntryRecordTest, removeAllPassesOverEntriesOutsideOfTheFolder) {
    vxtest::TemporaryDirectory outside;
    const auto hostile = outside.path().string();
    vxtest::writeFile(folder.run() / "session.entries",
                      hostile + '\0' + "../" + outside.path().filename().string());
    record.removeAll();
    EXPECT_TRUE(fs::is_directory(outside.path()));
}

TEST_F(EntryRecordTest, makeLinkRefusesWhatExists) {
    vxtest::writeFile(place / "media/usb", "");
    const auto made = record.makeLink("media/usb", "/usr");
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error().code, ErrorCode::AlreadyExists);
}

TEST_F(EntryRecordTest, nameWithALineFeedIsRemovedToo) {
    ASSERT_TRUE(record.makeDirectory("tmp/a\nb"));
    record.removeAll();
    EXPECT_TRUE(fs::is_empty(place / "tmp"));
}

}  // namespace
}  // namespace vxtv
