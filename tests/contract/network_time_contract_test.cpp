// What every provider of network time must do.

#include "platform/vx_system_info.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

namespace network = VXSystemAPI::nsVXSystemInfoAPI;

using NetworkTime = ContractTest;

constexpr auto kUntouched = static_cast<VX_TIMEZONE>(90);

TEST_F(NetworkTime, supportIsTold) {
    bool supported = false;
    EXPECT_EQ(network::CheckNTPSupport(supported), 0);
    EXPECT_TRUE(supported);
}

TEST_F(NetworkTime, zoneThatWasSetIsReadBack) {
    for (const int zone : {0, 33, 29}) {
        VX_TIMEZONE read = kUntouched;
        EXPECT_EQ(network::SetTimezoneInfo(static_cast<VX_TIMEZONE>(zone)), 0);
        EXPECT_EQ(network::GetCurrentTimezone(read), 0);
        EXPECT_EQ(read, static_cast<VX_TIMEZONE>(zone));
    }
}

TEST_F(NetworkTime, modeAndServerMayBeSetAgainAndAgain) {
    for (const bool on : {true, true, false, false}) {
        EXPECT_EQ(network::SetNTPMode(on), 0);
    }
    for (const char* server : {"ntp.example", "192.0.2.7", "2001:db8::7", "", ""}) {
        EXPECT_EQ(network::SetNTPServerAddr(server), 0) << server;
    }
}

TEST_F(NetworkTime, callThatIsToldToFailLeavesTheValues) {
    bool supported = false;
    VX_TIMEZONE zone = kUntouched;
    ASSERT_EQ(network::SetTimezoneInfo(static_cast<VX_TIMEZONE>(5)), 0);
    world->failOnce("nsVXSystemInfoAPI::CheckNTPSupport", -7, 1);
    world->failOnce("nsVXSystemInfoAPI::GetCurrentTimezone", -7, 1);
    world->failOnce("nsVXSystemInfoAPI::SetTimezoneInfo", -7, 1);
    world->failOnce("nsVXSystemInfoAPI::SetNTPMode", -7, 1);
    world->failOnce("nsVXSystemInfoAPI::SetNTPServerAddr", -7, 1);
    EXPECT_EQ(network::CheckNTPSupport(supported), -7);
    EXPECT_FALSE(supported);
    EXPECT_EQ(network::GetCurrentTimezone(zone), -7);
    EXPECT_EQ(zone, kUntouched);
    EXPECT_EQ(network::SetTimezoneInfo(static_cast<VX_TIMEZONE>(6)), -7);
    EXPECT_EQ(network::SetNTPMode(true), -7);
    EXPECT_EQ(network::SetNTPServerAddr("ntp.example"), -7);
    EXPECT_EQ(network::GetCurrentTimezone(zone), 0);
    EXPECT_EQ(zone, static_cast<VX_TIMEZONE>(5));
}

}  // namespace
}  // namespace vxcontract
