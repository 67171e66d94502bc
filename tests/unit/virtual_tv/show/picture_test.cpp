#include "virtual_tv/show/picture.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/show/samples.h"
#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv::show {
namespace {

namespace fs = std::filesystem;

class ShowPicture : public testing::Test {
 protected:
    Picture read(const std::string& content) {
        test::writeFile(file_, content);
        return PictureReader(folder_.path()).read(file_, "name");
    }

    test::TestFolder folder_;
    const fs::path file_ = folder_.path() / "picture";
};

TEST_F(ShowPicture, pngTellsItsSizeAndIsKept) {
    const Picture picture = read(test::redPixel());
    EXPECT_EQ("image/png", picture.mediaType);
    EXPECT_EQ(1U, picture.width);
    EXPECT_EQ(1U, picture.height);
    EXPECT_EQ(test::redPixel(), picture.bytes);
    EXPECT_EQ("", picture.trouble);
}

TEST_F(ShowPicture, jpegTellsItsSize) {
    const PictureForm form = formOf(test::jpegOf(40, 30));
    EXPECT_EQ("image/jpeg", form.mediaType);
    EXPECT_EQ(40U, form.width);
    EXPECT_EQ(30U, form.height);
}

TEST_F(ShowPicture, cutAnywhereIsNoPictureOrAWholeHead) {
    for (const std::string& whole : {test::redPixel(), test::jpegOf(40, 30)}) {
        for (std::size_t length = 0; length < 19; ++length) {
            EXPECT_EQ("", formOf(whole.substr(0, length)).mediaType) << length;
        }
    }
}

TEST_F(ShowPicture, anythingElseIsNotShown) {
    const Picture picture = read("<svg onload='x'/>");
    EXPECT_EQ("", picture.bytes);
    EXPECT_EQ("it is no PNG or JPEG picture", picture.trouble);
    EXPECT_EQ(17U, picture.size);
}

TEST_F(ShowPicture, hugeSidesAreNotShown) {
    std::string bytes = test::redPixel();
    bytes[16] = '\x7f';
    EXPECT_EQ("", read(bytes).bytes);
    bytes[16] = '\0';
    bytes[19] = '\0';
    EXPECT_EQ("", read(bytes).bytes);
}

TEST_F(ShowPicture, tooLargeFileIsNotShown) {
    std::string bytes = test::redPixel();
    bytes.resize(kLargestPicture);
    EXPECT_EQ(bytes, read(bytes).bytes);
    const Picture picture = read(bytes + "x");
    EXPECT_EQ("", picture.bytes);
    EXPECT_EQ("it is too large for this page", picture.trouble);
    EXPECT_EQ(kLargestPicture + 1, picture.size);
}

TEST_F(ShowPicture, linksAreNotFollowed) {
    test::writeFile(file_, test::redPixel());
    fs::create_symlink(file_, folder_.path() / "link");
    EXPECT_EQ("it is a link", PictureReader(folder_.path()).read(folder_.path() / "link", "").trouble);

    const test::TestFolder elsewhere;
    test::writeFile(elsewhere.path() / "secret.png", test::redPixel());
    fs::create_directory_symlink(elsewhere.path(), folder_.path() / "way");
    const Picture outside = PictureReader(folder_.path()).read(folder_.path() / "way/secret.png", "");
    EXPECT_EQ("", outside.bytes);
    EXPECT_EQ("a link leads out of the television", outside.trouble);
}

TEST_F(ShowPicture, folderIsReadInOrderAndAMissingOneIsEmpty) {
    fs::create_directory(folder_.path() / "below");
    test::writeFile(folder_.path() / "b.png", test::redPixel());
    test::writeFile(folder_.path() / "below/a.png", test::redPixel());
    const auto pictures = PictureReader(folder_.path()).readFolder(folder_.path());
    ASSERT_EQ(2U, pictures.size());
    EXPECT_EQ("b.png", pictures[0].name);
    EXPECT_EQ("below/a.png", pictures[1].name);
    EXPECT_TRUE(PictureReader(folder_.path()).readFolder(folder_.path() / "none").empty());
}

}  // namespace
}  // namespace vxtv::show
