// What every TV service and every timer service must do.

#include "platform/tv_service.h"
#include "platform/tvtimer.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using Timers = ContractTest;

class TvService : public ContractTest {
 protected:
    static constexpr TSTvMode kAll = {ANTENNA_MODE_ALL, SERVICE_MODE_ALL};

    static IUtil* util() {
        IUtil* util = nullptr;
        EXPECT_EQ(TVServiceAPI::CreateUtil(&util), 0);
        return util;
    }
    static IB2BControl* control() {
        IB2BControl* control = nullptr;
        EXPECT_EQ(TVServiceAPI::CreateB2BControl(&control), 0);
        return control;
    }
    std::string channels() const { return world->packageDirectory() + "/tvs-chms/"; }
};

TEST_F(TvService, objectsAreHandedOutAndStayTheSame) {
    IServiceNavigation* navigation = nullptr;
    EXPECT_EQ(TVServiceAPI::CreateServiceNavigation(PROFILE_NAVIGATION, 0, &navigation), 0);
    EXPECT_NE(navigation, nullptr);
    ASSERT_NE(util(), nullptr);
    ASSERT_NE(control(), nullptr);
    EXPECT_EQ(util(), util());
    EXPECT_EQ(control(), control());
}

TEST_F(TvService, creationThatFailsLeavesThePointer) {
    IUtil* util = nullptr;
    IB2BControl* control = nullptr;
    IServiceNavigation* navigation = nullptr;
    world->failOnce("TVServiceAPI::CreateUtil", -7, 1);
    world->failOnce("TVServiceAPI::CreateB2BControl", -8, 1);
    world->failOnce("TVServiceAPI::CreateServiceNavigation", -9, 1);
    EXPECT_EQ(TVServiceAPI::CreateUtil(&util), -7);
    EXPECT_EQ(TVServiceAPI::CreateB2BControl(&control), -8);
    EXPECT_EQ(TVServiceAPI::CreateServiceNavigation(PROFILE_NAVIGATION, 0, &navigation), -9);
    EXPECT_EQ(util, nullptr);
    EXPECT_EQ(control, nullptr);
    EXPECT_EQ(navigation, nullptr);
}

TEST_F(TvService, exportAndImportAreNotZeroWhenTheySucceed) {
    ASSERT_NE(util(), nullptr);
    ASSERT_NE(control(), nullptr);
    EXPECT_NE(util()->ExportChannelMap(channels()), 0);
    EXPECT_TRUE(control()->ExportChannelMap(channels()));
    EXPECT_NE(util()->ImportChannelMap(channels()), 0);
}

TEST_F(TvService, exportAndImportThatAreToldToFailSaySoOnce) {
    ASSERT_NE(util(), nullptr);
    ASSERT_NE(control(), nullptr);
    world->failOnce("IUtil::ExportChannelMap", 0, 1);
    world->failOnce("IB2BControl::ExportChannelMap", 0, 1);
    world->failOnce("IUtil::ImportChannelMap", 0, 1);
    EXPECT_EQ(util()->ExportChannelMap(channels()), 0);
    EXPECT_FALSE(control()->ExportChannelMap(channels()));
    EXPECT_EQ(util()->ImportChannelMap(channels()), 0);
    EXPECT_NE(util()->ExportChannelMap(channels()), 0);
    EXPECT_NE(util()->ImportChannelMap(channels()), 0);
}

TEST_F(TvService, navigationListIsFilledAndItsEntriesCanBeRemoved) {
    ASSERT_NE(CCCategoryUtil::GetInstance(), nullptr);
    std::list<CCNavigationModeInfo> entries;
    EXPECT_EQ(CCCategoryUtil::GetInstance()->GetNavigationList(kAll, entries), 0);
    for (const CCNavigationModeInfo& entry : entries) {
        EXPECT_TRUE(CCCategoryUtil::GetInstance()->RemoveNavigation(kAll, entry));
    }
    EXPECT_TRUE(CCCategoryUtil::GetInstance()->RemoveNavigation(kAll, {10, 999, {"not there"}, 0, 0}));
}

TEST_F(TvService, navigationThatIsToldToFailSaysSoAndLeavesTheList) {
    world->failOnce("CCCategoryUtil::GetNavigationList", -3, 1);
    world->failOnce("CCCategoryUtil::RemoveNavigation", 0, 1);
    std::list<CCNavigationModeInfo> entries = {{7, 8, {"mine"}, 9, 1}};
    EXPECT_EQ(CCCategoryUtil::GetInstance()->GetNavigationList(kAll, entries), -3);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries.front().id, 8);
    EXPECT_FALSE(CCCategoryUtil::GetInstance()->RemoveNavigation(kAll, entries.front()));
    EXPECT_TRUE(CCCategoryUtil::GetInstance()->RemoveNavigation(kAll, entries.front()));
}

TEST_F(Timers, savingAndLoadingAreZeroWhenTheySucceed) {
    EXPECT_EQ(tvtimer_get_db(world->packageDirectory().c_str()), 0);
    EXPECT_EQ(tvtimer_set_db(world->packageDirectory().c_str()), 0);
}

TEST_F(Timers, savingAndLoadingThatAreToldToFailSaySoOnce) {
    world->failOnce("tvtimer_get_db", -5, 1);
    world->failOnce("tvtimer_set_db", -6, 1);
    EXPECT_EQ(tvtimer_get_db(world->packageDirectory().c_str()), -5);
    EXPECT_EQ(tvtimer_set_db(world->packageDirectory().c_str()), -6);
    EXPECT_EQ(tvtimer_get_db(world->packageDirectory().c_str()), 0);
    EXPECT_EQ(tvtimer_set_db(world->packageDirectory().c_str()), 0);
}

}  // namespace
}  // namespace vxcontract
