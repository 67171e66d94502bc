#include "cloning_app/base/small_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using Files = std::map<std::string, std::string>;

class ReplaceSmallFile : public testing::Test {
 protected:
    Tree tree() const { return {descriptor_.get(), folder_.path().string(), Place::Television}; }

    TestFolder folder_;
    Descriptor descriptor_{open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
};

TEST_F(ReplaceSmallFile, oldFileAndLeftoverGiveWayToTheNewContent) {
    writeFile(folder_ / "notes", "old");
    writeFile(folder_ / "notes.new", "half");
    ASSERT_TRUE(replaceSmallFile(tree(), "notes", "new", Flushed::ContentAndName));
    EXPECT_EQ(contentOf(folder_.path()), (Files{{"notes", "new"}}));
    ASSERT_TRUE(replaceSmallFile(tree(), "notes", "newer", Flushed::Content));
    EXPECT_EQ(contentOf(folder_.path()), (Files{{"notes", "newer"}}));
}

TEST_F(ReplaceSmallFile, nameThatIsAFolderStaysAndIsNamed) {
    writeFile(folder_ / "notes/inside", "old");
    const auto replaced = replaceSmallFile(tree(), "notes", "new", Flushed::Content);
    ASSERT_FALSE(replaced);
    EXPECT_EQ(replaced.error().code, ErrorCode::TelevisionIo);
    EXPECT_EQ(replaced.error().sentence.rfind(
                  "cannot write " + folder_.path().string() + "/notes: Is a directory; ", 0),
              0U)
        << replaced.error().sentence;
    EXPECT_EQ(readFile(folder_ / "notes/inside"), "old");
}

TEST_F(ReplaceSmallFile, folderThatCannotBeOpenedIsNamed) {
    const auto opened = openOnTelevision(folder_ / "absent");
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().code, ErrorCode::TelevisionIo);
    EXPECT_EQ(opened.error().sentence.rfind(
                  "cannot read " + folder_.path().string() + "/absent: No such file or directory; ", 0),
              0U)
        << opened.error().sentence;
}

}  // namespace
}  // namespace vxclone
