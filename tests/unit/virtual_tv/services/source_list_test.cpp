#include "virtual_tv/services/source_list.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/services/sample_services.h"
#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using vxtest::kSampleSource;

class SourceListTest : public testing::Test {
 protected:
    void SetUp() override { test::writeFile(picture_, vxtest::kPngBytes); }

    SourceIcons iconsOf(const fs::path& icon) const { return {icon, picture_, picture_, 0}; }
    ErrorCode refusalOf(const fs::path& path) const {
        for (const SourceIcons& icons :
             {SourceIcons{path, picture_, picture_, 0}, SourceIcons{picture_, path, picture_, 0}}) {
            EXPECT_FALSE(sources_.setIcons(kSampleSource, icons)) << path;
        }
        const auto set = sources_.setIcons(kSampleSource, {picture_, picture_, path, 0});
        return set ? ErrorCode::CannotRun : set.error().code;
    }
    Texts texts() const {
        return television_.database()
            .read([](SQLite::Database& connection) -> Result<Texts> { return SourceList::texts(connection); })
            .value();
    }

    test::TestFolder folder_;
    const fs::path picture_ = folder_.path() / "picture.png";
    Television television_ = test::makeTelevision(folder_.path() / "tv");
    SourceList sources_{television_.database()};
};

TEST_F(SourceListTest, listIsOrderedByKeyAndThenAsInTheProfile) {
    const std::vector<Source> sources = sources_.list().value();
    ASSERT_EQ(sources.size(), 3U);
    EXPECT_EQ(sources[0].name, "TV");
    EXPECT_EQ(sources[1].name, "Box");
    EXPECT_EQ(sources[1].id, kSampleSource);
    EXPECT_EQ(sources[1].iconType, 0);
    EXPECT_EQ(sources[2].name, "HDMI 2");
    EXPECT_FALSE(sources[1].icons);
    EXPECT_TRUE(texts().empty());
}

TEST_F(SourceListTest, iconsThatWereSetAreThereAndCompared) {
    const fs::path jpeg = folder_.path() / "picture.jpg";
    test::writeFile(jpeg, "\xFF\xD8\xFF");
    ASSERT_TRUE(sources_.setIcons(kSampleSource, iconsOf(picture_)));
    ASSERT_TRUE(sources_.setIcons(kSampleSource, iconsOf(jpeg)));
    EXPECT_EQ(sources_.list()->at(1).icons->icon, jpeg.string());
    EXPECT_EQ(texts(), (Texts{{"10/icon", jpeg.string()},
                              {"10/firstAppIcon", picture_.string()},
                              {"10/secondAppIcon", picture_.string()},
                              {"10/iconType", "0"}}));
}

TEST_F(SourceListTest, unknownSourceIsRefused) {
    EXPECT_EQ(sources_.setIcons(12, iconsOf(picture_)).error().code, ErrorCode::UnknownEntry);
}

TEST_F(SourceListTest, pathThatIsNoPictureFileIsRefusedAtEachPlace) {
    const fs::path text = folder_.path() / "text.png";
    const fs::path empty = folder_.path() / "empty.png";
    const fs::path link = folder_.path() / "link.png";
    const fs::path pipe = folder_.path() / "pipe.png";
    test::writeFile(text, "not a picture");
    test::writeFile(empty, "");
    fs::create_symlink(picture_, link);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const fs::path& path : {text, empty, link, pipe, folder_.path(), folder_.path() / "missing.png",
                                 fs::path(), fs::relative(picture_)}) {
        EXPECT_EQ(refusalOf(path), ErrorCode::BadArgument) << path;
    }
    EXPECT_TRUE(texts().empty());
}

TEST_F(SourceListTest, profileWithoutItOrWithWrongValuesIsToldSo) {
    Profile profile = test::smallProfile();
    profile.services.erase("sources");
    const Television without = createTelevision(folder_.path() / "without", profile).value();
    EXPECT_EQ(SourceList(without.database()).list().error().code, ErrorCode::UnknownService);
    EXPECT_EQ(SourceList(without.database()).setIcons(1, iconsOf(picture_)).error().code,
              ErrorCode::UnknownService);
    const nlohmann::json relative = {
        {"icon", "a.png"}, {"firstAppIcon", "/a"}, {"secondAppIcon", "/a"}, {"iconType", 0}};
    for (const auto& [member, value] : {std::pair<const char*, nlohmann::json>{"id", 1},
                                        {"id", "x"},
                                        {"name", 1},
                                        {"icons", "x"},
                                        {"icons", relative},
                                        {"more", 1}}) {
        Profile wrong = test::smallProfile();
        wrong.services["sources"][0][member] = value;
        EXPECT_EQ(createTelevision(folder_.path() / "wrong", wrong).error().code, ErrorCode::BadProfile)
            << member;
    }
}

}  // namespace
}  // namespace vxtv
