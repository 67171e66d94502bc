#include "virtual_tv/channels/navigation_lists.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/channels/channel_store.h"

namespace vxtv {
namespace {

// The small profile has the lists 5/1 (antenna 0, 3), 10/2 (antennas 0 to 2 and every antenna) and 11/3
// (antenna 1).
class NavigationListsTest : public testing::Test {
 protected:
    std::vector<int> modesFor(TvMode mode) const {
        std::vector<int> modes;
        const auto entries = lists_.list(mode).value();
        for (const NavigationEntry& entry : entries) {
            modes.push_back(entry.mode);
        }
        return modes;
    }
    std::size_t placesOf(int entryMode) const {
        const auto entries = lists_.list({}).value();
        for (const NavigationEntry& entry : entries) {
            if (entry.mode == entryMode) {
                return entry.places.size();
            }
        }
        return 0;
    }

    test::TestFolder folder_;
    const Television television_ = test::makeTelevision(folder_.path() / "tv");
    NavigationLists lists_{television_.database()};
};

TEST_F(NavigationListsTest, listOfAllHasEachListOnceWithWhatItIs) {
    const auto entries = lists_.list({}).value();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].mode, 5);
    EXPECT_EQ(entries[1].mode, 10);
    EXPECT_EQ(entries[1].id, 2);
    EXPECT_EQ(entries[1].names, (std::vector<std::string>{"Favourites", "House"}));
    EXPECT_EQ(entries[1].order, 1);
    EXPECT_EQ(entries[1].flag, 255);
    EXPECT_FALSE(entries[1].isStale);
    EXPECT_EQ(entries[1].places.size(), 7U);
}

TEST_F(NavigationListsTest, listForAModeHasThoseStoredForIt) {
    EXPECT_EQ(modesFor({0, -1}), (std::vector<int>{5, 10}));
    EXPECT_EQ(modesFor({1, -1}), (std::vector<int>{10, 11}));
    EXPECT_EQ(modesFor({-1, 20}), (std::vector<int>{10}));
    EXPECT_EQ(modesFor({0, 20}), (std::vector<int>{}));
    EXPECT_EQ(modesFor({2, 16}), (std::vector<int>{10}));
}

TEST_F(NavigationListsTest, removeTakesThePlacesThatMeetTheModeAndNoOther) {
    ASSERT_TRUE(lists_.remove({0, -1}, 10, 2));
    EXPECT_EQ(placesOf(10), 6U);
    ASSERT_TRUE(lists_.remove({-1, 16}, 10, 2));
    EXPECT_EQ(placesOf(10), 4U);
    ASSERT_TRUE(lists_.remove({1, 3}, 10, 2));
    EXPECT_EQ(placesOf(10), 3U);
    EXPECT_EQ(placesOf(5), 1U);
    EXPECT_EQ(placesOf(11), 1U);
}

TEST_F(NavigationListsTest, removeOfWhatIsNotThereIsNoFailureAndChangesNothing) {
    EXPECT_TRUE(lists_.remove({2, -1}, 11, 3));
    EXPECT_TRUE(lists_.remove({-1, -1}, 10, 99));
    EXPECT_TRUE(lists_.remove({-1, -1}, 11, 2));
    EXPECT_EQ(lists_.list({}).value().size(), 3U);
}

TEST_F(NavigationListsTest, lastRemovalForgetsTheList) {
    ASSERT_TRUE(lists_.remove({1, -1}, 11, 3));
    EXPECT_EQ(modesFor({}), (std::vector<int>{5, 10}));
    ASSERT_TRUE(lists_.remove({-1, -1}, 10, 2));
    EXPECT_EQ(modesFor({}), (std::vector<int>{5}));
}

TEST_F(NavigationListsTest, sevenRemovalsForgetAListWhereverItWasStored) {
    for (const TvMode mode : {TvMode{0, -1}, {1, -1}, {2, -1}, {-1, 3}, {-1, 16}, {-1, 19}, {-1, 20}}) {
        EXPECT_EQ(placesOf(10) > 0, true);
        ASSERT_TRUE(lists_.remove(mode, 10, 2));
    }
    EXPECT_EQ(placesOf(10), 0U);
}

TEST_F(NavigationListsTest, modeThatNoTelevisionHasIsRefused) {
    for (const TvMode mode : {TvMode{3, 3}, {-2, 3}, {0, 32}, {0, -2}}) {
        EXPECT_EQ(lists_.list(mode).error().code, ErrorCode::OutOfRange);
        EXPECT_EQ(lists_.remove(mode, 10, 2).error().code, ErrorCode::OutOfRange);
    }
    EXPECT_EQ(placesOf(10), 7U);
}

TEST_F(NavigationListsTest, televisionWithoutChannelsSaysSo) {
    Profile profile = test::smallProfile();
    profile.services.erase("channels");
    const Television bare = createTelevision(folder_.path() / "bare", profile).value();
    EXPECT_EQ(NavigationLists(bare.database()).list({}).error().code, ErrorCode::UnknownService);
    EXPECT_EQ(NavigationLists(bare.database()).remove({}, 10, 2).error().code, ErrorCode::UnknownService);
}

struct BadSection {
    const char* name;
    void (*damage)(nlohmann::json&);
    const char* told;
};

class BadChannelSection : public testing::TestWithParam<BadSection> {};

TEST_P(BadChannelSection, isRefusedWithItsMemberAndNoTelevisionIsMade) {
    const test::TestFolder folder;
    Profile profile = test::smallProfile();
    profile.file = folder.path() / "profile.json";
    GetParam().damage(profile.services.at("channels"));
    const auto television = createTelevision(folder.path() / "tv", profile);
    ASSERT_FALSE(television);
    EXPECT_EQ(television.error().code, ErrorCode::BadProfile);
    EXPECT_NE(television.error().sentence.find(GetParam().told), std::string::npos)
        << television.error().sentence;
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "tv"));
}

using Json = nlohmann::json;
INSTANTIATE_TEST_SUITE_P(
    Each, BadChannelSection,
    testing::Values(
        BadSection{"noTables", [](Json& it) { it.erase("tables"); }, "tables"},
        BadSection{"tablesOfAnotherType", [](Json& it) { it["tables"] = 5; }, "tables"},
        BadSection{"unknownTable", [](Json& it) { it["tables"][0] = "dvb-t/xx-Nowhere"; }, "xx-Nowhere"},
        BadSection{"pathAsTable", [](Json& it) { it["tables"][0] = "../../x"; }, "../../x"},
        BadSection{"tooManyTables", [](Json& it) { it["tables"] = Json::array_t(17, it["tables"][0]); },
                   "17"},
        BadSection{"strangeMember", [](Json& it) { it["more"] = 1; }, "more"},
        BadSection{"noServices", [](Json& it) { it["servicesPerTransponder"] = 0; },
                   "servicesPerTransponder"},
        BadSection{"tooManyServices", [](Json& it) { it["servicesPerTransponder"] = 65; },
                   "servicesPerTransponder"},
        BadSection{"hotelChannelThatIsNone", [](Json& it) { it["hotelList"][0]["channel"] = 9999; },
                   "hotelList > entry 1 > channel"},
        BadSection{"noNavigation", [](Json& it) { it.erase("navigation"); }, "navigation"},
        BadSection{"listTwice", [](Json& it) { it["navigation"].push_back(it["navigation"][0]); }, "already"},
        BadSection{"listWithoutPlace", [](Json& it) { it["navigation"][0]["places"] = Json::array(); },
                   "places"},
        BadSection{"placeForNoAntenna", [](Json& it) { it["navigation"][0]["places"][0]["antenna"] = 3; },
                   "antenna"},
        BadSection{"placeForEveryAntenna",
                   [](Json& it) {
                       it["navigation"][0]["places"][0] = {{"antenna", -1}, {"service", 5}};
                   },
                   "every antenna"},
        BadSection{"placeForEveryService", [](Json& it) { it["navigation"][0]["places"][0]["service"] = -1; },
                   "service"},
        BadSection{"flagThatIsNoByte", [](Json& it) { it["navigation"][0]["flag"] = 256; }, "flag"},
        BadSection{"emptyListName", [](Json& it) { it["navigation"][0]["names"][0] = ""; }, "names"}),
    [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace vxtv
