#include "virtual_tv/services/network_time.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

class NetworkTimeTest : public testing::Test {
 protected:
    Texts texts() const {
        return television_.database()
            .read(
                [](SQLite::Database& connection) -> Result<Texts> { return NetworkTime::texts(connection); })
            .value();
    }

    test::TestFolder folder_;
    Television television_ = test::makeTelevision(folder_.path() / "tv");
    NetworkTime time_{television_.database()};
};

TEST_F(NetworkTimeTest, stateAfterCreationIsTheProfiles) {
    const NetworkTime::State state = time_.state().value();
    EXPECT_TRUE(state.supported);
    EXPECT_FALSE(state.on);
    EXPECT_EQ(state.timezone, 29);
    EXPECT_EQ(state.server, "ntp.example");
}

TEST_F(NetworkTimeTest, whatWasSetIsInEffectAndTheSettingsStayAsTheyAre) {
    ASSERT_TRUE(time_.setOn(true));
    ASSERT_TRUE(time_.setTimezone(0));
    ASSERT_TRUE(time_.setServer(""));
    const NetworkTime::State state = time_.state().value();
    EXPECT_TRUE(state.on);
    EXPECT_EQ(state.timezone, 0);
    EXPECT_EQ(state.server, "");
    EXPECT_EQ(television_.settings().list()->size(), test::smallProfile().settings.size());
}

TEST_F(NetworkTimeTest, cloneCarriesTheServerOnlyWhileItIsOnAndNeverTheZone) {
    EXPECT_EQ(texts(), (Texts{{"on", "false"}}));
    ASSERT_TRUE(time_.setOn(true));
    EXPECT_EQ(texts(), (Texts{{"on", "true"}, {"server", "\"ntp.example\""}}));
}

TEST_F(NetworkTimeTest, zoneOutsideTheListIsRefused) {
    EXPECT_TRUE(time_.setTimezone(90));
    for (const int zone : {-1, 91, 1 << 30}) {
        EXPECT_EQ(time_.setTimezone(zone).error().code, ErrorCode::OutOfRange) << zone;
    }
    EXPECT_EQ(time_.state()->timezone, 90);
}

TEST_F(NetworkTimeTest, serverIsAHostNameAnAddressOrNothing) {
    const std::string part(63, 'a');
    const std::string longest = part + "." + part + "." + part + "." + std::string(61, 'a');
    for (const std::string& server : {std::string(), std::string("a"), std::string("ntp-1.Example.org"),
                                      std::string("192.0.2.7"), std::string("2001:db8::7"), longest}) {
        EXPECT_TRUE(time_.setServer(server)) << server;
        EXPECT_EQ(time_.state()->server, server);
    }
    for (const std::string& server :
         {std::string("."), std::string("a."), std::string(".a"), std::string("a..b"), std::string("-a"),
          std::string("a-"), std::string("a b"), std::string("http://a"), std::string("a/b"),
          std::string("a_b"), std::string("a\n"), std::string("h\u00f4te.example"), part + "a", longest + "a",
          std::string("2001:db8::7::1"), std::string(100000, 'a')}) {
        EXPECT_EQ(time_.setServer(server).error().code, ErrorCode::BadArgument) << server.substr(0, 80);
    }
    EXPECT_EQ(time_.state()->server, longest);
}

TEST_F(NetworkTimeTest, televisionThatDoesNotSupportItCannotBeSet) {
    Profile profile = test::smallProfile();
    profile.services["network-time"]["supported"] = false;
    const Television other = createTelevision(folder_.path() / "other", profile).value();
    const NetworkTime time(other.database());
    EXPECT_FALSE(time.state()->supported);
    EXPECT_EQ(time.setOn(true).error().code, ErrorCode::NotSupported);
    EXPECT_EQ(time.setTimezone(1).error().code, ErrorCode::NotSupported);
    EXPECT_EQ(time.setServer("a").error().code, ErrorCode::NotSupported);
}

TEST_F(NetworkTimeTest, profileWithoutItOrWithWrongValuesIsToldSo) {
    Profile profile = test::smallProfile();
    profile.services.erase("network-time");
    const Television without = createTelevision(folder_.path() / "without", profile).value();
    EXPECT_EQ(NetworkTime(without.database()).state().error().code, ErrorCode::UnknownService);
    EXPECT_EQ(NetworkTime(without.database()).setOn(true).error().code, ErrorCode::UnknownService);
    for (const auto& [member, value] : {std::pair<const char*, nlohmann::json>{"timezone", 91},
                                        {"timezone", "1"},
                                        {"server", "a b"},
                                        {"on", 1},
                                        {"more", 1}}) {
        Profile wrong = test::smallProfile();
        wrong.services["network-time"][member] = value;
        EXPECT_EQ(createTelevision(folder_.path() / "wrong", wrong).error().code, ErrorCode::BadProfile)
            << member;
    }
}

}  // namespace
}  // namespace vxtv
