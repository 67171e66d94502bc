// The TV service and the timers as a program in a television calls them.

#include <gtest/gtest.h>

#include "platform/tv_service.h"
#include "platform/tvtimer.h"
#include "tests/unit/virtual_tv/shared_television.h"
#include "virtual_tv/channels/channel_archive.h"
#include "virtual_tv/channels/navigation_lists.h"
#include "virtual_tv/services/timer_store.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class TvServicePlatform : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(test::sharedTelevision().faults().clear());
        ASSERT_EQ(TVServiceAPI::CreateUtil(&util_), 0);
        ASSERT_EQ(TVServiceAPI::CreateB2BControl(&control_), 0);
    }

    static std::size_t channels() {
        return ChannelStore(test::sharedTelevision().database()).map().value().channels.size();
    }

    test::TestFolder folder_;
    const std::string directory_ = (folder_.path() / "tvs-chms").string() + "/";
    IUtil* util_ = nullptr;
    IB2BControl* control_ = nullptr;
};

TEST_F(TvServicePlatform, channelsAreExportedAndImportedWithOneForSuccess) {
    EXPECT_EQ(util_->ExportChannelMap(directory_), 1);
    EXPECT_TRUE(control_->ExportChannelMap(directory_));
    EXPECT_TRUE(fs::is_regular_file(directory_ + kChannelArchiveFile));
    EXPECT_TRUE(fs::is_regular_file(directory_ + kHotelListFile));
    EXPECT_EQ(util_->ImportChannelMap(directory_), 1);
}

TEST_F(TvServicePlatform, importThatIsRefusedIsZeroAndTheLogSaysWhy) {
    const std::size_t before = channels();
    fs::create_directory(directory_);
    test::writeFile(directory_ + kChannelArchiveFile, "no archive");
    EXPECT_EQ(util_->ImportChannelMap(directory_), 0);
    EXPECT_EQ(channels(), before);
    EXPECT_NE(test::readFile(test::sharedTelevision().folder().dlog()).find(directory_ + kChannelArchiveFile),
              std::string::npos);
}

TEST_F(TvServicePlatform, exportWithoutAPlaceIsZeroOrFalse) {
    EXPECT_EQ(util_->ExportChannelMap("/no/such/folder"), 0);
    EXPECT_EQ(util_->ExportChannelMap(""), 0);
    EXPECT_FALSE(control_->ExportChannelMap(""));
}

TEST_F(TvServicePlatform, creationThatIsAskedForNonsenseFails) {
    IServiceNavigation* navigation = nullptr;
    EXPECT_EQ(TVServiceAPI::CreateUtil(nullptr), -2);
    EXPECT_EQ(TVServiceAPI::CreateServiceNavigation(static_cast<EProfile>(7), 0, &navigation), -2);
    EXPECT_EQ(TVServiceAPI::CreateServiceNavigation(PROFILE_NAVIGATION, 1, &navigation), -2);
    EXPECT_EQ(navigation, nullptr);
}

TEST_F(TvServicePlatform, navigationListHasAllThatTheEntriesAre) {
    std::list<CCNavigationModeInfo> entries;
    auto* const lists = CCCategoryUtil::GetInstance();
    ASSERT_EQ(lists->GetNavigationList({ANTENNA_MODE_ALL, static_cast<EServiceMode>(16)}, entries), 0);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries.front().mode, 10);
    EXPECT_EQ(entries.front().id, 2);
    EXPECT_EQ(entries.front().names, (std::list<std::string>{"Favourites", "House"}));
    EXPECT_EQ(entries.front().order, 1);
    EXPECT_EQ(entries.front().flag, 255);
    EXPECT_EQ(lists->GetNavigationList({static_cast<EAntennaMode>(9), SERVICE_MODE_ALL}, entries), -2);
    EXPECT_EQ(entries.size(), 1U);
    EXPECT_FALSE(lists->RemoveNavigation({static_cast<EAntennaMode>(9), SERVICE_MODE_ALL}, entries.front()));
}

TEST_F(TvServicePlatform, timersAreSavedAndLoadedWithZeroForSuccess) {
    const std::string directory = folder_.path().string();
    EXPECT_EQ(tvtimer_get_db(directory.c_str()), 0);
    EXPECT_TRUE(fs::is_regular_file(folder_.path() / kTimerFile));
    EXPECT_EQ(tvtimer_set_db(directory.c_str()), 0);
}

TEST_F(TvServicePlatform, eachTroubleOfTheTimersHasAStatusOfItsOwn) {
    const std::string directory = folder_.path().string();
    EXPECT_EQ(tvtimer_get_db(nullptr), -2);
    EXPECT_EQ(tvtimer_set_db(""), -2);
    EXPECT_EQ(tvtimer_set_db(directory.c_str()), -3);
    test::writeFile(folder_.path() / kTimerFile, std::string(200, 'x'));
    EXPECT_EQ(tvtimer_set_db(directory.c_str()), -4);
    ASSERT_EQ(tvtimer_get_db(directory.c_str()), 0);
    const std::string good = test::readFile(folder_.path() / kTimerFile);
    test::writeFile(folder_.path() / kTimerFile, test::flipped(good, (good.size() - 1) * 8));
    EXPECT_EQ(tvtimer_set_db(directory.c_str()), -7);
    EXPECT_EQ(tvtimer_get_db("/no/such/folder"), -1);
}

}  // namespace
}  // namespace vxtv
