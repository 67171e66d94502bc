// The platform's operations as a program in a television calls them.

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <memory>

#include "platform/dlog.h"
#include "platform/source_api.h"
#include "platform/system_info.h"
#include "platform/vconf.h"
#include "platform/vx_paths.h"
#include "tests/unit/virtual_tv/shared_television.h"

namespace vxtv {
namespace {

class PlatformTest : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(test::sharedTelevision().faults().clear());
        ASSERT_TRUE(test::sharedTelevision().calls().clear());
        ASSERT_TRUE(test::sharedTelevision().settings().set("volume", 12));
        ASSERT_TRUE(test::sharedTelevision().settings().set("welcome", std::string("hello")));
    }

    static void plan(const char* call, std::optional<int> status, std::optional<int> delayMs = {}) {
        Fault fault;
        fault.call = call;
        fault.status = status;
        fault.delayMs = delayMs;
        ASSERT_TRUE(test::sharedTelevision().faults().add(fault));
    }

    static CallRecord lastCall() {
        CallRecord last;
        EXPECT_TRUE(test::sharedTelevision().calls().read([&last](const CallRecord& call) { last = call; }));
        return last;
    }
};

using FreedString = std::unique_ptr<char, decltype(&std::free)>;

TEST_F(PlatformTest, settingsAreReadAndWritten) {
    int value = 0;
    EXPECT_EQ(0, vconf_get_int("volume", &value));
    EXPECT_EQ(12, value);
    EXPECT_EQ(0, vconf_set_int("volume", 20));
    EXPECT_EQ(20, test::sharedTelevision().settings().getInt("volume").value());
    EXPECT_EQ(0, vconf_set_bool("dooreye", 1));
    EXPECT_EQ(0, vconf_get_bool("dooreye", &value));
    EXPECT_EQ(1, value);
    EXPECT_EQ(0, vconf_set_str("welcome", ""));
    const FreedString text(vconf_get_str("welcome"), std::free);
    EXPECT_STREQ("", text.get());
}

TEST_F(PlatformTest, settingsRefusalsLeaveTheValueAsItWas) {
    int value = 99;
    EXPECT_NE(0, vconf_get_int("nothing", &value));
    EXPECT_NE(0, vconf_get_int("dooreye", &value));
    EXPECT_NE(0, vconf_get_bool("volume", &value));
    EXPECT_NE(0, vconf_get_int(nullptr, &value));
    EXPECT_NE(0, vconf_get_int("volume", nullptr));
    EXPECT_EQ(99, value);
    EXPECT_NE(0, vconf_set_bool("dooreye", 2));
    EXPECT_NE(0, vconf_set_str("volume", "1"));
    EXPECT_NE(0, vconf_set_str("welcome", nullptr));
    EXPECT_EQ(nullptr, vconf_get_str("volume"));
    EXPECT_EQ(nullptr, vconf_get_str(nullptr));
    EXPECT_EQ(12, test::sharedTelevision().settings().getInt("volume").value());
}

TEST_F(PlatformTest, identityAndFeaturesAreHandedOut) {
    char* text = nullptr;
    int number = 0;
    bool flag = true;
    ASSERT_EQ(0, system_info_get_value_string(SYSTEM_INFO_KEY_MODEL, &text));
    EXPECT_STREQ("VX55", FreedString(text, std::free).get());
    EXPECT_EQ(0, system_info_get_value_int(SYSTEM_INFO_KEY_TUNER_TYPE, &number));
    EXPECT_EQ(3, number);
    EXPECT_EQ(0, system_info_get_custom_bool("tuner", &flag));
    EXPECT_FALSE(flag);
    EXPECT_NE(0, system_info_get_custom_int("tuner", &number));
    EXPECT_NE(0, system_info_get_value_int(SYSTEM_INFO_KEY_MODEL, &number));
    EXPECT_EQ(3, number);
}

TEST_F(PlatformTest, callIsLoggedWithoutTheValueOfAString) {
    ASSERT_EQ(0, vconf_set_str("welcome", "4711"));
    const CallRecord call = lastCall();
    EXPECT_EQ("vconf_set_str", call.call);
    EXPECT_EQ((nlohmann::ordered_json{{"key", "welcome"}, {"valueLength", 4}}), call.arguments);
    EXPECT_EQ(0, call.result);
    EXPECT_FALSE(call.fault);
}

TEST_F(PlatformTest, statusIsReturnedInsteadOfTheWork) {
    plan("vconf_set_int", -5);
    EXPECT_EQ(-5, vconf_set_int("volume", 30));
    EXPECT_EQ(12, test::sharedTelevision().settings().getInt("volume").value());
    EXPECT_TRUE(lastCall().fault);
    EXPECT_EQ(0, vconf_set_int("volume", 30));
    plan("vconf_get_str", 0);
    EXPECT_EQ(nullptr, vconf_get_str("welcome"));
    plan("CSourceAPI::GetSourceList", 1);
    EXPECT_TRUE(CSourceAPI::Get()->GetSourceList(nullptr));
}

TEST_F(PlatformTest, statusOfAFaultWithAKeyIsReturnedForThatSettingOnly) {
    Fault fault;
    fault.call = "vconf_set_int";
    fault.status = -5;
    fault.fromThenOn = true;
    fault.key = "volume";
    ASSERT_TRUE(test::sharedTelevision().faults().add(fault));
    EXPECT_EQ(0, vconf_set_int("progress", 7));
    EXPECT_EQ(-5, vconf_set_int("volume", 30));
    EXPECT_NE(-5, vconf_set_int(nullptr, 30));
    EXPECT_EQ(0, vconf_set_int("progress", 8));
    EXPECT_EQ(1, test::sharedTelevision().faults().list().value().front().seen);
}

TEST_F(PlatformTest, delayComesBeforeTheWork) {
    plan("vconf_set_int", std::nullopt, 40);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(0, vconf_set_int("volume", 30));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(40));
    EXPECT_EQ(30, test::sharedTelevision().settings().getInt("volume").value());
}

TEST_F(PlatformTest, picturesLieUnderOptWithoutATrailingSlash) {
    EXPECT_EQ("/opt/usr/data/hotel/bootlogo", vx_get_bootlogo_path());
    EXPECT_EQ("/opt/usr/data/hotel/mbrlogo", vx_get_mbrlogo_path());
    EXPECT_EQ("/opt/usr/data/hotel/homemenu", vx_get_homemenu_path());
}

TEST_F(PlatformTest, longLogLineIsKeptWhole) {
    const std::string text(100000, 'y');
    EXPECT_LE(0, __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "cloneapi", "%s: %s(%d) > %s", "a.cpp", "f", 7,
                              text.c_str()));
    EXPECT_NE(std::string::npos, test::readFile(test::sharedTelevision().folder().dlog())
                                     .find("E cloneapi: a.cpp: f(7) > " + text + "\n"));
}

}  // namespace
}  // namespace vxtv
