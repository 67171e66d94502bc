// What every application manager must do.

#include "platform/aul.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

class Aul : public ContractTest {
 protected:
    const std::string application = world->application();
};

TEST_F(Aul, applicationThatWasNotLaunchedDoesNotRun) {
    EXPECT_NE(aul_app_is_running(application.c_str()), 1);
}

TEST_F(Aul, launchGivesAProcessAndTheApplicationRuns) {
    EXPECT_GE(aul_launch_app(application.c_str(), nullptr), 1);
    EXPECT_EQ(aul_app_is_running(application.c_str()), 1);
}

TEST_F(Aul, launchOfARunningApplicationLeavesItRunning) {
    const int process = aul_launch_app(application.c_str(), nullptr);
    EXPECT_EQ(aul_launch_app(application.c_str(), nullptr), process);
    EXPECT_EQ(aul_app_is_running(application.c_str()), 1);
}

TEST_F(Aul, launchLeavesTheBundleToTheCaller) {
    bundle* const launch = bundle_create();
    ASSERT_NE(launch, nullptr);
    ASSERT_EQ(bundle_add(launch, "mode", "clone"), 0);
    EXPECT_GE(aul_launch_app(application.c_str(), launch), 1);
    char* value = nullptr;
    ASSERT_EQ(bundle_get_str(launch, "mode", &value), 0);
    EXPECT_STREQ(value, "clone");
    EXPECT_EQ(bundle_free(launch), 0);
}

TEST_F(Aul, nullAndEmptyNamesAreRefused) {
    for (const char* const name : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_NE(aul_app_is_running(name), 1);
        EXPECT_LT(aul_launch_app(name, nullptr), 1);
    }
}

TEST_F(Aul, launchThatIsToldToFailStartsNothing) {
    world->failOnce("aul_launch_app", -7, 1);
    EXPECT_EQ(aul_launch_app(application.c_str(), nullptr), -7);
    EXPECT_NE(aul_app_is_running(application.c_str()), 1);
    EXPECT_GE(aul_launch_app(application.c_str(), nullptr), 1);
}

}  // namespace
}  // namespace vxcontract
