#include "cloning_app/base/tree_walk.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class HasEntryTest : public testing::Test {
 protected:
    Result<bool> has(const std::string& name) const {
        return hasEntry({descriptor_.get(), folder_.path().string(), Place::Stick}, name);
    }

    TestFolder folder_;
    Descriptor descriptor_{open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
};

TEST_F(HasEntryTest, entryOfWhateverKindIsThere) {
    writeFile(folder_.path() / "file", "");
    fs::create_directory(folder_.path() / "folder");
    fs::create_symlink("nowhere", folder_.path() / "link");
    for (const char* const name : {"file", "folder", "link"}) {
        EXPECT_EQ(has(name), true) << name;
    }
}

TEST_F(HasEntryTest, nameThatNothingHasOrCanHaveIsNotThere) {
    EXPECT_EQ(has("none"), false);
    EXPECT_EQ(has(std::string(256, 'n')), false);
}

TEST_F(HasEntryTest, folderThatCannotBeAskedIsAnErrorThatNamesTheEntry) {
    const auto none = hasEntry({-1, "/media/usb", Place::Stick}, "clone");
    ASSERT_FALSE(none);
    EXPECT_EQ(none.error().code, ErrorCode::Unreadable);
    EXPECT_THAT(none.error().sentence, HasSubstr("/media/usb/clone"));
}

/// Accepts every entry.
class AnyEntry final : public TreeVisitor {
 public:
    Result<void> file(const TreeEntry& /*entry*/, int /*descriptor*/) override { return {}; }
    Result<void> enterFolder(const TreeEntry& /*entry*/) override { return {}; }
    Result<void> leaveFolder() override { return {}; }
};

TEST(WalkTreeTest, linkIsRefusedWithAdviceForThePlaceWhereItIs) {
    const TestFolder folder;
    fs::create_directories(folder / "menu");
    fs::create_symlink("nowhere", folder / "menu/link");
    const Descriptor opened(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::string begin =
        (folder / "menu/link").string() + " is a link or a special file, which no package holds; ";
    AnyEntry visitor;
    const auto onStick = walkTree({opened.get(), folder.path().string(), Place::Stick}, {}, visitor);
    ASSERT_FALSE(onStick);
    EXPECT_EQ(onStick.error().code, ErrorCode::UnsafeEntry);
    EXPECT_EQ(onStick.error().sentence, begin + "make the package again with vxclone backup");
    const auto onTelevision =
        walkTree({opened.get(), folder.path().string(), Place::Television}, {}, visitor);
    ASSERT_FALSE(onTelevision);
    EXPECT_EQ(onTelevision.error().code, ErrorCode::UnsafeEntry);
    EXPECT_EQ(onTelevision.error().sentence, begin + "take it away and try again");
}

TEST(WalkTreeTest, sidecarsAreThoseOfDesktopSystems) {
    for (const char* const name : {".DS_Store", "Thumbs.db", "._vconf", "System Volume Information"}) {
        EXPECT_TRUE(isSidecar(name)) << name;
    }
    for (const char* const name : {".", "vconf", "_vconf", ".hidden"}) {
        EXPECT_FALSE(isSidecar(name)) << name;
    }
}

}  // namespace
}  // namespace vxclone
