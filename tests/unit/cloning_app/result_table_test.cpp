#include "cloning_app/run/result_table.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::Not;

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
        renderTable({{VXCLONE_AV_SETTINGS, Verdict::Done, "", "org.some\x1b.app"}}, {}, false);
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
    const std::string plain = renderTable(rows, {}, false);
    for (const Category& category : categories()) {
        EXPECT_THAT(plain, HasSubstr(std::string(category.name)));
    }
    EXPECT_THAT(plain, HasSubstr("saved, 54 settings"));
    EXPECT_THAT(plain, HasSubstr("not part of a backup"));
    EXPECT_THAT(plain, Not(HasSubstr("\x1b")));
    const std::string coloured = renderTable(rows, {}, true);
    EXPECT_THAT(coloured, HasSubstr("\x1b[31mfailed"));
    EXPECT_THAT(coloured, HasSubstr("\x1b[32mdone"));
}

TEST(ResultTable, checksStandBelowTheCategories) {
    const auto rows = tableRows(Direction::Backup, allCategories(), {}, {kSaved});
    const std::vector<Check> checks = {{Subject::Seal, Finding::Sealed}};
    EXPECT_THAT(renderTable(rows, checks, false),
                testing::ContainsRegex("network-time.*\n.*seal .*sealed\n$"));
    EXPECT_THAT(renderTable({}, checks, true), HasSubstr("\x1b[32msealed"));
    EXPECT_THAT(renderTable({}, checks, false), testing::StartsWith("check"));
}

}  // namespace
}  // namespace vxclone
