#include <algorithm>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/television/category.h"
#include "platform/vx_paths.h"
#include VXCLONE_SERVICE_FILES

namespace vxclone {

namespace {

/// A restore puts network time into effect by these two. Without them it would switch the clock by values
/// that nobody chose.
constexpr std::array<std::string_view, 2> kNetworkTimeSettings = {"db/menu/system/time/ntp/ntp_mode",
                                                                  "db/menu/system/time/ntp/server_url"};

constexpr std::array<Category, kCategoryCount> kCategories = {{
    {.value = VXCLONE_FACTORY_SETTINGS,
     .name = "factory",
     .enumerator = "VXCLONE_FACTORY_SETTINGS",
     .words = "factory settings",
     .inBackup = Handling::NotEvaluated,
     .inRestore = Handling::NotEvaluated,
     .holding = Holding::Parts,
     .entry = topOf(vxport::kFactoryFiles.front()),
     .entryBy = EntryBy::Service,
     .parts = vxport::kFactoryFiles,
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_AV_SETTINGS,
     .name = "av",
     .enumerator = "VXCLONE_AV_SETTINGS",
     .words = "picture and sound",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Parts,
     .entry = topOf(vxport::kPictureAndSoundFiles.front()),
     .entryBy = EntryBy::Service,
     .parts = vxport::kPictureAndSoundFiles,
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_HOME_INTERNAL_API_DATA,
     .name = "home-data",
     .enumerator = "VXCLONE_HOME_INTERNAL_API_DATA",
     .words = "home screen data",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Parts,
     .entry = "org.vorta.homedatacontrol-service",
     .entryBy = EntryBy::Library,
     .parts = vxport::kHomeDataFiles,
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_WAS_API_DATA,
     .name = "was",
     .enumerator = "VXCLONE_WAS_API_DATA",
     .words = "web applications",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Parts,
     .entry = topOf(vxport::kWebApplicationFiles.front()),
     .entryBy = EntryBy::Service,
     .parts = vxport::kWebApplicationFiles,
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_VCONF_DATA,
     .name = "settings-keys",
     .enumerator = "VXCLONE_VCONF_DATA",
     .words = "hotel settings",
     .inBackup = Handling::ReadBack,
     .inRestore = Handling::ReadBack,
     .holding = Holding::EachSetting,
     .entry = kSettingsFolder,
     .entryBy = EntryBy::Library,
     .parts = {},
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Stays,
     .need = kNoNeed},
    {.value = VXCLONE_BROADCAST_TVS,
     .name = "channels",
     .enumerator = "VXCLONE_BROADCAST_TVS",
     .words = "channel map",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Parts,
     .entry = "tvs-chms",
     .entryBy = EntryBy::Library,
     .parts = vxport::kChannelFiles,
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_SETTINGS_DATA,
     .name = "settings",
     .enumerator = "VXCLONE_SETTINGS_DATA",
     .words = "menu settings",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Parts,
     .entry = topOf(vxport::kSettingsDataFiles.front()),
     .entryBy = EntryBy::Service,
     .parts = vxport::kSettingsDataFiles,
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_BROADCAST_IPG_DATA,
     .name = "guide",
     .enumerator = "VXCLONE_BROADCAST_IPG_DATA",
     .words = "programme guide",
     .inBackup = Handling::NotInBackup,
     .inRestore = Handling::Silent,
     .holding = Holding::Nothing,
     .entry = "",
     .entryBy = EntryBy::Nobody,
     .parts = {},
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Stays,
     .need = kNoNeed},
    {.value = VXCLONE_VXTV_TIMER_DATA,
     .name = "timers",
     .enumerator = "VXCLONE_VXTV_TIMER_DATA",
     .words = "timers",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Parts,
     .entry = "tvtimer",
     .entryBy = EntryBy::Library,
     .parts = vxport::kTimerFiles,
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = {VXCLONE_BROADCAST_TVS, "a timer names its channel by the number", {}}},
    {.value = VXCLONE_HOSPITALITY_LOGO,
     .name = "boot-logo",
     .enumerator = "VXCLONE_HOSPITALITY_LOGO",
     .words = "boot logo",
     .inBackup = Handling::Added,
     .inRestore = Handling::Reported,
     .holding = Holding::FolderIfThere,
     .entry = "logo",
     .entryBy = EntryBy::Library,
     .parts = {},
     .folder = vx_get_bootlogo_path,
     .removal = Removal::ByNoEntry,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_VXHOTEL_HOMEAPP_DATA,
     .name = "home-menu",
     .enumerator = "VXCLONE_VXHOTEL_HOMEAPP_DATA",
     .words = "home menu files",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Folder,
     .entry = "VXHotel",
     .entryBy = EntryBy::Library,
     .parts = {},
     .folder = vx_get_homemenu_path,
     .removal = Removal::Never,
     .surplus = Surplus::Stays,
     .need = kNoNeed},
    {.value = VXCLONE_VXHOTEL_FIRSTSCREEN_DATA,
     .name = "apps",
     .enumerator = "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA",
     .words = "application data",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::EachApplication,
     .entry = "",
     .entryBy = EntryBy::Nobody,
     .parts = {},
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_VXHOTEL_MBR_LOGO,
     .name = "mbr-logo",
     .enumerator = "VXCLONE_VXHOTEL_MBR_LOGO",
     .words = "set-top-box logo",
     .inBackup = Handling::Added,
     .inRestore = Handling::Reported,
     .holding = Holding::FolderIfThere,
     .entry = "VXMBRLogo",
     .entryBy = EntryBy::Library,
     .parts = {},
     .folder = vx_get_mbrlogo_path,
     .removal = Removal::ByEmptyEntry,
     .surplus = Surplus::Replaced,
     .need = kNoNeed},
    {.value = VXCLONE_VXHOTEL_AMBIENT_APP_DATA,
     .name = "ambient",
     .enumerator = "VXCLONE_VXHOTEL_AMBIENT_APP_DATA",
     .words = "ambient mode",
     .inBackup = Handling::NotInBackup,
     .inRestore = Handling::NotPossible,
     .holding = Holding::Nothing,
     .entry = "",
     .entryBy = EntryBy::Nobody,
     .parts = {},
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Stays,
     .need = kNoNeed},
    {.value = VXCLONE_NTP_SETTINGS_DATA,
     .name = "network-time",
     .enumerator = "VXCLONE_NTP_SETTINGS_DATA",
     .words = "network time",
     .inBackup = Handling::Reported,
     .inRestore = Handling::Reported,
     .holding = Holding::Nothing,
     .entry = "",
     .entryBy = EntryBy::Nobody,
     .parts = {},
     .folder = nullptr,
     .removal = Removal::Never,
     .surplus = Surplus::Stays,
     .need = {VXCLONE_VCONF_DATA, "the values travel there", kNetworkTimeSettings}},
}};

/// A text that holds what the compiler calls the value: its name, or a number in a cast where it has none.
template <VXClone value>
constexpr std::string_view spellingOf() {
    return __PRETTY_FUNCTION__;
}

/// Whether the row stands at its place, with the name that the library's header gives the value.
template <std::size_t index>
constexpr bool isAtItsPlace() {
    const Category& row = kCategories[index];
    return row.value == static_cast<VXClone>(index) &&
           spellingOf<static_cast<VXClone>(index)>().find(row.enumerator) != std::string_view::npos;
}

template <std::size_t... indices>
constexpr bool areAtTheirPlaces(std::index_sequence<indices...> /*all*/) {
    return (isAtItsPlace<indices>() && ...);
}

constexpr bool isBelow(std::string_view path, std::string_view entry) {
    return topOf(path) == entry;
}

/// Whether the columns of the row fit each other.
constexpr bool isConsistent(const Category& row) {
    const bool isFolder = row.holding == Holding::Folder || row.holding == Holding::FolderIfThere;
    return !row.name.empty() && !row.words.empty() && !row.enumerator.empty() &&
           row.entry.empty() == (row.entryBy == EntryBy::Nobody) &&
           (row.holding == Holding::Parts) == !row.parts.empty() && isFolder == (row.folder != nullptr) &&
           (row.removal == Removal::Never || row.folder != nullptr) &&
           (row.need.settings.empty() ||
            (row.need.category == VXCLONE_VCONF_DATA && row.need.category < row.value)) &&
           std::all_of(row.parts.begin(), row.parts.end(),
                       [&row](std::string_view part) { return isBelow(part, row.entry); });
}

static_assert(areAtTheirPlaces(std::make_index_sequence<kCategoryCount>()),
              "the table has one row for each category, in the order of their values");
static_assert(spellingOf<static_cast<VXClone>(kCategoryCount)>().find("VXCLONE_") == std::string_view::npos,
              "the library has a category that the table does not have");
static_assert(std::all_of(kCategories.begin(), kCategories.end(), isConsistent),
              "the columns of a row contradict each other");

}  // namespace

const std::array<Category, kCategoryCount>& categories() {
    return kCategories;
}

}  // namespace vxclone
