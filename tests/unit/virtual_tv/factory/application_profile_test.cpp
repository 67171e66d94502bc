#include "virtual_tv/factory/application_profile.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/factory/comparison.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class ApplicationProfileTest : public testing::Test {
 protected:
    ApplicationProfileTest() { test::writeFile(place_.path() / "source.png", "picture"); }

    static Json good() {
        return Json::parse(R"({"applications": [{"id": "org.example.app", "title": "Example",
            "program": "hotel_app", "arguments": [], "autostart": false,
            "data": {"greetings": {"en": "Hello"},
                     "cards": [{"title": "T", "body": "B", "picture": "a.png", "openings": 4}],
                     "pictures": {"a.png": "source.png"}}}]})");
    }

    std::vector<ProfileApplication> reading(const Json& document) const {
        return readApplications(document, place_.path(),
                                [](const Json& value, const std::string& where, const fs::path& folder) {
                                    return folder / stringIn(value, where);
                                });
    }

    Television televisionOf(const std::string& name, const Json& document) const {
        Profile profile = test::smallProfile();
        profile.applications = reading(document);
        return std::move(createTelevision(place_.path() / name, profile).value());
    }

    std::vector<Difference> differences(const Television& first, const Television& second) const {
        const auto areas = compareTelevisions(first, second);
        EXPECT_TRUE(areas);
        EXPECT_EQ("apps", areas->back().area);
        return areas->back().differences;
    }

    test::TestFolder place_;
};

TEST_F(ApplicationProfileTest, goodMemberIsRead) {
    const auto applications = reading(good());
    ASSERT_EQ(1U, applications.size());
    EXPECT_EQ("org.example.app", applications[0].manifest.id);
    EXPECT_EQ("Hello", applications[0].content.greetings.at("en"));
    ASSERT_EQ(1U, applications[0].content.cards.size());
    EXPECT_EQ(4, applications[0].content.cards[0].openings);
    EXPECT_EQ(place_.path() / "source.png", applications[0].pictures.at("a.png"));
}

TEST_F(ApplicationProfileTest, wrongMembersAreNamed) {
    const std::vector<std::pair<std::string, std::function<void(Json&)>>> wrong = {
        {"applications", [](Json& it) { it.erase("applications"); }},
        {"applications", [](Json& it) { it["applications"] = Json::object(); }},
        {"applications > 1 > id", [](Json& it) { it["applications"][0]["id"] = "a/b"; }},
        {"applications > 1 > program", [](Json& it) { it["applications"][0]["program"] = "other"; }},
        {"applications > 1 > more", [](Json& it) { it["applications"][0]["more"] = 1; }},
        {"applications > 1 > data", [](Json& it) { it["applications"][0].erase("data"); }},
        {"applications > 2 > id", [](Json& it) { it["applications"].push_back(it["applications"][0]); }},
        {"applications > 1 > data > cards > 1 > picture",
         [](Json& it) { it["applications"][0]["data"]["cards"][0]["picture"] = "none.png"; }},
        {"applications > 1 > data > cards > 1 > openings",
         [](Json& it) { it["applications"][0]["data"]["cards"][0]["openings"] = "many"; }},
        {"applications > 1 > data > pictures > ../a.png",
         [](Json& it) { it["applications"][0]["data"]["pictures"]["../a.png"] = "source.png"; }},
        {"applications > 1 > data > greetings > en",
         [](Json& it) { it["applications"][0]["data"]["greetings"]["en"] = 5; }},
    };
    for (const auto& [member, change] : wrong) {
        Json document = good();
        change(document);
        try {
            reading(document);
            ADD_FAILURE() << member;
        } catch (const WrongMember& caught) {
            EXPECT_EQ(member, caught.member);
        }
    }
}

TEST_F(ApplicationProfileTest, createdTelevisionHasTheApplicationAndItsData) {
    const Television television = televisionOf("tv", good());
    const Applications applications(television.folder());
    EXPECT_EQ(std::vector<std::string>{"org.example.app"}, applications.ids().value());
    EXPECT_TRUE(hotel::checkDatabase(applications.dataOf("org.example.app") / hotel::kDatabaseName));
    EXPECT_EQ("picture", test::readFile(applications.dataOf("org.example.app") / "pictures/a.png"));
}

TEST_F(ApplicationProfileTest, equalDataIsTheSameThoughTheFilesDiffer) {
    const Television first = televisionOf("first", good());
    const Television second = televisionOf("second", good());
    const fs::path database = Applications(second.folder()).dataOf("org.example.app") / hotel::kDatabaseName;
    const std::string before = test::readFile(database);
    for (const char* const statement : {"UPDATE cards SET body = 'other'", "UPDATE cards SET body = 'B'"}) {
        SQLite::Database(database.string(), SQLite::OPEN_READWRITE).exec(statement);
    }
    ASSERT_TRUE(before != test::readFile(database));
    EXPECT_TRUE(differences(first, second).empty());
}

TEST_F(ApplicationProfileTest, differentRowsAndPicturesAreShown) {
    Json other = good();
    other["applications"][0]["data"]["cards"][0]["body"] = "C";
    const Television first = televisionOf("first", good());
    const Television second = televisionOf("second", other);
    test::writeFile(Applications(second.folder()).dataOf("org.example.app") / "pictures/a.png", "pictore");
    const auto found = differences(first, second);
    ASSERT_EQ(2U, found.size());
    EXPECT_EQ("org.example.app/cards/1", found[0].name);
    EXPECT_EQ("title: T, body: B, picture: a.png, openings: 4", found[0].first);
    EXPECT_EQ("title: T, body: C, picture: a.png, openings: 4", found[0].second);
    EXPECT_EQ("org.example.app/pictures/a.png", found[1].name);
}

TEST_F(ApplicationProfileTest, applicationOfOneOnlyIsShown) {
    const Television first = televisionOf("first", good());
    const Television second = televisionOf("second", Json::parse(R"({"applications": []})"));
    const auto found = differences(first, second);
    ASSERT_FALSE(found.empty());
    EXPECT_EQ("org.example.app", found[0].name);
    EXPECT_EQ("installed", found[0].first);
    EXPECT_EQ("(not there)", found[0].second);
}

}  // namespace
}  // namespace vxtv
