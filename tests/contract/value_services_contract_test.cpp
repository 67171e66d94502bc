// What every service that saves its values into a package and loads them must do. Each service reports
// success in its own way.

#include <array>
#include <functional>

#include "platform/avoc.h"
#include "platform/factory_clone.h"
#include "platform/home_data_control.h"
#include "platform/settings_data_clone.h"
#include "platform/was_clone.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using Directory = std::string;

/// A platform call and its status.
struct Operation {
    const char* call;
    std::function<int(const Directory&)> run;
    bool zeroIsSuccess;
    int failure;  ///< a status that means failure

    bool succeeds(const Directory& directory) const { return (run(directory) == 0) == zeroIsSuccess; }
};

Directory homeOf(const Directory& directory) {
    return directory + "/org.vorta.homedatacontrol-service";
}

const std::array kBackups = {
    Operation{"factory_clone_tv_to_usb", [](const Directory&) { return factory_clone_tv_to_usb(); }, true,
              -5},
    Operation{"avoc_backup_all_settings",
              [](const Directory& directory) { return avoc_backup_all_settings(directory.c_str()); }, true,
              -5},
    Operation{"was_clone_backup", [](const Directory&) { return was_clone_backup(); }, true, -5},
    Operation{
        "SettingsDataCloneAPI::BackupSettingsData",
        [](const Directory& directory) { return SettingsDataCloneAPI::BackupSettingsData(directory + "/"); },
        false, 0},
    Operation{"CHomeDataControlAPI::CopyCloneDataTVtoUSB",
              [](const Directory& directory) -> int {
                  return CHomeDataControlAPI::GetInstance()->CopyCloneDataTVtoUSB(homeOf(directory), "");
              },
              false, 0}};

const std::array kRestores = {
    Operation{"factory_clone_usb_to_tv", [](const Directory&) { return factory_clone_usb_to_tv(); }, true,
              -5},
    Operation{"avoc_restore_all_settings",
              [](const Directory& directory) { return avoc_restore_all_settings(directory.c_str()); }, true,
              -5},
    Operation{"was_clone_restore", [](const Directory&) { return was_clone_restore(); }, true, -5},
    Operation{"SettingsDataCloneAPI::RestoreSettingsData",
              [](const Directory& directory) {
                  return SettingsDataCloneAPI::RestoreSettingsData(directory + "/",
                                                                   SettingsDataCloneAPI::EARLY_RESTORE);
              },
              false, 0},
    Operation{"CHomeDataControlAPI::CopyCloneDataUSBtoTV",
              [](const Directory& directory) -> int {
                  return CHomeDataControlAPI::GetInstance()->CopyCloneDataUSBtoTV(homeOf(directory), "");
              },
              false, 0}};

using ValueServices = ContractTest;

TEST_F(ValueServices, restoreAfterBackupSucceeds) {
    for (std::size_t i = 0; i < kBackups.size(); ++i) {
        EXPECT_TRUE(kBackups.at(i).succeeds(world->packageDirectory())) << kBackups.at(i).call;
        EXPECT_TRUE(kRestores.at(i).succeeds(world->packageDirectory())) << kRestores.at(i).call;
    }
}

TEST_F(ValueServices, backupMayBeRepeated) {
    for (const Operation& backup : kBackups) {
        EXPECT_TRUE(backup.succeeds(world->packageDirectory())) << backup.call;
        EXPECT_TRUE(backup.succeeds(world->packageDirectory())) << backup.call;
    }
}

TEST_F(ValueServices, callThatIsToldToFailDoesSoOnceInItsOwnWay) {
    for (const auto& operations : {kBackups, kRestores}) {
        for (const Operation& operation : operations) {
            world->failOnce(operation.call, operation.failure, 1);
            EXPECT_EQ(operation.run(world->packageDirectory()), operation.failure) << operation.call;
            EXPECT_TRUE(operation.succeeds(world->packageDirectory())) << operation.call;
        }
    }
}

TEST_F(ValueServices, laterHalfOfTheSettingsSucceedsAfterTheEarlyOne) {
    const Directory directory = world->packageDirectory() + "/";
    ASSERT_NE(SettingsDataCloneAPI::BackupSettingsData(directory), 0);
    EXPECT_NE(SettingsDataCloneAPI::RestoreSettingsData(directory, SettingsDataCloneAPI::EARLY_RESTORE), 0);
    EXPECT_NE(SettingsDataCloneAPI::RestoreSettingsData(directory, SettingsDataCloneAPI::LATER_RESTORE), 0);
}

TEST_F(ValueServices, homeDataObjectCanBeMissingAndBeThereAgain) {
    world->failOnce("CHomeDataControlAPI::GetInstance", -1, 1);
    EXPECT_EQ(CHomeDataControlAPI::GetInstance(), nullptr);
    EXPECT_NE(CHomeDataControlAPI::GetInstance(), nullptr);
    CHomeDataControlAPI::Destroy();
    EXPECT_NE(CHomeDataControlAPI::GetInstance(), nullptr);
    CHomeDataControlAPI::Destroy();
}

}  // namespace
}  // namespace vxcontract
