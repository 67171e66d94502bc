#include <gmock/gmock.h>

#include "cloning_app/run/library_run.h"
#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/fake_settings_store.h"

namespace vxclone {
namespace {

using testing::ElementsAre;

constexpr const char* kKey = "db/first_screen/type";
constexpr VXClone kApps = VXCLONE_VXHOTEL_FIRSTSCREEN_DATA;

/// Each row of the category as text.
std::vector<std::string> named(std::vector<Row> rows) {
    nameApplications(rows);
    std::vector<std::string> texts;
    for (const Row& row : rows) {
        texts.push_back(row.subject + "=" + textOf(row));
    }
    return texts;
}

class ApplicationsTest : public testing::Test {
 protected:
    ApplicationsTest() { FakeSettingsStore::instance().reset(); }
};

TEST_F(ApplicationsTest, twoOutcomesAreTheOrvelApplicationAndTheFirstScreen) {
    store::writeString(kKey, "org.harbour.first");
    EXPECT_THAT(
        named({{VXCLONE_AV_SETTINGS, Verdict::Done}, {kApps, Verdict::Done}, {kApps, Verdict::Failed}}),
        ElementsAre("=done", "org.vorta.orvel-app=done", "org.harbour.first=failed"));
}

TEST_F(ApplicationsTest, oneOutcomeIsTheFirstScreensAndTheOtherWasNotAsked) {
    store::writeString(kKey, "org.harbour.first");
    EXPECT_THAT(named({{kApps, Verdict::Done}}),
                ElementsAre("org.vorta.orvel-app=not reported: not installed, or it did not start",
                            "org.harbour.first=done"));
}

TEST_F(ApplicationsTest, oneOutcomeWithoutAFirstScreenIsTheOrvelApplications) {
    EXPECT_THAT(named({{kApps, Verdict::Failed}}), ElementsAre("org.vorta.orvel-app=failed"));
}

TEST_F(ApplicationsTest, firstScreenWithoutANameIsSaidToBeOne) {
    store::writeString(kKey, "");
    EXPECT_THAT(named({{kApps, Verdict::Done}, {kApps, Verdict::Failed}}),
                ElementsAre("org.vorta.orvel-app=done", "first screen, without a name=failed"));
}

TEST_F(ApplicationsTest, categoryOfWhichNothingWasReportedNamesWhatCouldHaveBeenAsked) {
    store::writeString(kKey, "org.harbour.first");
    EXPECT_THAT(named({{kApps, Verdict::NotReported}}),
                ElementsAre("org.vorta.orvel-app=not reported: not installed, or it did not start",
                            "org.harbour.first=not reported"));
}

TEST_F(ApplicationsTest, categoryOfWhichNothingWasReportedWithoutAFirstScreenNamesTheOrvelApplication) {
    EXPECT_THAT(named({{kApps, Verdict::NotReported}}),
                ElementsAre("org.vorta.orvel-app=not reported: not installed, or it did not start"));
}

TEST_F(ApplicationsTest, categoryThatWasNotChosenIsLeftAsItIs) {
    store::writeString(kKey, "org.harbour.first");
    EXPECT_THAT(named({{kApps, Verdict::NotChosen}}), ElementsAre("=not chosen"));
}

TEST_F(ApplicationsTest, applicationThatRunsIsNotCalledNotInstalled) {
    std::vector<Row> rows = {{kApps, Verdict::NotReported}};
    nameApplications(rows);
    sayThatItRuns(rows.front());
    EXPECT_EQ(textOf(rows.front()), "not reported: it runs; its outcome may be lost");
    Row reported{kApps, Verdict::Failed, "why", "org.app"};
    sayThatItRuns(reported);
    EXPECT_EQ(textOf(reported), "failed: why");
    Row other{VXCLONE_AV_SETTINGS, Verdict::NotReported, "why", "org.app"};
    sayThatItRuns(other);
    EXPECT_EQ(textOf(other), "not reported: why");
}

TEST_F(ApplicationsTest, outcomeIsInDoubtOnceOneThatWasNotReportedIsKnownToHaveRun) {
    const std::vector<Row> rows = {{kApps, Verdict::NotReported, "", "a"},
                                   {kApps, Verdict::Done, "", "b"},
                                   {kApps, Verdict::Failed, "", "c"},
                                   {VXCLONE_AV_SETTINGS, Verdict::NotReported, "", "d"}};
    const auto ran = [](const std::string& wanted) {
        return [wanted](const Row& row) { return row.subject == wanted; };
    };
    EXPECT_TRUE(lostAnOutcome(rows, ran("a")));
    EXPECT_FALSE(lostAnOutcome(rows, ran("b")));
    EXPECT_FALSE(lostAnOutcome(rows, ran("d")));
    std::vector<std::string> texts;
    for (Row row : rows) {
        doubt(row);
        texts.push_back(textOf(row));
    }
    EXPECT_THAT(
        texts,
        ElementsAre("not reported", "not reported: the one outcome that came may be another application's",
                    "failed: the one outcome that came may be another application's", "not reported"));
}

}  // namespace
}  // namespace vxclone
