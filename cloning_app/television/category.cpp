#include "cloning_app/television/category.h"

#include <algorithm>
#include <string>

#include "cloning_app/package/layout.h"
#include "common/suggestion.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr auto kReported = Handling::Reported;
constexpr auto kNotInBackup = Handling::NotInBackup;

/// The names of the files are those that the services of this platform give them.
constexpr std::array<Category, kCategoryCount> kCategories = {{
    {VXCLONE_FACTORY_SETTINGS,
     "factory",
     "VXCLONE_FACTORY_SETTINGS",
     "factory settings",
     Handling::NotEvaluated,
     Handling::NotEvaluated,
     Holding::Parts,
     "factory.backup",
     {"factory.backup"}},
    {VXCLONE_AV_SETTINGS,
     "av",
     "VXCLONE_AV_SETTINGS",
     "picture and sound",
     kReported,
     kReported,
     Holding::Parts,
     "picture-and-sound.backup",
     {"picture-and-sound.backup"}},
    {VXCLONE_HOME_INTERNAL_API_DATA,
     "home-data",
     "VXCLONE_HOME_INTERNAL_API_DATA",
     "home screen data",
     kReported,
     kReported,
     Holding::Parts,
     "org.vorta.homedatacontrol-service",
     {"org.vorta.homedatacontrol-service"}},
    {VXCLONE_WAS_API_DATA,
     "was",
     "VXCLONE_WAS_API_DATA",
     "web applications",
     kReported,
     kReported,
     Holding::Parts,
     "web-applications.backup",
     {"web-applications.backup"}},
    {VXCLONE_VCONF_DATA,
     "settings-keys",
     "VXCLONE_VCONF_DATA",
     "hotel settings",
     Handling::ReadBack,
     Handling::ReadBack,
     Holding::EachSetting,
     kSettingsFolder,
     {}},
    {VXCLONE_BROADCAST_TVS,
     "channels",
     "VXCLONE_BROADCAST_TVS",
     "channel map",
     kReported,
     kReported,
     Holding::Parts,
     "tvs-chms",
     {"tvs-chms/tvs-chms.zip", "tvs-chms/hotel-channels.backup"}},
    {VXCLONE_SETTINGS_DATA,
     "settings",
     "VXCLONE_SETTINGS_DATA",
     "menu settings",
     kReported,
     kReported,
     Holding::Parts,
     "settings-data.backup",
     {"settings-data.backup"}},
    {VXCLONE_BROADCAST_IPG_DATA,
     "guide",
     "VXCLONE_BROADCAST_IPG_DATA",
     "programme guide",
     kNotInBackup,
     Handling::Silent,
     Holding::Nothing,
     "",
     {}},
    {VXCLONE_VXTV_TIMER_DATA,
     "timers",
     "VXCLONE_VXTV_TIMER_DATA",
     "timers",
     kReported,
     kReported,
     Holding::Parts,
     "tvtimer",
     {"tvtimer"}},
    {VXCLONE_HOSPITALITY_LOGO,
     "boot-logo",
     "VXCLONE_HOSPITALITY_LOGO",
     "boot logo",
     Handling::Added,
     kReported,
     Holding::FolderIfThere,
     "logo",
     {}},
    {VXCLONE_VXHOTEL_HOMEAPP_DATA,
     "home-menu",
     "VXCLONE_VXHOTEL_HOMEAPP_DATA",
     "home menu files",
     kReported,
     kReported,
     Holding::Folder,
     "VXHotel",
     {}},
    {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA,
     "apps",
     "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA",
     "application data",
     kReported,
     kReported,
     Holding::EachApplication,
     "",
     {}},
    {VXCLONE_VXHOTEL_MBR_LOGO,
     "mbr-logo",
     "VXCLONE_VXHOTEL_MBR_LOGO",
     "set-top-box logo",
     Handling::Added,
     kReported,
     Holding::FolderIfThere,
     "VXMBRLogo",
     {}},
    {VXCLONE_VXHOTEL_AMBIENT_APP_DATA,
     "ambient",
     "VXCLONE_VXHOTEL_AMBIENT_APP_DATA",
     "ambient mode",
     kNotInBackup,
     Handling::NotPossible,
     Holding::Nothing,
     "",
     {}},
    {VXCLONE_NTP_SETTINGS_DATA,
     "network-time",
     "VXCLONE_NTP_SETTINGS_DATA",
     "network time",
     kReported,
     kReported,
     Holding::Nothing,
     "",
     {}},
}};

constexpr bool isInTheOrderOfTheValues() {
    for (std::size_t index = 0; index < kCategories.size(); ++index) {
        if (kCategories[index].value != static_cast<VXClone>(index)) {
            return false;
        }
    }
    return true;
}

static_assert(isInTheOrderOfTheValues(), "the table has one row for each category, in their order");

std::optional<VXClone> categoryTyped(std::string_view name) {
    const std::string typed = vxcommon::inSmallLetters(name);
    for (const Category& category : kCategories) {
        if (typed == category.name || typed == vxcommon::inSmallLetters(category.enumerator)) {
            return category.value;
        }
    }
    return std::nullopt;
}

tl::unexpected<Error> unknownCategory(std::string_view name) {
    std::vector<std::string> names;
    std::string list;
    for (const Category& category : kCategories) {
        names.emplace_back(category.name);
        list += " " + names.back();
    }
    const std::string question = vxcommon::didYouMean(name, names);
    return failure(ErrorCode::UnknownCategory,
                   "there is no category \"" + vxcommon::printable(name) + "\"; " +
                       (question.empty() ? "choose from:" : question + " Choose from:") + list);
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

std::optional<VXClone> categoryOfEntry(std::string_view entry) {
    for (const Category& category : kCategories) {
        if (!entry.empty() && entry == category.entry) {
            return category.value;
        }
    }
    return std::nullopt;
}

std::optional<VXClone> categoryCalled(std::string_view name) {
    for (const Category& category : kCategories) {
        if (name == category.name) {
            return category.value;
        }
    }
    return std::nullopt;
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

std::vector<std::string_view> namesInList(std::string_view list) {
    constexpr std::string_view kBlanks = " \t";
    std::vector<std::string_view> names;
    for (bool more = !list.empty(); more;) {
        const std::size_t comma = list.find(',');
        std::string_view name = list.substr(0, comma);
        name.remove_prefix(std::min(name.find_first_not_of(kBlanks), name.size()));
        name = name.substr(0, name.find_last_not_of(kBlanks) + 1);
        names.push_back(name);
        more = comma != std::string_view::npos;
        list.remove_prefix(more ? comma + 1 : list.size());
    }
    return names;
}

Result<std::vector<VXClone>> parseCategories(std::string_view list) {
    std::vector<VXClone> values;
    const std::vector<std::string_view> names = namesInList(list);
    if (names.empty()) {
        return unknownCategory("");
    }
    for (const std::string_view name : names) {
        const auto value = categoryTyped(name);
        if (!value) {
            return unknownCategory(name);
        }
        values.push_back(*value);
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

}  // namespace vxclone
