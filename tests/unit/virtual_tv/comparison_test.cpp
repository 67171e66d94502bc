#include "virtual_tv/television/comparison.h"

#include <gtest/gtest.h>

#include "test_television.h"
#include "virtual_tv/television/picture_areas.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class ComparisonTest : public testing::Test {
 protected:
    /// The differences of the one area in which the televisions differ; none when they are the same.
    std::vector<Difference> differencesIn(const std::string& wanted) {
        std::vector<Difference> found;
        const auto areas = compareTelevisions(first_, second_);
        EXPECT_TRUE(areas);
        EXPECT_EQ(4U + test::smallProfile().services.size(), areas->size());
        for (const AreaComparison& area : *areas) {
            if (area.area == wanted) {
                found = area.differences;
            } else {
                EXPECT_TRUE(area.differences.empty()) << area.area;
            }
        }
        return found;
    }

    fs::path logos(const Television& television) { return placeOf(television.folder(), kBootLogoArea.path); }

    test::TestFolder folder_;
    Television first_ = test::makeTelevision(folder_.path() / "first");
    Television second_ = test::makeTelevision(folder_.path() / "second");
};

TEST_F(ComparisonTest, equalTelevisionsAreTheSame) {
    ASSERT_TRUE(first_.settings().set("progress", 50));
    EXPECT_TRUE(differencesIn(kSettingsArea).empty());
}

TEST_F(ComparisonTest, otherSettingIsShownWithBothValues) {
    ASSERT_TRUE(second_.settings().set("volume", 20));
    const auto differences = differencesIn(kSettingsArea);
    ASSERT_EQ(1U, differences.size());
    EXPECT_EQ("volume", differences[0].name);
    EXPECT_EQ("12", differences[0].first);
    EXPECT_EQ("20", differences[0].second);
}

TEST_F(ComparisonTest, fileOfOneOnlyIsShown) {
    test::writeFile(logos(first_) / "logo.png", "abc");
    const auto differences = differencesIn("boot-logo");
    ASSERT_EQ(1U, differences.size());
    EXPECT_EQ("logo.png", differences[0].name);
    EXPECT_EQ("3 bytes", differences[0].first);
    EXPECT_EQ("(not there)", differences[0].second);
}

TEST_F(ComparisonTest, filesOfOneSizeAreComparedByTheirBytes) {
    const std::string content(200000, 'a');
    test::writeFile(logos(first_) / "logo.png", content + "x");
    test::writeFile(logos(second_) / "logo.png", content + "y");
    EXPECT_EQ(1U, differencesIn("boot-logo").size());
    test::writeFile(logos(second_) / "logo.png", content + "x");
    EXPECT_TRUE(differencesIn("boot-logo").empty());
}

TEST_F(ComparisonTest, linkIsNotTheFileBehindIt) {
    test::writeFile(logos(first_) / "logo.png", "abc");
    fs::create_symlink(logos(first_) / "logo.png", logos(second_) / "logo.png");
    EXPECT_EQ(1U, differencesIn("boot-logo").size());
}

}  // namespace
}  // namespace vxtv
