#include "cloning_app/run/read_back.h"

#include <gmock/gmock.h>

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

PackageEntry file(const std::string& path, const std::string& digest) {
    return {path, false, 1, digest};
}

class ReadBackTest : public testing::Test {
 protected:
    /// Compares a single row.
    Row compared(Row row) {
        std::vector<Row> rows = {std::move(row)};
        comparison_ = compareRows(expected_, after_, unsaved_, rows);
        return rows.front();
    }

    Expectation expected_;
    ComparedState after_;
    std::vector<Row> unsaved_;
    Comparison comparison_;
};

TEST_F(ReadBackTest, sameContentIsReadBackTheSame) {
    expected_.package.entries = after_.entries = {file("picture-and-sound.backup", "1")};
    const Row row = compared({VXCLONE_AV_SETTINGS, Verdict::Done});
    EXPECT_EQ(textOf(row), "done, read back: same");
    EXPECT_THAT(comparison_.differences, IsEmpty());
}

TEST_F(ReadBackTest, successThatTheTelevisionDoesNotHoldDiffersAndNamesTheFile) {
    expected_.package.entries = {file("tvs-chms/tvs-chms.zip", "1")};
    after_.entries = {file("tvs-chms/tvs-chms.zip", "2")};
    const Row row = compared({VXCLONE_BROADCAST_TVS, Verdict::Done});
    EXPECT_EQ(textOf(row), "differs: tvs-chms/tvs-chms.zip");
    EXPECT_EQ(comparison_.differences.size(), 1U);
}

TEST_F(ReadBackTest, differenceThatWasThereBeforeIsNotApplied) {
    expected_.package.entries = {file("factory.backup", "1")};
    after_.entries = {file("factory.backup", "2")};
    expected_.before = after_;
    EXPECT_EQ(textOf(compared({VXCLONE_FACTORY_SETTINGS, Verdict::NotEvaluated})),
              "not applied: factory.backup");
}

TEST_F(ReadBackTest, categoryThatIsNeverReportedIsNotCalledASuccess) {
    expected_.package.entries = after_.entries = {file("factory.backup", "1")};
    EXPECT_EQ(textOf(compared({VXCLONE_FACTORY_SETTINGS, Verdict::NotEvaluated})),
              "not evaluated, read back: same");
}

TEST_F(ReadBackTest, failureStaysOneWhateverIsReadBack) {
    expected_.package.entries = {file("tvtimer/timers.backup", "1")};
    after_.entries = expected_.package.entries;
    EXPECT_EQ(textOf(compared({VXCLONE_VXTV_TIMER_DATA, Verdict::Failed})), "failed, read back: same");
    after_.entries = {file("tvtimer/timers.backup", "2")};
    EXPECT_EQ(textOf(compared({VXCLONE_VXTV_TIMER_DATA, Verdict::Failed})),
              "failed, read back: differs: tvtimer/timers.backup");
}

TEST_F(ReadBackTest, bytesOfAnApplicationAreNeverCalledADifference) {
    expected_.package.entries = {file("org.some.app/a.png", "1"), file("org.some.app/hotel.db", "1")};
    after_.entries = {file("org.some.app/a.png", "1"), file("org.some.app/hotel.db", "2")};
    const Row row = compared({VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Done, "", "org.some.app"});
    EXPECT_EQ(row.verdict, Verdict::Done);
    EXPECT_EQ(row.readBack, ReadBack::Unknown);
    EXPECT_THAT(row.detail, HasSubstr("1 of 2 files the same"));
    EXPECT_THAT(comparison_.differences, IsEmpty());
    after_ = expected_.package;
    EXPECT_EQ(compared({VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Done, "", "org.some.app"}).readBack,
              ReadBack::Same);
}

TEST_F(ReadBackTest, applicationThatWasNotAskedDoesNotHoldItsDataOfThePackage) {
    const Row notAsked{VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::NotReported, "not installed", "org.app"};
    EXPECT_EQ(textOf(compared(notAsked)), "not reported: not installed");
    expected_.package.entries = {file("org.app/data", "1")};
    EXPECT_EQ(textOf(compared(notAsked)),
              "not applied: not installed; its data in the package was not loaded");
    after_.entries = {file("org.app/data", "2")};
    EXPECT_EQ(
        textOf(compared(notAsked)),
        "not reported, cannot be read back: it runs; its outcome may be lost; 0 of 1 file the same, the "
        "rest only the application can compare");
    EXPECT_FALSE(comparison_.complete);
    after_.entries = {file("org.app/data", "1")};
    EXPECT_EQ(textOf(compared(notAsked)), "not reported, read back: same: it runs; its outcome may be lost");
    EXPECT_TRUE(comparison_.complete);
}

TEST_F(ReadBackTest, outcomeThatMayBeAnotherApplicationsIsNotTakenForItsOwn) {
    std::vector<Row> rows = {{VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::NotReported, "", "org.lost"},
                             {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Done, "", "org.app"}};
    expected_.package.entries = {file("org.app/data", "1"), file("org.lost/data", "1")};
    after_.entries = {file("org.app/data", "2"), file("org.lost/data", "1")};
    std::vector<Row> doubted = rows;
    EXPECT_FALSE(compareRows(expected_, after_, unsaved_, doubted).complete);
    EXPECT_EQ(textOf(doubted.front()), "not reported, read back: same: it runs; its outcome may be lost");
    EXPECT_EQ(textOf(doubted.back()),
              "not reported, cannot be read back: 0 of 1 file the same, the rest only the application can "
              "compare; the one outcome that came may be another application's");
    after_.entries = {file("org.app/data", "1"), file("org.lost/data", "1")};
    doubted = rows;
    EXPECT_TRUE(compareRows(expected_, after_, unsaved_, doubted).complete);
    EXPECT_EQ(textOf(doubted.back()), "done, read back: same");
    expected_.package.entries = {file("org.lost/data", "1")};
    doubted = rows;
    EXPECT_TRUE(compareRows(expected_, after_, unsaved_, doubted).complete) << "nothing was to be loaded";
    EXPECT_EQ(textOf(doubted.back()),
              "not reported, cannot be read back: the one outcome that came may be another application's");
}

TEST_F(ReadBackTest, filesBesideThoseOfTheHomeMenuStayAndAreCounted) {
    expected_.package.entries = {file("VXHotel/a", "1")};
    after_.entries = {file("VXHotel/a", "1"), file("VXHotel/b", "1")};
    EXPECT_EQ(textOf(compared({VXCLONE_VXHOTEL_HOMEAPP_DATA, Verdict::Done})),
              "done, read back: same: 1 file beside the package's stay");
}

TEST_F(ReadBackTest, fileBesideTheBootLogoIsADifference) {
    expected_.package.entries = {file("logo/a", "1")};
    after_.entries = {file("logo/a", "1"), file("logo/b", "1")};
    EXPECT_EQ(textOf(compared({VXCLONE_HOSPITALITY_LOGO, Verdict::Done})), "differs: logo/b");
}

TEST_F(ReadBackTest, settingsDifferByKeyAndThoseThatThePackageLacksDoNotCount) {
    expected_.package.settings = {{"a", Setting::Int{1}}, {"b", std::string("x")}};
    after_.settings = {{"a", Setting::Int{2}}, {"b", std::string("x")}, {"c", Setting::Bool{true}}};
    EXPECT_EQ(textOf(compared({VXCLONE_VCONF_DATA, Verdict::Done, "applied, 2 settings"})), "differs: a");
    ASSERT_EQ(comparison_.differences.size(), 1U);
    EXPECT_EQ(comparison_.differences.front().what, "a");
}

TEST_F(ReadBackTest, categoryThatCouldNotBeReadAgainMakesTheReadBackIncomplete) {
    expected_.package.entries = {file("picture-and-sound.backup", "1")};
    unsaved_ = {Row{VXCLONE_AV_SETTINGS, Verdict::Failed}};
    EXPECT_EQ(textOf(compared({VXCLONE_AV_SETTINGS, Verdict::Done})),
              "done, cannot be read back: it could not be saved again");
    EXPECT_FALSE(comparison_.complete);
}

TEST_F(ReadBackTest, serviceThatLeavesNoEntryWhenItIsSavedAgainIsNotReadBack) {
    expected_.package.entries = {file("factory.backup", "1")};
    EXPECT_EQ(textOf(compared({VXCLONE_FACTORY_SETTINGS, Verdict::NotEvaluated})),
              "not evaluated, cannot be read back: it could not be saved again");
    EXPECT_FALSE(comparison_.complete);
    expected_.package.entries = {file("web-applications.backup", "1")};
    EXPECT_EQ(textOf(compared({VXCLONE_WAS_API_DATA, Verdict::NotReported})),
              "failed, cannot be read back: it could not be saved again");
}

TEST_F(ReadBackTest, categoryThatWasNotReportedAndIsNotTheSameDiffers) {
    expected_.package.entries = {file("web-applications.backup", "1")};
    after_.entries = {file("web-applications.backup", "2")};
    EXPECT_EQ(textOf(compared({VXCLONE_WAS_API_DATA, Verdict::NotReported})),
              "differs: web-applications.backup");
    after_ = expected_.package;
    EXPECT_EQ(textOf(compared({VXCLONE_WAS_API_DATA, Verdict::NotReported})),
              "not reported, read back: same");
}

TEST_F(ReadBackTest, settingThatCouldNotBeSavedAgainIsNotCalledADifference) {
    expected_.package.settings = {{"a", Setting::Int{1}}, {"b", std::string("x")}};
    after_.settings = {{"b", std::string("x")}};
    EXPECT_EQ(textOf(compared({VXCLONE_VCONF_DATA, Verdict::Done, "applied, 2 settings"})),
              "done, cannot be read back: applied, 2 settings; not read again: a");
    EXPECT_FALSE(comparison_.complete);
}

TEST_F(ReadBackTest, applicationThatCouldNotBeSavedAgainLeavesTheOthersRead) {
    expected_.package.entries = after_.entries = {file("org.good/data", "1")};
    unsaved_ = {Row{VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Failed, "", "org.bad"}};
    EXPECT_EQ(textOf(compared({VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Done, "", "org.good"})),
              "done, read back: same");
    EXPECT_TRUE(comparison_.complete);
}

TEST_F(ReadBackTest, successThatLeavesNothingInAPackageCannotBeReadBack) {
    EXPECT_EQ(textOf(compared({VXCLONE_NTP_SETTINGS_DATA, Verdict::Done})), "done, cannot be read back");
    EXPECT_TRUE(comparison_.complete);
    EXPECT_EQ(compared({VXCLONE_BROADCAST_IPG_DATA, Verdict::NotReported}).readBack, ReadBack::None);
}

TEST_F(ReadBackTest, unknownEntriesThatAreNotTheSameAreNamedOnceEverythingWasLoaded) {
    expected_.package.entries = {file("of-a-service", "1")};
    after_.entries = {file("of-a-service", "2")};
    compared({VXCLONE_AV_SETTINGS, Verdict::NotChosen});
    EXPECT_THAT(comparison_.sentences, IsEmpty());
    expected_.everything = true;
    compared({VXCLONE_AV_SETTINGS, Verdict::Done});
    EXPECT_THAT(comparison_.sentences, ElementsAre(HasSubstr("of-a-service")));
}

}  // namespace
}  // namespace vxclone
