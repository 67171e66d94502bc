#include "cloning_app/run/category.h"

#include <algorithm>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr auto kReported = Handling::Reported;
constexpr auto kNotInBackup = Handling::NotInBackup;

constexpr std::array<Category, kCategoryCount> kCategories = {{
    {VXCLONE_FACTORY_SETTINGS, "factory", "VXCLONE_FACTORY_SETTINGS", "factory settings",
     Handling::NotEvaluated, Handling::NotEvaluated, ""},
    {VXCLONE_AV_SETTINGS, "av", "VXCLONE_AV_SETTINGS", "picture and sound", kReported, kReported, ""},
    {VXCLONE_HOME_INTERNAL_API_DATA, "home-data", "VXCLONE_HOME_INTERNAL_API_DATA", "home screen data",
     kReported, kReported, ""},
    {VXCLONE_WAS_API_DATA, "was", "VXCLONE_WAS_API_DATA", "web applications", kReported, kReported, ""},
    {VXCLONE_VCONF_DATA, "settings-keys", "VXCLONE_VCONF_DATA", "hotel settings", Handling::ReadBack,
     Handling::ReadBack, ""},
    {VXCLONE_BROADCAST_TVS, "channels", "VXCLONE_BROADCAST_TVS", "channel map", kReported, kReported,
     "tvs-chms/tvs-chms.zip"},
    {VXCLONE_SETTINGS_DATA, "settings", "VXCLONE_SETTINGS_DATA", "menu settings", kReported, kReported, ""},
    {VXCLONE_BROADCAST_IPG_DATA, "guide", "VXCLONE_BROADCAST_IPG_DATA", "programme guide", kNotInBackup,
     Handling::Silent, ""},
    {VXCLONE_VXTV_TIMER_DATA, "timers", "VXCLONE_VXTV_TIMER_DATA", "timers", kReported, kReported, ""},
    {VXCLONE_HOSPITALITY_LOGO, "boot-logo", "VXCLONE_HOSPITALITY_LOGO", "boot logo", Handling::Added,
     kReported, "logo"},
    {VXCLONE_VXHOTEL_HOMEAPP_DATA, "home-menu", "VXCLONE_VXHOTEL_HOMEAPP_DATA", "home menu files", kReported,
     kReported, ""},
    {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, "apps", "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA", "application data",
     kReported, kReported, ""},
    {VXCLONE_VXHOTEL_MBR_LOGO, "mbr-logo", "VXCLONE_VXHOTEL_MBR_LOGO", "set-top-box logo", Handling::Added,
     kReported, "VXMBRLogo"},
    {VXCLONE_VXHOTEL_AMBIENT_APP_DATA, "ambient", "VXCLONE_VXHOTEL_AMBIENT_APP_DATA", "ambient mode",
     kNotInBackup, Handling::NotPossible, ""},
    {VXCLONE_NTP_SETTINGS_DATA, "network-time", "VXCLONE_NTP_SETTINGS_DATA", "network time", kReported,
     kReported, ""},
}};

std::optional<VXClone> categoryTyped(std::string_view name) {
    for (const Category& category : kCategories) {
        if (name == category.name || name == category.enumerator) {
            return category.value;
        }
    }
    return std::nullopt;
}

tl::unexpected<Error> unknownCategory(std::string_view name) {
    std::string names;
    for (const Category& category : kCategories) {
        names += " " + std::string(category.name);
    }
    return failure(ErrorCode::UnknownCategory,
                   "there is no category \"" + vxcommon::printable(name) + "\"; choose from:" + names);
}

}  // namespace

const std::array<Category, kCategoryCount>& categories() {
    return kCategories;
}

const Category& categoryOf(VXClone value) {
    return kCategories.at(static_cast<std::size_t>(value));
}

Handling handlingOf(const Category& category, Direction direction) {
    return direction == Direction::Backup ? category.inBackup : category.inRestore;
}

std::optional<VXClone> categoryNamed(std::string_view enumerator) {
    for (const Category& category : kCategories) {
        if (enumerator == category.enumerator) {
            return category.value;
        }
    }
    return std::nullopt;
}

std::vector<VXClone> allCategories() {
    std::vector<VXClone> values;
    for (const Category& category : kCategories) {
        values.push_back(category.value);
    }
    return values;
}

bool isLoaded(const Category& category) {
    return category.inRestore != Handling::Silent && category.inRestore != Handling::NotPossible;
}

Result<std::vector<VXClone>> parseCategories(std::string_view list) {
    std::vector<VXClone> values;
    for (bool more = true; more;) {
        const std::size_t comma = list.find(',');
        const std::string_view name = list.substr(0, comma);
        const auto value = categoryTyped(name);
        if (!value) {
            return unknownCategory(name);
        }
        values.push_back(*value);
        more = comma != std::string_view::npos;
        list.remove_prefix(more ? comma + 1 : list.size());
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

}  // namespace vxclone
