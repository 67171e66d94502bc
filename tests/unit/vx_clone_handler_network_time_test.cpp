// Network time.

#include "cloner_test.h"

namespace vxtest {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

const Lines kReportedSuccess = reported("VXCLONE_NTP_SETTINGS_DATA-SUCCESS");
const Lines kReportedFailure = reported("VXCLONE_NTP_SETTINGS_DATA-FAIL");

// The steps of a restore, each as its whole transcript.
const Lines kSupport = {"nsVXSystemInfoAPI::CheckNTPSupport(false)"};
const Lines kMode = {"vconf_get_int(\"db/menu/system/time/ntp/ntp_mode\")"};
const Lines kSwitchedOn = {"D/33 m_NTP_Settings_Clone: NTP mode is on",
                           "nsVXSystemInfoAPI::SetNTPMode(true)"};
const Lines kSwitchedOff = {"nsVXSystemInfoAPI::SetNTPMode(false)"};
const Lines kZone = {"nsVXSystemInfoAPI::GetCurrentTimezone(90)"};
const Lines kServer = {"vconf_get_str(\"db/menu/system/time/ntp/server_url\")"};
const Lines kZoneSet = {"D/33 m_NTP_Settings_Clone: NTP mode is on, so call system API",
                        "nsVXSystemInfoAPI::SetTimezoneInfo(17)"};
const Lines kServerSet = {"D/33 m_NTP_Settings_Clone: Server URL is : time.example",
                          "nsVXSystemInfoAPI::SetNTPServerAddr(\"time.example\")"};

Lines failed(const std::string& operation, int status) {
    return {"E/35 m_NTP_Settings_Clone: Fail to VXSystemAPI::nsVXSystemInfoAPI::" + operation +
            "(ErrStat:" + std::to_string(status) + ")!!!!"};
}

class NetworkTimeTest : public ClonerTest {
 protected:
    NetworkTimeTest() {
        tv.setSetting(kNtpModeKey, 0);
        tv.setSetting(kNtpServerKey, std::string("time.example"));
        tv.setTimezone(17);
    }
    bool clone(std::int32_t direction) { return run(&VXCloneHandler::m_NTP_Settings_Clone, direction); }
};

TEST_F(NetworkTimeTest, backupOnlyReportsASuccess) {
    EXPECT_TRUE(clone(0));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(kReportedSuccess));
}

TEST_F(NetworkTimeTest, anotherDirectionOnlyReportsAFailure) {
    for (const std::int32_t direction : {2, -1}) {
        tv.setSetting(kCloneResultKey, std::string());
        EXPECT_FALSE(clone(direction));
        EXPECT_EQ(results(), "VXCLONE_NTP_SETTINGS_DATA-FAIL\n");
    }
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kReportedFailure, kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreOfModeZeroSwitchesOnAndSetsZoneAndServer) {
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kSupport, kMode, kSwitchedOn, kZone, kServer,
                                                         kZoneSet, kServerSet, kReportedSuccess)));
}

TEST_F(NetworkTimeTest, everyLineNamesItsSource) {
    tv.answer("nsVXSystemInfoAPI::SetNTPServerAddr", 4);
    clone(1);
    const auto log = tv.log();
    ASSERT_EQ(log.size(), 5U);
    for (std::size_t line = 0; line + 1 < log.size(); ++line) {
        EXPECT_EQ(log[line].source, "VXCloneHandlerNetworkTime.cpp");
    }
}

TEST_F(NetworkTimeTest, restoreOfAnyOtherModeSwitchesOffAndTouchesNothingElse) {
    const Lines off = {"D/33 m_NTP_Settings_Clone: NTP mode is off, no need to call system API"};
    Lines expected;
    for (const int mode : {1, 2, -1}) {
        tv.setSetting(kNtpModeKey, mode);
        tv.setSetting(kCloneResultKey, std::string());
        EXPECT_TRUE(clone(1)) << mode;
        expected = joined(expected, kSupport, kMode, kSwitchedOff, off, kReportedSuccess);
    }
    EXPECT_THAT(tv.transcript(), ElementsAreArray(expected));
}

TEST_F(NetworkTimeTest, restoreWithoutSupportIsASuccess) {
    tv.setTakesNetworkTime(false);
    const Lines unsupported = {"E/35 m_NTP_Settings_Clone: NTP is not Supported "};
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kSupport, unsupported, kReportedSuccess)));
}

TEST_F(NetworkTimeTest, restoreWhoseSupportIsLeftUnfilledCountsAsUnsupported) {
    tv.answer("nsVXSystemInfoAPI::CheckNTPSupport", 0);
    EXPECT_TRUE(clone(1));
    EXPECT_EQ(tv.describedLog().front(), "E/35 m_NTP_Settings_Clone: NTP is not Supported ");
}

TEST_F(NetworkTimeTest, restoreWhoseSupportCannotBeAskedFails) {
    tv.answer("nsVXSystemInfoAPI::CheckNTPSupport", -3);
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kSupport, failed("CheckNTPSupport", -3), kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreWithoutModeSettingFails) {
    tv.eraseSetting(kNtpModeKey);
    const Lines noMode = {"E/35 m_NTP_Settings_Clone: GET VCONF [ntp_mode] FAILED!!!"};
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kSupport, kMode, noMode, kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreThatCannotSwitchOffFails) {
    tv.setSetting(kNtpModeKey, 1);
    tv.answer("nsVXSystemInfoAPI::SetNTPMode", 5);
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kSupport, kMode, kSwitchedOff,
                                                         failed("SetNTPMode", 5), kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreThatCannotSwitchOnFails) {
    tv.answer("nsVXSystemInfoAPI::SetNTPMode", -1);
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kSupport, kMode, kSwitchedOn,
                                                         failed("SetNTPMode", -1), kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreWhoseZoneCannotBeReadLeavesNetworkTimeOnAndFails) {
    tv.answer("nsVXSystemInfoAPI::GetCurrentTimezone", 1);
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kSupport, kMode, kSwitchedOn, kZone,
                                                         failed("GetCurrentTimezone", 1), kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreWhoseZoneIsLeftUnfilledPassesNinetyOn) {
    tv.answer("nsVXSystemInfoAPI::GetCurrentTimezone", 0);
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.callsOf("nsVXSystemInfoAPI::SetTimezoneInfo"),
                testing::ElementsAre("nsVXSystemInfoAPI::SetTimezoneInfo(90)"));
}

TEST_F(NetworkTimeTest, restoreWithoutServerSettingFailsBeforeTheZoneIsSet) {
    tv.eraseSetting(kNtpServerKey);
    const Lines noServer = {"E/35 m_NTP_Settings_Clone: GET VCONF [server_url] FAILED!!!"};
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kSupport, kMode, kSwitchedOn, kZone, kServer,
                                                         noServer, kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreWhoseZoneCannotBeSetFailsWithoutSettingTheServer) {
    tv.answer("nsVXSystemInfoAPI::SetTimezoneInfo", 2);
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kSupport, kMode, kSwitchedOn, kZone, kServer, kZoneSet,
                                        failed("SetTimezoneInfo", 2), kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreWhoseServerCannotBeSetFails) {
    tv.answer("nsVXSystemInfoAPI::SetNTPServerAddr", -22);
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kSupport, kMode, kSwitchedOn, kZone, kServer, kZoneSet, kServerSet,
                                        failed("SetNTPServerAddr", -22), kReportedFailure)));
}

TEST_F(NetworkTimeTest, restoreOfAnEmptyServerPassesItOn) {
    tv.setSetting(kNtpServerKey, std::string());
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.callsOf("nsVXSystemInfoAPI::SetNTPServerAddr"),
                testing::ElementsAre("nsVXSystemInfoAPI::SetNTPServerAddr(\"\")"));
    EXPECT_THAT(tv.describedLog(), testing::Contains("D/33 m_NTP_Settings_Clone: Server URL is : "));
    EXPECT_EQ(results(), "VXCLONE_NTP_SETTINGS_DATA-SUCCESS\n");
}

TEST_F(NetworkTimeTest, outcomeThatCannotBeReportedIsStillReturned) {
    tv.eraseSetting(kCloneResultKey);
    EXPECT_TRUE(clone(0));
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.callsOf("vconf_set_str"), IsEmpty());
}

}  // namespace
}  // namespace vxtest
