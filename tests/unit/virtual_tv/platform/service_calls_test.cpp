// The calls of the services of values, of network time and of sources, as a program in a television makes
// them: the statuses of each.

#include <gtest/gtest.h>

#include "platform/avoc.h"
#include "platform/factory_clone.h"
#include "platform/home_data_control.h"
#include "platform/settings_data_clone.h"
#include "platform/source_api.h"
#include "platform/vx_system_info.h"
#include "platform/was_clone.h"
#include "tests/unit/virtual_tv/shared_television.h"
#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/services/value_services.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
namespace network = VXSystemAPI::nsVXSystemInfoAPI;

class ServiceCalls : public testing::Test {
 protected:
    ServiceCalls() : package_(cloneDirectory(test::sharedTelevision().folder())) {
        fs::remove_all(package_);
        fs::create_directories(package_);
    }
    ~ServiceCalls() override { fs::remove_all(package_); }

    static void execute(const char* statement) {
        ASSERT_TRUE(test::sharedTelevision().database().write(
            [statement](SQLite::Database& connection) -> Result<void> {
                connection.exec(statement);
                return {};
            }));
    }

    const fs::path package_;
};

TEST_F(ServiceCalls, factoryAndWebApplicationsKnowTheirPlace) {
    EXPECT_EQ(factory_clone_tv_to_usb(), 0);
    EXPECT_EQ(was_clone_backup(), 0);
    EXPECT_TRUE(fs::is_regular_file(package_ / factoryService().file));
    EXPECT_TRUE(fs::is_regular_file(package_ / webApplicationService().file));
    EXPECT_EQ(factory_clone_usb_to_tv(), 0);
    EXPECT_EQ(was_clone_restore(), 0);
    fs::remove_all(package_);
    EXPECT_EQ(factory_clone_tv_to_usb(), -1);
    EXPECT_EQ(was_clone_backup(), -1);
    EXPECT_FALSE(fs::exists(package_));
}

TEST_F(ServiceCalls, eachKindOfDamageHasItsStatus) {
    const fs::path file = package_ / avService().file;
    const auto restore = [this] { return avoc_restore_all_settings(package_.c_str()); };
    EXPECT_EQ(restore(), -3);
    ASSERT_EQ(avoc_backup_all_settings(package_.c_str()), 0);
    EXPECT_EQ(restore(), 0);
    const std::string good = test::readFile(file);
    test::writeFile(file, test::flipped(good, 0));
    EXPECT_EQ(restore(), -4);
    test::writeFile(file, test::flipped(good, std::size_t{47} * 8 + 2));
    EXPECT_EQ(restore(), -5);
    test::writeFile(file, test::flipped(good, std::size_t{12} * 8));
    EXPECT_EQ(restore(), -6);
    test::writeFile(file, test::flipped(good, good.size() * 8 - 1));
    EXPECT_EQ(restore(), -7);
    ASSERT_TRUE(writeBackupFile(file, "av", 1, {{"picture", 1}}));
    EXPECT_EQ(restore(), -8);
    EXPECT_EQ(avoc_restore_all_settings(nullptr), -2);
    EXPECT_EQ(avoc_backup_all_settings(nullptr), -2);
}

TEST_F(ServiceCalls, webApplicationsAreRefusedOnAModelWithoutNetwork) {
    ASSERT_EQ(was_clone_backup(), 0);
    execute("UPDATE features SET value = 0 WHERE name LIKE '%network_support'");
    EXPECT_EQ(was_clone_backup(), -11);
    EXPECT_EQ(was_clone_restore(), -11);
    execute("UPDATE features SET value = 1 WHERE name LIKE '%network_support'");
    EXPECT_EQ(was_clone_restore(), 0);
}

TEST_F(ServiceCalls, settingsSayZeroForEveryFailure) {
    const std::string directory = package_.string() + "/";
    const auto restore = [&directory](int type) {
        return SettingsDataCloneAPI::RestoreSettingsData(
            directory, static_cast<SettingsDataCloneAPI::RESTORE_TYPE>(type));
    };
    EXPECT_EQ(restore(1), 0);
    EXPECT_EQ(SettingsDataCloneAPI::BackupSettingsData(directory + "none/"), 0);
    EXPECT_EQ(SettingsDataCloneAPI::BackupSettingsData(directory), 1);
    EXPECT_EQ(restore(1), 1);
    EXPECT_EQ(restore(2), 1);
    EXPECT_EQ(restore(0), 0);
    EXPECT_EQ(restore(3), 0);
}

TEST_F(ServiceCalls, homeDataRefusesAnyOption) {
    const std::string directory = package_ / "org.vorta.homedatacontrol-service";
    CHomeDataControlAPI* const service = CHomeDataControlAPI::GetInstance();
    ASSERT_NE(service, nullptr);
    EXPECT_FALSE(service->CopyCloneDataTVtoUSB(directory, "all"));
    EXPECT_FALSE(fs::exists(directory));
    EXPECT_TRUE(service->CopyCloneDataTVtoUSB(directory, ""));
    EXPECT_FALSE(service->CopyCloneDataUSBtoTV(directory, "all"));
    EXPECT_TRUE(service->CopyCloneDataUSBtoTV(directory, ""));
    EXPECT_FALSE(service->CopyCloneDataUSBtoTV(package_, ""));
    CHomeDataControlAPI::Destroy();
}

TEST_F(ServiceCalls, networkTimeRefusesWhatItCannotTake) {
    EXPECT_EQ(network::SetNTPServerAddr(nullptr), -2);
    EXPECT_EQ(network::SetNTPServerAddr("no host name"), -2);
    EXPECT_EQ(network::SetNTPServerAddr(""), 0);
    EXPECT_EQ(network::SetTimezoneInfo(static_cast<VX_TIMEZONE>(91)), -2);
    execute("UPDATE network_time SET supported = 0");
    bool supported = true;
    EXPECT_EQ(network::CheckNTPSupport(supported), 0);
    EXPECT_FALSE(supported);
    EXPECT_EQ(network::SetNTPMode(true), -11);
    execute("UPDATE network_time SET supported = 1");
}

TEST_F(ServiceCalls, sourcesRefuseWhatIsNotThere) {
    EXPECT_FALSE(CSourceAPI::Get()->GetSourceList(nullptr));
    EXPECT_FALSE(CSourceAPI::Get()->SetCustomIconPath(10, "/none.png", {"/none.png", "/none.png"}, 0));
}

TEST_F(ServiceCalls, televisionWithoutTheServicesFailsInEachWay) {
    execute("CREATE TABLE services_of_before AS SELECT * FROM services");
    execute("DELETE FROM services");
    VX_TIMEZONE zone{};
    bool supported = true;
    std::shared_ptr<std::multimap<int, CSourceItem>> sources;
    EXPECT_EQ(factory_clone_tv_to_usb(), -9);
    EXPECT_EQ(avoc_backup_all_settings(package_.c_str()), -9);
    EXPECT_EQ(was_clone_backup(), -9);
    EXPECT_EQ(SettingsDataCloneAPI::BackupSettingsData(package_), 0);
    EXPECT_EQ(CHomeDataControlAPI::GetInstance(), nullptr);
    EXPECT_EQ(network::CheckNTPSupport(supported), -9);
    EXPECT_TRUE(supported);
    EXPECT_EQ(network::SetNTPMode(true), -9);
    EXPECT_EQ(network::GetCurrentTimezone(zone), -9);
    EXPECT_FALSE(CSourceAPI::Get()->GetSourceList(&sources));
    EXPECT_EQ(sources, nullptr);
    EXPECT_TRUE(fs::is_empty(package_));
    execute("INSERT INTO services SELECT * FROM services_of_before");
    execute("DROP TABLE services_of_before");
}

}  // namespace
}  // namespace vxtv
