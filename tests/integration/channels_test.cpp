// Channels, hotel list, navigation lists and timers of a whole clone.

#include <algorithm>

#include "tests/integration/clone_fixture.h"

namespace vxtest {
namespace {

using nlohmann::json;

class ChannelsTest : public CloneTest {
 protected:
    json shown(const char* verb, const std::string& television) const {
        return json::parse(vxtv({verb, television, "--json"}).output);
    }
    /// How many navigation lists of the modes 10 and 11 there are.
    static long listsOfChannels(const json& channels) {
        return std::count_if(channels.at("navigation").begin(), channels.at("navigation").end(),
                             [](const json& list) { return list.at("mode") == 10 || list.at("mode") == 11; });
    }
};

TEST_F(ChannelsTest, cloneBringsThemAndForgetsTheListsOfTheOldChannels) {
    const json source = shown("channels", first);
    const json before = shown("channels", second);
    ASSERT_NE(before.at("channels"), source.at("channels"));
    ASSERT_NE(shown("timers", second), shown("timers", first));
    ASSERT_GT(listsOfChannels(before), 0);
    vxclone(first, {"backup", "/media/usb/clone"});
    vxclone(second, {"restore", "/media/usb/clone"});
    const json after = shown("channels", second);
    for (const char* what : {"transponders", "channels", "hotelList"}) {
        EXPECT_EQ(after.at(what), source.at(what)) << what;
    }
    EXPECT_EQ(shown("timers", second), shown("timers", first));
    EXPECT_EQ(listsOfChannels(after), 0);
    EXPECT_EQ(after.at("navigation").size(), 1U);
}

TEST_F(ChannelsTest, importThatFailsKeepsTheChannelsAndTheirLists) {
    vxclone(first, {"backup", "/media/usb/clone"});
    const json before = shown("channels", second);
    vxtv({"fault", second, "add", "IUtil::ImportChannelMap", "--status", "0"});
    vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(shown("channels", second), before);
}

}  // namespace
}  // namespace vxtest
