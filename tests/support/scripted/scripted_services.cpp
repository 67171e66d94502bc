// The services that only succeed or fail: timers, factory, picture and sound, settings data, home data, web
// applications; and the directories.

#include "platform/avoc.h"
#include "platform/factory_clone.h"
#include "platform/home_data_control.h"
#include "platform/settings_data_clone.h"
#include "platform/tvtimer.h"
#include "platform/vx_paths.h"
#include "platform/was_clone.h"
#include "tests/support/scripted/answering.h"

using namespace vxtest;

namespace {

int succeed() {
    return 0;
}
int succeedNonZero() {
    return 1;
}
bool succeedTrue() {
    return true;
}

}  // namespace

int tvtimer_init(void) {
    return answered("tvtimer_init", "", succeed);
}
int tvtimer_get_db(const char* directory) {
    return answered("tvtimer_get_db", quoted(directory), succeed);
}
int tvtimer_set_db(const char* directory) {
    return answered("tvtimer_set_db", quoted(directory), succeed);
}

int factory_clone_tv_to_usb(void) {
    return answered("factory_clone_tv_to_usb", "", succeed);
}
int factory_clone_usb_to_tv(void) {
    return answered("factory_clone_usb_to_tv", "", succeed);
}

int avoc_backup_all_settings(const char* directory) {
    return answered("avoc_backup_all_settings", quoted(directory), succeed);
}
int avoc_restore_all_settings(const char* directory) {
    return answered("avoc_restore_all_settings", quoted(directory), succeed);
}

int was_clone_backup(void) {
    return answered("was_clone_backup", "", succeed);
}
int was_clone_restore(void) {
    return answered("was_clone_restore", "", succeed);
}

int SettingsDataCloneAPI::BackupSettingsData(std::string directory) {
    return answered("SettingsDataCloneAPI::BackupSettingsData", quoted(directory), succeedNonZero);
}
int SettingsDataCloneAPI::RestoreSettingsData(std::string directory, RESTORE_TYPE type) {
    return answered("SettingsDataCloneAPI::RestoreSettingsData",
                    fmt::format("{}, {}", quoted(directory), static_cast<int>(type)), succeedNonZero);
}

CHomeDataControlAPI* CHomeDataControlAPI::GetInstance() {
    static CHomeDataControlAPI instance;
    return answeredPointer("CHomeDataControlAPI::GetInstance", "", [] { return &instance; });
}
void CHomeDataControlAPI::Destroy() {
    platform().decide("CHomeDataControlAPI::Destroy", "");
}
bool CHomeDataControlAPI::CopyCloneDataTVtoUSB(std::string directory, std::string option) {
    return answered("CHomeDataControlAPI::CopyCloneDataTVtoUSB",
                    fmt::format("{}, {}", quoted(directory), quoted(option)), succeedTrue);
}
bool CHomeDataControlAPI::CopyCloneDataUSBtoTV(std::string directory, std::string option) {
    return answered("CHomeDataControlAPI::CopyCloneDataUSBtoTV",
                    fmt::format("{}, {}", quoted(directory), quoted(option)), succeedTrue);
}

std::string vx_get_bootlogo_path() {
    platform().decide("vx_get_bootlogo_path", "");
    return platform().locked([](ScriptedPlatform::State& state) { return state.bootLogo; });
}
std::string vx_get_mbrlogo_path() {
    platform().decide("vx_get_mbrlogo_path", "");
    return platform().locked([](ScriptedPlatform::State& state) { return state.mbrLogo; });
}
std::string vx_get_homemenu_path() {
    platform().decide("vx_get_homemenu_path", "");
    return platform().locked([](ScriptedPlatform::State& state) { return state.homeMenu; });
}
