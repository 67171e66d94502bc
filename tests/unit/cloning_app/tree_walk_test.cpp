#include "cloning_app/package/tree_walk.h"

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

}  // namespace
}  // namespace vxclone
