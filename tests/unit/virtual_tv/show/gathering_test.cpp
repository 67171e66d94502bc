#include "virtual_tv/show/gathering.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/virtual_tv/show/samples.h"
#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/services/source_list.h"
#include "virtual_tv/show/picture.h"
#include "virtual_tv/store/folder.h"

namespace vxtv::show {
namespace {

namespace fs = std::filesystem;

class ShowGathering : public testing::Test {
 protected:
    Page gathered(const Profile& profile = test::smallProfile(), std::size_t channels = kFirstChannels) {
        television_ = createTelevision(folder_.path() / "tv", profile);
        EXPECT_TRUE(television_) << television_.error().sentence;
        return again(channels);
    }
    Page again(std::size_t channels = kFirstChannels) {
        const auto page = gatherPage(*television_, channels);
        EXPECT_TRUE(page) << page.error().sentence;
        return page.value_or(Page());
    }
    /// Sets the state after a clone.
    static Profile profileWithResult(const std::string& result) {
        Profile profile = test::smallProfile();
        profile.settings.push_back({"db/hotel/clone_progress", 64, true});
        profile.settings.push_back({"db/hotel/clone_result", result, true});
        return profile;
    }
    static std::string valueOf(const std::vector<Fact>& facts, const std::string& name) {
        const auto found =
            std::find_if(facts.begin(), facts.end(), [&name](const Fact& fact) { return fact.name == name; });
        EXPECT_NE(found, facts.end()) << "no fact " << name;
        return found != facts.end() ? found->value : "";
    }
    static Card cardOf(const Section& section, const std::string& title) {
        const auto found = std::find_if(section.cards.begin(), section.cards.end(),
                                        [&title](const Card& card) { return card.title == title; });
        EXPECT_NE(found, section.cards.end()) << "no card " << title;
        return found != section.cards.end() ? *found : Card();
    }

    test::TestFolder folder_;
    Result<Television> television_ = failure(ErrorCode::Io, "not made yet");
};

TEST_F(ShowGathering, identityAndFeaturesAreThere) {
    const Page page = gathered();
    EXPECT_EQ("VX55", page.model);
    EXPECT_EQ("VX-EU", valueOf(page.identity, "product tag"));
    EXPECT_EQ("3", valueOf(page.identity, "tuner type"));
    EXPECT_EQ("1", valueOf(page.identity, "network"));
    EXPECT_EQ("false", valueOf(page.identity, "tuner"));
}

TEST_F(ShowGathering, resultsOfTheLastCloneAreJudged) {
    const Section section =
        test::sectionOf(gathered(profileWithResult("A-SUCCESS\nB-B-FAIL\n\nodd")), "last-clone");
    const Card& card = section.cards.at(0);
    EXPECT_EQ(64, card.percent);
    ASSERT_EQ(3U, card.facts.size());
    EXPECT_EQ("A", card.facts[0].name);
    EXPECT_EQ(Colour::Good, card.facts[0].colour);
    EXPECT_EQ("B-B", card.facts[1].name);
    EXPECT_EQ("failed", card.facts[1].value);
    EXPECT_EQ(Colour::Bad, card.facts[1].colour);
    EXPECT_EQ("odd", card.facts[2].name);
    EXPECT_EQ(Colour::Dim, card.facts[2].colour);
    EXPECT_EQ("0", valueOf(cardOf(section, "Other states").facts, "progress"));
}

TEST_F(ShowGathering, factorySettingsOfTheLastCloneAreNotEvaluated) {
    const Section section = test::sectionOf(
        gathered(profileWithResult("VXCLONE_FACTORY_SETTINGS-FAIL\nVXCLONE_AV_SETTINGS-FAIL\n")),
        "last-clone");
    const Card& card = section.cards.at(0);
    EXPECT_EQ("not evaluated", valueOf(card.facts, "VXCLONE_FACTORY_SETTINGS"));
    EXPECT_EQ(Colour::Dim, card.facts.at(0).colour);
    EXPECT_EQ("failed", valueOf(card.facts, "VXCLONE_AV_SETTINGS"));
}

TEST_F(ShowGathering, televisionThatWasNeverClonedSaysSo) {
    EXPECT_EQ("No clone has left a result here.", test::sectionOf(gathered(), "last-clone").note);
}

TEST_F(ShowGathering, settingsAreGroupedByWhatTheyAreAbout) {
    Profile profile = test::smallProfile();
    profile.settings.push_back({"db/vxhotel/securitymode/changepin", std::string("4711"), false});
    profile.settings.push_back({"db/menu/system/time/ontimer1/time", std::string("06:45"), false});
    profile.settings.push_back({"db/menu/system/time/ontimer1/setup", std::string(), false});
    const Section section = test::sectionOf(gathered(profile), "settings");
    EXPECT_EQ("4711", valueOf(cardOf(section, "Security").facts, "changepin"));
    EXPECT_EQ("hello", valueOf(cardOf(section, "Everything else").facts, "welcome"));
    const Grid timers = cardOf(section, "On and off timers").grids.at(0);
    EXPECT_EQ((std::vector<std::string>{"", "setup", "time"}), timers.columns);
    EXPECT_EQ("06:45", timers.rows.at(0).at(2).text);
}

TEST_F(ShowGathering, welcomeMessageComesFromTheSettings) {
    Profile profile = test::smallProfile();
    profile.settings.push_back({"db/vxhotel/hotelmenu/welcomemessage", std::string("Come in"), false});
    profile.settings.push_back({"db/vxhotel/welmsg/welcomemsgbody", std::string("and rest"), false});
    const Page page = gathered(profile);
    EXPECT_EQ("Come in", page.welcomeTitle);
    EXPECT_EQ("and rest", page.welcomeText);
}

TEST_F(ShowGathering, channelsBeyondTheFirstAreCounted) {
    const Grid all =
        cardOf(test::sectionOf(gathered(test::smallProfile(), 1000), "channels"), "All channels").grids.at(0);
    ASSERT_GT(all.rows.size(), 3U);
    EXPECT_EQ(0U, all.leftOut);
    const Section section = test::sectionOf(again(3), "channels");
    const Grid first = cardOf(section, "All channels").grids.at(0);
    EXPECT_EQ(3U, first.rows.size());
    EXPECT_EQ(all.rows.size() - 3, first.leftOut);
    EXPECT_EQ("House", cardOf(section, "The hotel's own list").grids.at(0).rows.at(0).at(1).text);
    EXPECT_FALSE(cardOf(section, "Navigation lists").grids.at(0).rows.empty());
}

TEST_F(ShowGathering, servicesShowWhatTheyHold) {
    const Page page = gathered();
    EXPECT_EQ("News", test::sectionOf(page, "timers").cards.at(0).grids.at(0).rows.at(0).at(1).text);
    EXPECT_EQ("ntp.example", valueOf(test::sectionOf(page, "network-time").cards.at(0).facts, "server"));
    EXPECT_EQ("eu", valueOf(cardOf(test::sectionOf(page, "service-factory"), "region").facts, "code"));
    EXPECT_EQ("stays with this television",
              cardOf(test::sectionOf(page, "service-factory"), "identity").note);
    const Grid picture = cardOf(test::sectionOf(page, "service-av"), "picture").grids.at(0);
    EXPECT_EQ(5U, picture.columns.size());
}

TEST_F(ShowGathering, absentServiceIsSaidToBeAbsent) {
    Profile profile = test::smallProfile();
    profile.services.clear();
    const Page page = gathered(profile);
    for (const char* const id : {"channels", "timers", "sources", "network-time", "service-av"}) {
        const Section section = test::sectionOf(page, id);
        EXPECT_EQ("This television has no such service.", section.note) << id;
        EXPECT_TRUE(section.cards.empty()) << id;
    }
}

TEST_F(ShowGathering, televisionWithoutPicturesSaysThatThereAreNone) {
    const Page page = gathered();
    EXPECT_FALSE(page.logo);
    EXPECT_FALSE(page.screen);
    for (const Card& card : test::sectionOf(page, "pictures").cards) {
        EXPECT_EQ("none", valueOf(card.facts, "files"));
    }
}

TEST_F(ShowGathering, picturesAndIconsAreThere) {
    gathered();
    const Folder& folder = television_->folder();
    test::writeFile(placeOf(folder, kBootLogoArea.path) / "logo.png", test::redPixel());
    test::writeFile(placeOf(folder, kHomeMenuArea.path) / "a.txt", "no picture");
    test::writeFile(placeOf(folder, kHomeMenuArea.path) / "b.png", test::redPixel());
    const std::string icon = std::string(kBootLogoArea.path) + "/logo.png";
    ASSERT_TRUE(television_->database().write([&icon](SQLite::Database& connection) -> Result<void> {
        SQLite::Statement row(connection, "INSERT INTO source_icons VALUES (10, ?1, ?1, ?1, 0)");
        row.bind(1, icon);
        row.exec();
        return {};
    }));
    const Page page = again();
    EXPECT_EQ(test::redPixel(), page.logo.value_or(Picture()).bytes);
    EXPECT_EQ("b.png", page.screen.value_or(Picture()).name);
    EXPECT_EQ(2U, cardOf(test::sectionOf(page, "pictures"), "Home menu").pictures.size());
    const auto rows = test::sectionOf(page, "sources").cards.at(0).grids.at(0).rows;
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [](const auto& row) {
        return row.at(3).picture.value_or(Picture()).bytes == test::redPixel();
    }));
}

TEST_F(ShowGathering, applicationsShowWhatTheyHold) {
    gathered();
    const Applications applications(television_->folder());
    ASSERT_TRUE(applications.create({"org.test.one", "One", "hotel_app", {}, true}));
    fs::create_directories(applications.dataOf("org.test.one"));
    test::writeFile(applications.dataOf("org.test.one") / "note.txt", "four");
    test::writeFile(applications.dataOf("org.test.one") / "red.png", test::redPixel());
    fs::create_directories(applications.folderOf("org.test.two"));
    test::writeFile(applications.folderOf("org.test.two") / kManifestName, "{");

    const Section section = test::sectionOf(again(), "applications");
    const Card one = cardOf(section, "One");
    EXPECT_EQ("does not run", valueOf(one.facts, "state"));
    EXPECT_EQ("yes", valueOf(one.facts, "started by every session"));
    EXPECT_EQ("4 bytes", valueOf(one.facts, "note.txt").substr(0, 7));
    ASSERT_EQ(1U, one.pictures.size());
    EXPECT_EQ("red.png", one.pictures[0].name);
    EXPECT_EQ(Colour::Bad, cardOf(section, "org.test.two").facts.at(0).colour);
}

}  // namespace
}  // namespace vxtv::show
