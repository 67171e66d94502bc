#include "cloning_app/report/result_table.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::Not;

const vxcommon::Screen kColoured{80, true, true};

const Row kSaved{VXCLONE_VCONF_DATA, Verdict::Done, "saved, 54 settings"};

std::vector<Verdict> verdictsOf(const std::vector<Row>& rows, VXClone category) {
    std::vector<Verdict> verdicts;
    for (const Row& row : rows) {
        if (row.category == category) {
            verdicts.push_back(row.verdict);
        }
    }
    return verdicts;
}

Verdict verdictOf(const std::vector<Row>& rows, VXClone category) {
    const auto verdicts = verdictsOf(rows, category);
    EXPECT_EQ(verdicts.size(), 1U);
    return verdicts.at(0);
}

TEST(ResultTable, backupWithoutReportsSaysWhyForEachCategory) {
    const auto rows = tableRows(Direction::Backup, allCategories(), {}, {kSaved});
    ASSERT_EQ(rows.size(), kCategoryCount);
    EXPECT_EQ(verdictOf(rows, VXCLONE_FACTORY_SETTINGS), Verdict::NotReported);
    EXPECT_EQ(verdictOf(rows, VXCLONE_WAS_API_DATA), Verdict::NotReported);
    EXPECT_EQ(verdictOf(rows, VXCLONE_VCONF_DATA), Verdict::Done);
    for (const VXClone category : {VXCLONE_BROADCAST_IPG_DATA, VXCLONE_VXHOTEL_AMBIENT_APP_DATA}) {
        EXPECT_EQ(verdictOf(rows, category), Verdict::NotInBackup);
    }
    EXPECT_FALSE(anyFailed(rows));
}

TEST(ResultTable, factoryThatReportsAFailureIsNotEvaluatedAndDoesNotCount) {
    for (const Direction direction : {Direction::Backup, Direction::Restore}) {
        const auto rows =
            tableRows(direction, allCategories(), {{VXCLONE_FACTORY_SETTINGS, false}}, {kSaved});
        EXPECT_EQ(verdictOf(rows, VXCLONE_FACTORY_SETTINGS), Verdict::NotEvaluated);
        EXPECT_FALSE(anyFailed(rows));
    }
}

TEST(ResultTable, restoreTellsDoneFailedSilentAndNotPossible) {
    const auto rows = tableRows(Direction::Restore, allCategories(),
                                {{VXCLONE_AV_SETTINGS, true}, {VXCLONE_BROADCAST_TVS, false}}, {kSaved});
    EXPECT_EQ(verdictOf(rows, VXCLONE_AV_SETTINGS), Verdict::Done);
    EXPECT_EQ(verdictOf(rows, VXCLONE_BROADCAST_TVS), Verdict::Failed);
    EXPECT_EQ(verdictOf(rows, VXCLONE_BROADCAST_IPG_DATA), Verdict::NotReported);
    EXPECT_EQ(verdictOf(rows, VXCLONE_VXHOTEL_AMBIENT_APP_DATA), Verdict::NotPossible);
    EXPECT_TRUE(anyFailed(rows));
}

TEST(ResultTable, categoriesOutsideTheListAreNotChosen) {
    const auto rows =
        tableRows(Direction::Restore, {VXCLONE_BROADCAST_TVS}, {{VXCLONE_BROADCAST_TVS, true}}, {});
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(),
                            [](const Row& row) { return row.verdict == Verdict::NotChosen; }),
              14);
    EXPECT_EQ(verdictOf(rows, VXCLONE_BROADCAST_TVS), Verdict::Done);
}

TEST(ResultTable, ownFindingStandsInPlaceOfTheLibrarysAndOfAChoice) {
    const Row kept{VXCLONE_HOSPITALITY_LOGO, Verdict::NotChosen, "kept"};
    const auto rows = tableRows(Direction::Restore, {VXCLONE_VCONF_DATA}, {}, {kept, kSaved});
    EXPECT_EQ(verdictOf(rows, VXCLONE_VCONF_DATA), Verdict::Done);
    EXPECT_EQ(rows.at(VXCLONE_HOSPITALITY_LOGO).detail, "kept");
}

TEST(ResultTable, subjectStandsInPlaceOfTheCategorysWords) {
    const std::string table =
        tableOf({{VXCLONE_AV_SETTINGS, Verdict::Done, "", "org.some\x1b.app"}}, {}).render({});
    EXPECT_THAT(table, HasSubstr("org.some\\x1b.app"));
    EXPECT_THAT(table, Not(HasSubstr("picture and sound")));
}

TEST(ResultTable, appsThatReportTwiceHaveARowEach) {
    const auto rows = tableRows(
        Direction::Backup, allCategories(),
        {{VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, true}, {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, false}}, {kSaved});
    EXPECT_THAT(verdictsOf(rows, VXCLONE_VXHOTEL_FIRSTSCREEN_DATA),
                testing::ElementsAre(Verdict::Done, Verdict::Failed));
    EXPECT_TRUE(anyFailed(rows));
}

TEST(ResultTable, renderingNamesEveryCategoryAndColoursOnlyWhenAsked) {
    const auto rows = tableRows(Direction::Backup, allCategories(), {{VXCLONE_AV_SETTINGS, false}}, {kSaved});
    const std::string plain = tableOf(rows, {}).render({});
    for (const Category& category : categories()) {
        EXPECT_THAT(plain, HasSubstr(std::string(category.name)));
    }
    EXPECT_THAT(plain, HasSubstr("saved, 54 settings"));
    EXPECT_THAT(plain, HasSubstr("not part of a backup"));
    EXPECT_THAT(plain, Not(HasSubstr("\x1b")));
    const std::string coloured = tableOf(rows, {}).render(kColoured);
    EXPECT_THAT(coloured, HasSubstr("\x1b[31mfailed"));
    EXPECT_THAT(coloured, HasSubstr("\x1b[32mdone"));
}

TEST(ResultTable, checksStandBelowTheCategories) {
    const auto rows = tableRows(Direction::Backup, allCategories(), {}, {kSaved});
    const std::vector<Check> checks = {{Subject::Seal, Finding::Sealed}};
    EXPECT_THAT(tableOf(rows, checks).render({}),
                testing::ContainsRegex("network-time.*\n.*seal .*sealed\n$"));
    EXPECT_THAT(tableOf({}, checks).render(kColoured), HasSubstr("\x1b[32msealed"));
    EXPECT_THAT(tableOf({}, checks).render({}), testing::StartsWith("check"));
}

vxcommon::Screen columns(std::size_t count) {
    return {count, false, false};
}

/// Possible results of a restore of five categories, in the library's order.
std::vector<Row> restored() {
    return {{VXCLONE_FACTORY_SETTINGS, Verdict::NotEvaluated, "", "", ReadBack::Same},
            {VXCLONE_AV_SETTINGS, Verdict::NotChosen},
            {VXCLONE_VCONF_DATA, Verdict::Done, "applied, 54 settings", "", ReadBack::Same},
            {VXCLONE_BROADCAST_TVS, Verdict::NotApplied, "the television holds what it held before"},
            {VXCLONE_VXTV_TIMER_DATA, Verdict::NotChosen},
            {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Done, "", "org.vorta.orvel-app", ReadBack::Unknown}};
}

const std::vector<Check> kChecks = {{Subject::Identity, Finding::Verified},
                                    {Subject::Seal, Finding::Verified}};

TEST(ResultTable, tableOf120ColumnsBeginsWithWhatFailedAndLeavesOutWhatWasNotChosen) {
    EXPECT_EQ(tableOf(restored(), kChecks).render(columns(120)),
              "category                            result\n"
              "channels       channel map          not applied: the television holds what it held before\n"
              "factory        factory settings     not evaluated, read back: same\n"
              "settings-keys  hotel settings       done, read back: same: applied, 54 settings\n"
              "apps           org.vorta.orvel-app  done, cannot be read back\n"
              "identity       kind of television   verified\n"
              "seal           whole package        verified\n");
}

TEST(ResultTable, tableOf80ColumnsFits) {
    EXPECT_EQ(tableOf(restored(), kChecks).render(columns(80)),
              "category                            result\n"
              "channels       channel map          not applied: the television holds what it\n"
              "                                    held before\n"
              "factory        factory settings     not evaluated, read back: same\n"
              "settings-keys  hotel settings       done, read back: same: applied, 54 settings\n"
              "apps           org.vorta.orvel-app  done, cannot be read back\n"
              "identity       kind of television   verified\n"
              "seal           whole package        verified\n");
}

TEST(ResultTable, tableOf60ColumnsFits) {
    EXPECT_EQ(tableOf(restored(), kChecks).render(columns(60)),
              "category                            result\n"
              "channels       channel map          not applied: the\n"
              "                                    television holds what it\n"
              "                                    held before\n"
              "factory        factory settings     not evaluated, read\n"
              "                                    back: same\n"
              "settings-keys  hotel settings       done, read back: same:\n"
              "                                    applied, 54 settings\n"
              "apps           org.vorta.orvel-app  done, cannot be read\n"
              "                                    back\n"
              "identity       kind of television   verified\n"
              "seal           whole package        verified\n");
}

TEST(ResultTable, whatWasNotChosenIsOneLine) {
    EXPECT_EQ(notChosen(restored()), "not chosen: av, timers");
    EXPECT_EQ(notChosen({{VXCLONE_AV_SETTINGS, Verdict::Done}}), "");
}

TEST(ResultTable, whatWasNotChosenForAReasonKeepsItsRow) {
    const std::vector<Row> rows = {{VXCLONE_HOSPITALITY_LOGO, Verdict::NotChosen, "the package holds none"}};
    EXPECT_EQ(notChosen(rows), "");
    EXPECT_EQ(tableOf(rows, {}).render({}),
              "category              result\n"
              "boot-logo  boot logo  not chosen: the package holds none\n");
}

TEST(ResultTable, problemsOfAPackageComeFirst) {
    const std::vector<Check> checks = {{Subject::Identity, Finding::Verified},
                                       {Subject::Manifest, Finding::Verified},
                                       {Subject::File, Finding::Altered, "", "", "avoc.db"},
                                       {Subject::Seal, Finding::Altered, "", "", "validate.txt"}};
    EXPECT_EQ(tableOf({}, checks).render({}),
              "check                          result\n"
              "file      in the package       altered: avoc.db\n"
              "seal      whole package        altered: validate.txt\n"
              "identity  kind of television   verified\n"
              "manifest  list of the package  verified\n");
}

TEST(ResultTable, doubtHasAColourOfItsOwn) {
    using vxcommon::Colour;
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::Done}), Colour::Good);
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::Done, "", "", ReadBack::Same}), Colour::Good);
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::Done, "", "", ReadBack::Unknown}), Colour::Doubt);
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::NotEvaluated}), Colour::Doubt);
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::NotReported}), Colour::Doubt);
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::Failed, "", "", ReadBack::Unknown}), Colour::Bad);
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::NotInBackup}), Colour::Dim);
    EXPECT_EQ(colourOf({VXCLONE_AV_SETTINGS, Verdict::NotPossible}), Colour::Dim);
    EXPECT_EQ(colourOf({VXCLONE_BROADCAST_IPG_DATA, Verdict::NotReported}), Colour::Dim);
    EXPECT_EQ(colourOf(Check{Subject::Manifest, Finding::Unlisted}), Colour::Doubt);
}

}  // namespace
}  // namespace vxclone
