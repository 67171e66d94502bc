#include "tests/sweeps/storage/disk_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/machine/temporary_directory.h"

namespace vxtest {
namespace {

using Kind = DiskModel::Kind;
using testing::IsEmpty;

constexpr DiskModel::Node kRoot = 1;
constexpr DiskModel::Node kFolder = 2;
constexpr DiskModel::Node kFile = 3;

bool all(Kind /*kind*/) {
    return true;
}
bool none(Kind /*kind*/) {
    return false;
}
bool entriesOnly(Kind kind) {
    return kind == Kind::Entry;
}

/// A file in a folder, nothing flushed.
DiskModel written() {
    DiskModel model(kRoot);
    model.makeFolder(kRoot, "folder", kFolder);
    model.makeFile(kFolder, "file", kFile);
    model.write(kFile, 0, "content");
    return model;
}

TEST(DiskModelTest, powerCutBeforeAnyFlushMayLeaveNothingAllOrAnEmptyFile) {
    const DiskModel model = written();
    EXPECT_THAT(model.after(none), IsEmpty());
    EXPECT_EQ(model.after(all), (FileTree{{"folder/", ""}, {"folder/file", "content"}}));
    EXPECT_EQ(model.after(entriesOnly), (FileTree{{"folder/", ""}, {"folder/file", ""}}));
}

TEST(DiskModelTest, flushedDataIsThereOnlyWithItsEntries) {
    DiskModel model = written();
    model.flush(kFile);
    EXPECT_THAT(model.after(none), IsEmpty());
    model.flush(kRoot);
    EXPECT_EQ(model.after(none), (FileTree{{"folder/", ""}}));
    model.flush(kFolder);
    EXPECT_EQ(model.after(none), (FileTree{{"folder/", ""}, {"folder/file", "content"}}));
    EXPECT_EQ(model.unsure(), 0U);
}

TEST(DiskModelTest, flushSaysNothingOfWhatIsWrittenLater) {
    DiskModel model = written();
    model.flushAll();
    model.write(kFile, 7, " and more");
    model.remove(kFolder, "file");
    EXPECT_EQ(model.after(none), (FileTree{{"folder/", ""}, {"folder/file", "content"}}));
    EXPECT_EQ(model.after(all), (FileTree{{"folder/", ""}}));
}

TEST(DiskModelTest, writeThatSurvivesTheOneBeforeItLeavesZerosInItsPlace) {
    DiskModel model = written();
    model.flushAll();
    model.write(kFile, 7, "AB");
    model.write(kFile, 9, "CD");
    int asked = 0;
    const auto second = [&asked](Kind) { return ++asked == 2; };
    EXPECT_EQ(model.after(second).at("folder/file"), std::string("content\0\0CD", 11));
}

TEST(DiskModelTest, moveAndExchangeAreWholeOrNotAtAll) {
    DiskModel model = written();
    model.makeFile(kRoot, "other", 4);
    model.flushAll();
    model.exchange(kRoot, "folder", "other");
    EXPECT_EQ(model.after(none), (FileTree{{"folder/", ""}, {"folder/file", "content"}, {"other", ""}}));
    EXPECT_EQ(model.after(all), (FileTree{{"other/", ""}, {"other/file", "content"}, {"folder", ""}}));
    model.flush(kRoot);
    model.move(kRoot, "folder", "third");
    EXPECT_EQ(model.after(none), (FileTree{{"other/", ""}, {"other/file", "content"}, {"folder", ""}}));
    EXPECT_EQ(model.after(all), (FileTree{{"other/", ""}, {"other/file", "content"}, {"third", ""}}));
}

TEST(DiskModelTest, diskThatWasReadHoldsSafelyWhatIsThere) {
    TemporaryDirectory folder;
    writeFile(folder / "one/two", "text");
    EXPECT_EQ(DiskModel::of(folder.path()).after(none), snapshot(folder.path()));
}

}  // namespace
}  // namespace vxtest
