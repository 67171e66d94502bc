// What every timer service and every provider of directories must do.

#include "platform/tvtimer.h"
#include "platform/vx_paths.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using TvTimer = ContractTest;
using Directories = ContractTest;

TEST_F(TvTimer, initSucceedsAndMayBeRepeated) {
    EXPECT_GE(tvtimer_init(), 0);
    EXPECT_GE(tvtimer_init(), 0);
}

TEST_F(TvTimer, initThatIsToldToFailIsNegativeOnce) {
    world->failOnce("tvtimer_init", -5, 1);
    EXPECT_EQ(tvtimer_init(), -5);
    EXPECT_GE(tvtimer_init(), 0);
}

TEST_F(Directories, eachIsAnAbsolutePathOfItsOwn) {
    const std::string bootLogo = vx_get_bootlogo_path();
    const std::string mbrLogo = vx_get_mbrlogo_path();
    const std::string homeMenu = vx_get_homemenu_path();
    for (const std::string& path : {bootLogo, mbrLogo, homeMenu}) {
        EXPECT_EQ(path.rfind("/opt/", 0), 0U) << path;
    }
    EXPECT_NE(bootLogo, mbrLogo);
    EXPECT_NE(bootLogo, homeMenu);
    EXPECT_NE(mbrLogo, homeMenu);
}

TEST_F(Directories, eachStaysTheSame) {
    EXPECT_EQ(vx_get_bootlogo_path(), vx_get_bootlogo_path());
    EXPECT_EQ(vx_get_mbrlogo_path(), vx_get_mbrlogo_path());
    EXPECT_EQ(vx_get_homemenu_path(), vx_get_homemenu_path());
}

}  // namespace
}  // namespace vxcontract
