// The category of the applications' own data: which applications are asked, in which order, and what is
// reported.

#include "VxMessagePortAPI.h"
#include "engine_test.h"
#include "stepped_clock.h"

namespace vxtest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kOrvel = "org.vorta.orvel-app";
constexpr const char* kFirst = "org.harbour.firstscreen";
constexpr std::int32_t kNoDirection = 2;

using Reply = std::map<std::string, std::string>;

class ApplicationsTest : public EngineTest {
 protected:
    ApplicationsTest() {
        VxMessagePortAPI::waiting_ = false;
        tv.setSetting(kCloneResultKey, std::string());
        tv.replyToSends(Reply{{"response_clone", "success"}});
    }

    SteppedClock clock;
};

const std::string kSuccess = "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n";
const std::string kFail = "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-FAIL\n";

TEST_F(ApplicationsTest, launchOfARunningApplicationLaunchesNothing) {
    tv.setRunning(kOrvel, true);
    EXPECT_TRUE(engine.m_LaunchOrvelAppForClone());
    EXPECT_THAT(tv.transcript(), ElementsAre("D/33 m_LaunchOrvelAppForClone: Launching Orvel App for Clone",
                                             "aul_app_is_running(\"org.vorta.orvel-app\")",
                                             "E/35 m_LaunchOrvelAppForClone: Orvel-app already running!!!"));
}

TEST_F(ApplicationsTest, launchForABackupHandsModeRequestAndPathOver) {
    EXPECT_TRUE(engine.m_LaunchOrvelAppForClone());
    EXPECT_THAT(
        tv.transcript(),
        ElementsAre("D/33 m_LaunchOrvelAppForClone: Launching Orvel App for Clone",
                    "aul_app_is_running(\"org.vorta.orvel-app\")", "bundle_create()",
                    "bundle_add(\"mode\", \"clone\")",
                    "bundle_add(\"externalRequest\", \"request_clone_backup\")",
                    "bundle_add(\"path\", \"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\")",
                    "aul_launch_app(\"org.vorta.orvel-app\", {\"mode\": \"clone\", \"externalRequest\": "
                    "\"request_clone_backup\", \"path\": "
                    "\"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\"})",
                    "E/35 m_LaunchOrvelAppForClone: Success to aul_launch_app(org.vorta.orvel-app) ....",
                    "bundle_free()"));
}

TEST_F(ApplicationsTest, launchForARestoreAsksForARestore) {
    VXCloneHandler::m_ecloneType = kDirectionRestore;
    EXPECT_TRUE(engine.m_LaunchOrvelAppForClone());
    EXPECT_THAT(tv.callsOf("bundle_add"),
                ElementsAre("bundle_add(\"mode\", \"clone\")",
                            "bundle_add(\"externalRequest\", \"request_clone_restore\")",
                            "bundle_add(\"path\", \"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\")"));
}

TEST_F(ApplicationsTest, launchInNoDirectionRequestsNothing) {
    VXCloneHandler::m_ecloneType = kNoDirection;
    EXPECT_TRUE(engine.m_LaunchOrvelAppForClone());
    EXPECT_THAT(tv.callsOf("bundle_add"),
                ElementsAre("bundle_add(\"mode\", \"clone\")",
                            "bundle_add(\"path\", \"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\")"));
}

TEST_F(ApplicationsTest, launchIsASuccessFromOneOn) {
    tv.answer("aul_launch_app", 1);
    EXPECT_TRUE(engine.m_LaunchOrvelAppForClone());
    EXPECT_EQ(tv.bundlesHeld(), 0);
}

TEST_F(ApplicationsTest, launchThatFailsIsLoggedAndFreesItsBundle) {
    for (const int status : {0, -1}) {
        tv.reset();
        tv.answer("aul_launch_app", status);
        EXPECT_FALSE(engine.m_LaunchOrvelAppForClone());
        EXPECT_EQ(tv.describedLog().back(),
                  "F/31 m_LaunchOrvelAppForClone: Fail to aul_launch_app(org.vorta.orvel-app) !!!!");
        EXPECT_EQ(tv.transcript().back(), "bundle_free()");
        EXPECT_EQ(tv.bundlesHeld(), 0);
    }
}

TEST_F(ApplicationsTest, onlyOneMeansThatItRuns) {
    for (const int status : {0, -1, 2}) {
        tv.reset();
        tv.answer("aul_app_is_running", status);
        EXPECT_TRUE(engine.m_LaunchOrvelAppForClone());
        EXPECT_THAT(tv.callsOf("aul_launch_app"), SizeIs(1)) << status;
    }
}

TEST_F(ApplicationsTest, listHoldsTheOrvelApplicationFirst) {
    tv.setRunning(kOrvel, true);
    tv.setSetting(kFirstScreenKey, std::string(kFirst));
    std::vector<std::string> applications = {"kept"};
    engine.m_GetMsgPortAppsName(applications);
    EXPECT_THAT(applications, ElementsAre("kept", kOrvel, kFirst));
    EXPECT_EQ(tv.transcript().back(), "vconf_get_str(\"db/first_screen/type\")");
}

TEST_F(ApplicationsTest, listTakesAnEmptyNameAndNoMissingOne) {
    tv.answer("aul_launch_app", -1);
    std::vector<std::string> applications;
    engine.m_GetMsgPortAppsName(applications);
    EXPECT_THAT(applications, IsEmpty());
    tv.setSetting(kFirstScreenKey, std::string());
    engine.m_GetMsgPortAppsName(applications);
    EXPECT_THAT(applications, ElementsAre(""));
}

TEST_F(ApplicationsTest, orvelAloneIsOneExchangeAndOneResult) {
    tv.setRunning(kOrvel, true);
    EXPECT_TRUE(engine.m_VXHotelFirstScreenDataClone());
    EXPECT_EQ(results(), kSuccess);
    EXPECT_THAT(tv.callsOf("message_port_send_message_with_local_port"),
                ElementsAre("message_port_send_message_with_local_port(\"org.vorta.orvel-app\", "
                            "\"VxCloneMessagePort\", {\"externalRequest\": \"request_clone_backup\", "
                            "\"path\": \"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\"}, 1)"));
    EXPECT_THAT(
        tv.describedLog(),
        testing::Contains("D/33 m_VXHotelFirstScreenDataClone: SendMessage : appName [org.vorta.orvel-app]"));
}

TEST_F(ApplicationsTest, nobodyToAskIsAFailureThatReportsNothing) {
    tv.answer("aul_launch_app", -1);
    EXPECT_FALSE(engine.m_VXHotelFirstScreenDataClone());
    EXPECT_EQ(results(), "");
    EXPECT_THAT(tv.callsOf("message_port_register_local_port"), IsEmpty());
}

TEST_F(ApplicationsTest, bothAreAskedInOrderAndTheLastOneDecides) {
    VXCloneHandler::m_ecloneType = kDirectionRestore;
    tv.setRunning(kOrvel, true);
    tv.setSetting(kFirstScreenKey, std::string(kFirst));
    tv.answerOnce("message_port_send_message_with_local_port", -1, 2);
    EXPECT_FALSE(engine.m_VXHotelFirstScreenDataClone());
    EXPECT_EQ(results(), kSuccess + kFail);
    const auto sent = tv.callsOf("message_port_send_message_with_local_port");
    ASSERT_THAT(sent, SizeIs(2));
    EXPECT_THAT(sent[0], testing::HasSubstr("\"org.vorta.orvel-app\""));
    EXPECT_THAT(sent[0], testing::HasSubstr("\"request_clone_restore\""));
    EXPECT_THAT(sent[1], testing::HasSubstr("\"org.harbour.firstscreen\""));
}

TEST_F(ApplicationsTest, failureOfTheFirstDoesNotKeepTheSecondFromBeingAsked) {
    tv.setRunning(kOrvel, true);
    tv.setSetting(kFirstScreenKey, std::string(kFirst));
    tv.answerOnce("message_port_send_message_with_local_port", -1);
    EXPECT_TRUE(engine.m_VXHotelFirstScreenDataClone());
    EXPECT_EQ(results(), kFail + kSuccess);
}

TEST_F(ApplicationsTest, orvelThatCannotBeLaunchedIsLeftOut) {
    tv.answer("aul_launch_app", -1);
    tv.setSetting(kFirstScreenKey, std::string(kFirst));
    EXPECT_TRUE(engine.m_VXHotelFirstScreenDataClone());
    EXPECT_EQ(results(), kSuccess);
}

TEST_F(ApplicationsTest, emptyFirstScreenNameIsTriedAndGivenUp) {
    tv.answer("aul_launch_app", -1);
    tv.setSetting(kFirstScreenKey, std::string());
    tv.answer("message_port_check_remote_port", -2);
    EXPECT_FALSE(engine.m_VXHotelFirstScreenDataClone());
    EXPECT_EQ(results(), kFail);
    EXPECT_THAT(tv.callsOf("message_port_check_remote_port"), SizeIs(11));
    EXPECT_EQ(clock.stepped(), 5500);
}

TEST_F(ApplicationsTest, noDirectionAsksNobodyAndReportsAFailureEach) {
    VXCloneHandler::m_ecloneType = kNoDirection;
    tv.setSetting(kFirstScreenKey, std::string(kFirst));
    EXPECT_FALSE(engine.m_VXHotelFirstScreenDataClone());
    EXPECT_EQ(results(), kFail + kFail);
    EXPECT_THAT(tv.callsOf("aul_launch_app"), SizeIs(1));
    EXPECT_THAT(tv.callsOf("message_port_register_local_port"), IsEmpty());
}

}  // namespace
}  // namespace vxtest
