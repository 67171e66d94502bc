#include <gmock/gmock.h>

#include "tests/unit/cloning_app/looking_test.h"

namespace vxclone {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class DiffTest : public LookingTest {
 protected:
    DiffTest() {
        FakeSettingsStore& store = FakeSettingsStore::instance();
        store.set("a/volume", 12);
        store.set("b/on", FakeSettingsStore::Bool{true});
        store.set("c/text", std::string("hello"));
        store.set(kPinSetting, std::string("4711"));
        FakePaths::instance() = {folder_ / "tv/boot", folder_ / "tv/mbr", folder_ / "tv/home"};
        writeFile(folder_ / "tv/home/menu.json", "menu");
        writeFile(folder_ / "tv/boot/logo.png", "boot");
        fill(second_);
    }

    std::string diff(const std::optional<std::filesystem::path>& other = {}) {
        return said(diffPackage(package_, other));
    }

    const std::filesystem::path second_ = folder_ / "stick/second";
};

TEST_F(DiffTest, televisionThatHoldsWhatThePackageHoldsIsTheSame) {
    EXPECT_THAT(diff(), HasSubstr("No difference."));
    EXPECT_EQ(status_, 0);
}

TEST_F(DiffTest, settingsAreNamedWithBothValuesTheTelevisionsFirst) {
    FakeSettingsStore::instance().set("a/volume", 20);
    FakeSettingsStore::instance().set("c/text", 1);
    EXPECT_THAT(diff(), AllOf(HasSubstr("settings-keys\n  a/volume  20 -> 12\n"),
                              HasSubstr("c/text  (no value) -> \"hello\""), Not(HasSubstr("b/on")),
                              HasSubstr("2 settings and 0 files differ.")));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, secretThatDiffersIsNamedWithoutEitherValue) {
    FakeSettingsStore::instance().set(kPinSetting, std::string("0815"));
    const std::string text = diff();
    EXPECT_THAT(text, HasSubstr(std::string(kPinSetting) + "  differs"));
    EXPECT_THAT(text, Not(HasSubstr("0815")));
    for (const auto& line : lines(diffPackage(package_, std::nullopt))) {
        EXPECT_THAT(line.dump(), Not(HasSubstr("0815")));
    }
}

TEST_F(DiffTest, filesOfTheTelevisionAreComparedByTheirContent) {
    writeFile(folder_ / "tv/home/menu.json", "mehu");
    writeFile(folder_ / "tv/home/more/new.png", "x");
    std::filesystem::remove(folder_ / "tv/boot/logo.png");
    EXPECT_THAT(diff(), AllOf(HasSubstr("home-menu\n  VXHotel/menu.json  other content\n"),
                              HasSubstr("VXHotel/more/new.png  only in this television"),
                              HasSubstr("boot-logo\n  logo/logo.png  only in " + package_.string())));
}

TEST_F(DiffTest, folderThatTheTelevisionDoesNotNameIsAnErrorAndNotAnEmptyOne) {
    FakePaths::instance().homeMenu.clear();
    const auto report = diffPackage(package_, std::nullopt);
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::TelevisionIo);
    EXPECT_EQ(
        report.error().sentence,
        "the television does not say where its logos and its home menu are; switch it off and on, then try "
        "again");
}

TEST_F(DiffTest, whatOnlyARunShowsIsSaidToBeLeftOut) {
    EXPECT_THAT(diff(), AllOf(HasSubstr("Not compared"), HasSubstr("channels"), HasSubstr("mbr-logo"),
                              Not(HasSubstr("avoc.db"))));
}

TEST_F(DiffTest, twoPackagesAreComparedWhole) {
    EXPECT_THAT(diff(second_), HasSubstr("No difference."));
    fill(second_, "20");
    writeFile(second_ / "avoc.db", "b");
    std::filesystem::remove(second_ / "logo/logo.png");
    writeFile(second_ / "tvs-chms/tvs-chms.zip", "x");
    EXPECT_THAT(diff(second_),
                AllOf(HasSubstr("a/volume  12 -> 20"), HasSubstr("other\n  avoc.db  other content"),
                      HasSubstr("logo/logo.png  only in " + package_.string()),
                      HasSubstr("channels\n  tvs-chms/tvs-chms.zip  only in " + second_.string()),
                      HasSubstr("1 setting and 3 files differ.")));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, settingsThatOnePackageLacksAreNamed) {
    writeFile(second_ / "vconf/Vconf.json", R"({"a/volume":{"int":12},"d":{"int":1}})");
    EXPECT_THAT(diff(second_),
                AllOf(HasSubstr("b/on  true -> (not there)"), HasSubstr("d  (not there) -> 1")));
}

TEST_F(DiffTest, identitiesOfTwoPackagesAreComparedToo) {
    writeFile(second_ / "ProductCloneInfo.txt", "T\nM\n1\n");
    EXPECT_THAT(diff(second_), HasSubstr("identity\n  ProductCloneInfo.txt  other content"));
}

TEST_F(DiffTest, packageThatCannotBeUnderstoodIsAnError) {
    writeFile(second_ / "vconf/Vconf.json", "[");
    diff(second_);
    EXPECT_EQ(status_, 3);
    diff(folder_ / "none");
    EXPECT_EQ(status_, 3);
}

TEST_F(DiffTest, jsonNamesEachDifferenceWithItsValues) {
    FakeSettingsStore::instance().set("a/volume", 20);
    writeFile(folder_ / "tv/home/menu.json", "mehu");
    const auto all = lines(diffPackage(package_, std::nullopt));
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].at("path"), "VXHotel/menu.json");
    EXPECT_EQ(all[0].at("category"), "home-menu");
    EXPECT_EQ(all[1].at("setting"), "a/volume");
    EXPECT_EQ(all[1].at("first"), 20);
    EXPECT_EQ(all[1].at("second"), 12);
    EXPECT_EQ(all[2].at("exit"), 1);
}

}  // namespace
}  // namespace vxclone
