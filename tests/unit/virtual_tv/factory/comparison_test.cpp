#include "virtual_tv/factory/comparison.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/applications/application_data.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class ComparisonTest : public testing::Test {
 protected:
    /// The differences of the only area in which the televisions differ; empty if they are the same.
    std::vector<Difference> differencesIn(const std::string& wanted) {
        std::vector<Difference> found;
        const auto areas = compareTelevisions(first_, second_);
        EXPECT_TRUE(areas);
        EXPECT_EQ(4 + test::smallProfile().services.size(),
                  static_cast<std::size_t>(std::count_if(areas->begin(), areas->end(), [](const auto& area) {
                      return area.fate == Fate::Carried;
                  })));
        for (const AreaComparison& area : *areas) {
            if (area.area == wanted) {
                found = area.differences;
            } else {
                EXPECT_TRUE(area.differences.empty()) << area.area;
            }
        }
        return found;
    }

    static void change(const Television& television, const std::string& statement) {
        const auto changed = television.database().write(
            [&](SQLite::Database& connection) -> Result<int> { return connection.exec(statement); });
        ASSERT_TRUE(changed) << changed.error().sentence;
        EXPECT_LT(0, *changed) << statement << " changed nothing";
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

/// A change of one value of a television, and the area that shows it.
struct ChangeOf {
    const char* area;
    const char* statement;

    friend void PrintTo(const ChangeOf& change, std::ostream* out) { *out << change.statement; }
};

constexpr ChangeOf kChanges[] = {
    {"factory",
     "UPDATE service_values SET content = json_set(content, '$.region.code', 'uk') WHERE service = "
     "'factory'"},
    {"factory-kept",
     "UPDATE service_values SET content = json_set(content, '$.identity.serialNumber', 'S2') "
     "WHERE service = 'factory'"},
    {"av",
     "UPDATE service_values SET content = json_set(content, '$.picture.mode', 'movie') WHERE service = "
     "'av'"},
    {"settings",
     "UPDATE service_values SET content = json_set(content, '$.lock.highestAge', 7) WHERE service = "
     "'settings'"},
    {"home-data",
     "UPDATE service_values SET content = json_set(content, '$.layout.columns', 7) WHERE service = "
     "'home-data'"},
    {"was",
     "UPDATE service_values SET content = json_set(content, '$.applications[0].name', 'other') WHERE "
     "service = 'was'"},
    {"channels", "UPDATE channels SET name = 'other' WHERE number = 1"},
    {"channels", "UPDATE transponders SET frequency = frequency + 1 WHERE id = 1"},
    {"channels", "UPDATE hotel_channels SET name = 'other' WHERE position = 1"},
    {"navigation-lists", "DELETE FROM navigation_entries WHERE mode = 11"},
    {"navigation-lists", "UPDATE navigation_entries SET stale = 1 WHERE mode = 10"},
    {"navigation-lists", "UPDATE navigation_entries SET sort_order = 9 WHERE mode = 10"},
    {"navigation-lists", "UPDATE navigation_places SET service = 4 WHERE mode = 11"},
    {"timers", "UPDATE timers SET title = 'other' WHERE id = 1"},
    {"network-time", "UPDATE network_time SET server = 'other.example'"},
    {"network-time-kept", "UPDATE network_time SET timezone = 30"},
    {"sources", "INSERT INTO source_icons VALUES (10, '/a', '/b', '/c', 1)"},
    {"sources-kept", "UPDATE sources SET name = 'other' WHERE id = 10"},
};

class ComparisonOfAreas : public ComparisonTest, public testing::WithParamInterface<ChangeOf> {};

TEST_P(ComparisonOfAreas, changeIsSeenInItsAreaAlone) {
    // The server only changes while network time is on.
    change(first_, "UPDATE network_time SET is_on = 1");
    change(second_, "UPDATE network_time SET is_on = 1");
    change(second_, GetParam().statement);
    EXPECT_FALSE(differencesIn(GetParam().area).empty());
}

INSTANTIATE_TEST_SUITE_P(Each, ComparisonOfAreas, testing::ValuesIn(kChanges));

TEST_F(ComparisonTest, filesOfHomeMenuAndSetTopBoxAreCompared) {
    test::writeFile(placeOf(second_.folder(), kHomeMenuArea.path) / "a.jpg", "abc");
    EXPECT_EQ(1U, differencesIn("home-menu").size());
    fs::remove(placeOf(second_.folder(), kHomeMenuArea.path) / "a.jpg");
    test::writeFile(placeOf(second_.folder(), kMbrLogoArea.path) / "a.jpg", "abc");
    EXPECT_EQ(1U, differencesIn("mbr-logo").size());
}

TEST_F(ComparisonTest, rowsOfApplicationsThatBeginAlikeAreAllCompared) {
    for (const Television* television : {&first_, &second_}) {
        const Applications applications(television->folder());
        ASSERT_TRUE(applications.create({"org.test.one", "One", "hotel_app", {}, true}));
        fs::create_directories(applications.dataOf("org.test.one"));
        SQLite::Database rows(applications.dataOf("org.test.one") / "rows.db",
                              SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        rows.exec("CREATE TABLE visits (room TEXT, guest TEXT)");
        rows.exec("INSERT INTO visits VALUES ('101', 'Last')");
        rows.exec(television == &first_ ? "INSERT INTO visits VALUES ('101', 'First')"
                                        : "INSERT INTO visits VALUES ('101', 'Another')");
    }
    const auto areas = compareTelevisions(first_, second_);
    ASSERT_TRUE(areas);
    ASSERT_EQ(kApplicationsArea, areas->back().area);
    ASSERT_EQ(1U, areas->back().differences.size());
    EXPECT_EQ("org.test.one/visits/101", areas->back().differences[0].name);
    EXPECT_EQ("guest: First", areas->back().differences[0].first);
    EXPECT_EQ("guest: Another", areas->back().differences[0].second);
}

TEST_F(ComparisonTest, linkIsNotTheFileBehindIt) {
    test::writeFile(logos(first_) / "logo.png", "abc");
    fs::create_symlink(logos(first_) / "logo.png", logos(second_) / "logo.png");
    EXPECT_EQ(1U, differencesIn("boot-logo").size());
}

}  // namespace
}  // namespace vxtv
