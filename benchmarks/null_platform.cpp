// A television that always succeeds and does nothing, so that only the library's own cost is measured.

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "platform/aul.h"
#include "platform/avoc.h"
#include "platform/bundle.h"
#include "platform/dlog.h"
#include "platform/factory_clone.h"
#include "platform/home_data_control.h"
#include "platform/message_port.h"
#include "platform/secure_storage.h"
#include "platform/settings_data_clone.h"
#include "platform/source_api.h"
#include "platform/system_info.h"
#include "platform/tv_service.h"
#include "platform/tvtimer.h"
#include "platform/vconf.h"
#include "platform/vx_paths.h"
#include "platform/vx_system_info.h"
#include "platform/was_clone.h"
#include "platform/wqd.h"

struct _bundle_t {};

namespace {

_bundle_t theBundle;
message_port_message_cb replyTo = nullptr;

char* emptyString() {
    return static_cast<char*>(std::calloc(1, 1));
}

struct NullUtil : IUtil {
    int ExportChannelMap(std::string) override { return 1; }
    int ImportChannelMap(std::string) override { return 1; }
};
struct NullB2BControl : IB2BControl {
    bool ExportChannelMap(std::string) override { return true; }
};
struct NullServiceNavigation : IServiceNavigation {};

}  // namespace

extern "C" {

int __dlog_print(int, int, const char*, const char*, ...) {
    return 0;
}

int vconf_get_int(const char*, int* value) {
    return *value = 0;
}
int vconf_set_int(const char*, int) {
    return 0;
}
int vconf_get_bool(const char*, int* value) {
    return *value = 0;
}
int vconf_set_bool(const char*, int) {
    return 0;
}
char* vconf_get_str(const char*) {
    return emptyString();
}
int vconf_set_str(const char*, const char*) {
    return 0;
}

int system_info_get_value_string(system_info_key_e, char** value) {
    *value = emptyString();
    return 0;
}
int system_info_get_value_int(system_info_key_e, int* value) {
    return *value = 0;
}
int system_info_get_custom_int(const char*, int* value) {
    *value = 1;
    return 0;
}
int system_info_get_custom_bool(const char*, bool* value) {
    *value = true;
    return 0;
}

bundle* bundle_create() {
    return &theBundle;
}
int bundle_add_str(bundle*, const char*, const char*) {
    return 0;
}
int bundle_add(bundle*, const char*, const char*) {
    return 0;
}
int bundle_get_str(bundle*, const char*, char** value) {
    static char success[] = "success";
    *value = success;
    return 0;
}
int bundle_free(bundle*) {
    return 0;
}

int message_port_register_local_port(const char*, message_port_message_cb callback, void*) {
    replyTo = callback;
    return 0;
}
int message_port_check_remote_port(const char*, const char*, bool* exist) {
    *exist = true;
    return 0;
}
// Without an answer the library would wait. The answer must come on another thread.
int message_port_send_message_with_local_port(const char* application, const char* port, bundle*, int id) {
    static std::jthread answering;
    answering = std::jthread([=] { replyTo(id, application, port, true, &theBundle, nullptr); });
    return 0;
}

int aul_app_is_running(const char*) {
    return 1;
}
int aul_launch_app(const char*, bundle*) {
    return 1;
}

ss_credential ss_init_credential(const char*, int owner, int group) {
    return {{}, owner, group};
}
int ss_read(char** data, size_t* length, int, int, const char*, ss_credential, int) {
    *data = emptyString();
    *length = 0;
    return 0;
}
void ss_free_buffer(char* data) {
    std::free(data);
}
int wqd_install_from_file(const char*, int, int) {
    return 0;
}

int tvtimer_init() {
    return 0;
}
int tvtimer_get_db(const char*) {
    return 0;
}
int tvtimer_set_db(const char*) {
    return 0;
}

int factory_clone_tv_to_usb() {
    return 0;
}
int factory_clone_usb_to_tv() {
    return 0;
}
int avoc_backup_all_settings(const char*) {
    return 0;
}
int avoc_restore_all_settings(const char*) {
    return 0;
}
int was_clone_backup() {
    return 0;
}
int was_clone_restore() {
    return 0;
}
}

IUtil::~IUtil() = default;
IB2BControl::~IB2BControl() = default;
IServiceNavigation::~IServiceNavigation() = default;

int TVServiceAPI::CreateUtil(IUtil** util) {
    static NullUtil one;
    *util = &one;
    return 0;
}
int TVServiceAPI::CreateB2BControl(IB2BControl** control) {
    static NullB2BControl one;
    *control = &one;
    return 0;
}
int TVServiceAPI::CreateServiceNavigation(EProfile, int, IServiceNavigation** navigation) {
    static NullServiceNavigation one;
    *navigation = &one;
    return 0;
}

CCCategoryUtil* CCCategoryUtil::GetInstance() {
    static CCCategoryUtil one;
    return &one;
}
int CCCategoryUtil::GetNavigationList(TSTvMode, std::list<CCNavigationModeInfo>&) {
    return 0;
}
bool CCCategoryUtil::RemoveNavigation(TSTvMode, CCNavigationModeInfo) {
    return true;
}

int SettingsDataCloneAPI::BackupSettingsData(std::string) {
    return 1;
}
int SettingsDataCloneAPI::RestoreSettingsData(std::string, RESTORE_TYPE) {
    return 1;
}

CHomeDataControlAPI* CHomeDataControlAPI::GetInstance() {
    static CHomeDataControlAPI one;
    return &one;
}
void CHomeDataControlAPI::Destroy() {}
bool CHomeDataControlAPI::CopyCloneDataTVtoUSB(std::string, std::string) {
    return true;
}
bool CHomeDataControlAPI::CopyCloneDataUSBtoTV(std::string, std::string) {
    return true;
}

namespace VXSystemAPI::nsVXSystemInfoAPI {
int CheckNTPSupport(bool& supported) {
    supported = true;
    return 0;
}
int SetNTPMode(bool) {
    return 0;
}
int GetCurrentTimezone(VX_TIMEZONE& timezone) {
    timezone = VX_TIMEZONE{};
    return 0;
}
int SetTimezoneInfo(VX_TIMEZONE) {
    return 0;
}
int SetNTPServerAddr(const char*) {
    return 0;
}
}  // namespace VXSystemAPI::nsVXSystemInfoAPI

CSourceAPI* CSourceAPI::Get() {
    static CSourceAPI one;
    return &one;
}
bool CSourceAPI::GetSourceList(std::shared_ptr<std::multimap<int, CSourceItem>>* list) {
    *list = std::make_shared<std::multimap<int, CSourceItem>>();
    return true;
}
bool CSourceAPI::SetCustomIconPath(int, const std::string&, std::pair<std::string, std::string>, int) {
    return true;
}

std::string vx_get_bootlogo_path() {
    return "/nonexistent/bootlogo/";
}
std::string vx_get_mbrlogo_path() {
    return "/nonexistent/mbrlogo/";
}
std::string vx_get_homemenu_path() {
    return "/nonexistent/homemenu/";
}
