// The members whose services are not driven yet: they are there, do nothing and report nothing.

#include "engine_test.h"

namespace vxtest {
namespace {

using testing::IsEmpty;

using Cloner = bool (VXCloneHandler::*)();

class PendingTest : public EngineTest, public testing::WithParamInterface<Cloner> {};

TEST_P(PendingTest, clonerInEitherDirectionTouchesNothingAndReportsNothing) {
    for (const std::int32_t direction : {kDirectionBackup, kDirectionRestore}) {
        VXCloneHandler::m_ecloneType = direction;
        EXPECT_FALSE((engine.*GetParam())());
    }
    EXPECT_THAT(tv.transcript(), IsEmpty());
    EXPECT_EQ(results(), "stale");
    EXPECT_TRUE(fs::is_empty(kCloneDirectory));
}

INSTANTIATE_TEST_SUITE_P(
    Cloners, PendingTest,
    testing::Values(&VXCloneHandler::m_FactorySettingsClone, &VXCloneHandler::m_AudioVideoSettingsClone,
                    &VXCloneHandler::m_HomeDataControlClone, &VXCloneHandler::m_WasAPIClone,
                    &VXCloneHandler::m_BroadcastTVSClone, &VXCloneHandler::m_SettingsDataClone,
                    &VXCloneHandler::m_BroadcastIPGDataClone, &VXCloneHandler::m_VXTVTimerDataClone,
                    &VXCloneHandler::m_HospitalityLogoClone, &VXCloneHandler::m_VXHotelHomeAppDataClone,
                    &VXCloneHandler::m_VXHotelFirstScreenDataClone, &VXCloneHandler::m_MBRLogoClone,
                    &VXCloneHandler::m_NTP_Settings_Clone, &VXCloneHandler::m_SetMBRCutomIcon,
                    &VXCloneHandler::m_ResetMyChannelNavigation, &VXCloneHandler::m_LaunchOrvelAppForClone),
    [](const auto& test) { return "number" + std::to_string(test.index); });

TEST_F(EngineTest, listOfApplicationsStaysAsItIs) {
    std::vector<std::string> applications = {"kept"};
    engine.m_GetMsgPortAppsName(applications);
    EXPECT_THAT(applications, testing::ElementsAre("kept"));
    EXPECT_THAT(tv.transcript(), IsEmpty());
}

}  // namespace
}  // namespace vxtest
