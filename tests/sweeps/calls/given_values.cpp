#include "given_values.h"

#include <algorithm>
#include <array>
#include <climits>

namespace vxtest {

namespace {

constexpr std::size_t kHugeText = 1 << 20;
constexpr int kManyEntries = 100;
constexpr const char* kReportKey = "db/hotel/clone_result";

std::string keyOf(const MadeCall& call) {
    return call.arguments.size() < 2 ? "" : call.arguments.substr(1, call.arguments.size() - 2);
}

std::string text(Given kind) {
    return kind == Given::Huge ? std::string(kHugeText, 'x') : "";
}

int number(Given kind) {
    return kind == Given::Least ? INT_MIN : INT_MAX;
}

std::optional<int> giveText(SweptRun& run, const MadeCall& call, Given kind) {
    run.setFromOutside(keyOf(call), text(kind));
    if (keyOf(call) == kReportKey) {
        run.verdict().listBecomes(text(kind));
    }
    return std::nullopt;
}

std::optional<int> giveNumber(SweptRun& run, const MadeCall& call, Given kind) {
    run.setFromOutside(keyOf(call), number(kind));
    return std::nullopt;
}

std::optional<int> giveFlag(SweptRun& run, const MadeCall& call, Given kind) {
    run.setFromOutside(keyOf(call), BoolSetting{number(kind)});
    return std::nullopt;
}

std::optional<int> giveFeature(SweptRun& run, const MadeCall& call, Given kind) {
    run.television().setFeature(keyOf(call), number(kind));
    return std::nullopt;
}

std::optional<int> giveZone(SweptRun& run, const MadeCall&, Given kind) {
    run.television().setTimezone(number(kind));
    return std::nullopt;
}

/// Without a directory, the pictures of a package cannot be loaded. The home menu is a success even then.
std::optional<int> giveDirectory(SweptRun& run, const MadeCall& call, Given kind) {
    const auto given = [&](const char* name, const char* usual) {
        return call.name == name ? text(kind) : usual;
    };
    run.television().setDirectories(given("vx_get_bootlogo_path", kBootLogo),
                                    given("vx_get_mbrlogo_path", kMbrLogo),
                                    given("vx_get_homemenu_path", kHomeMenu));
    if (call.name != "vx_get_homemenu_path") {
        const bool isBootLogo = call.name == "vx_get_bootlogo_path";
        run.verdict().fail(isBootLogo ? "VXCLONE_HOSPITALITY_LOGO" : "VXCLONE_VXHOTEL_MBR_LOGO");
    }
    return std::nullopt;
}

std::optional<int> giveSources(SweptRun& run, const MadeCall&, Given kind) {
    std::multimap<int, CSourceItem> sources;
    for (int each = 0; kind == Given::Huge && each < kManyEntries; ++each) {
        sources.insert({each, {text(kind), each, each % 2}});
    }
    run.television().setSources(sources);
    return std::nullopt;
}

std::optional<int> giveNavigation(SweptRun& run, const MadeCall&, Given kind) {
    const std::size_t count = kind == Given::Huge ? kManyEntries : 0;
    run.television().setNavigation(std::list<CCNavigationModeInfo>(count, {11, 7, {"name"}, 0, 0}));
    return std::nullopt;
}

/// A key of another type cannot be read: the store itself reports that.
std::optional<int> giveWrongType(SweptRun& run, const MadeCall& call, Given) {
    const bool isText = call.name == "vconf_get_str";
    run.setFromOutside(keyOf(call), isText ? Setting(1) : Setting(std::string("text")));
    run.verdict().called(call.name, call.arguments, -1);
    return std::nullopt;
}

struct Giver {
    const char* call;
    std::array<Given, 2> kinds;
    std::optional<int> (*give)(SweptRun& run, const MadeCall& call, Given kind);
};

constexpr std::array kTexts = {Given::Empty, Given::Huge};
constexpr std::array kNumbers = {Given::Least, Given::Most};
constexpr std::array kWrong = {Given::WrongType, Given::WrongType};

constexpr Giver kGivers[] = {
    {"vconf_get_str", kTexts, giveText},
    {"vconf_get_int", kNumbers, giveNumber},
    {"vconf_get_bool", kNumbers, giveFlag},
    {"vconf_get_str", kWrong, giveWrongType},
    {"vconf_get_int", kWrong, giveWrongType},
    {"vconf_get_bool", kWrong, giveWrongType},
    {"system_info_get_custom_int", kNumbers, giveFeature},
    {"nsVXSystemInfoAPI::GetCurrentTimezone", kNumbers, giveZone},
    {"vx_get_bootlogo_path", kTexts, giveDirectory},
    {"vx_get_mbrlogo_path", kTexts, giveDirectory},
    {"vx_get_homemenu_path", kTexts, giveDirectory},
    {"CSourceAPI::GetSourceList", kTexts, giveSources},
    {"CCCategoryUtil::GetNavigationList", kTexts, giveNavigation},
};

const Giver* findGiver(const MadeCall& call, Given kind) {
    const auto* const found = std::find_if(std::begin(kGivers), std::end(kGivers), [&](const Giver& giver) {
        return call.name == giver.call && (giver.kinds[0] == kind || giver.kinds[1] == kind);
    });
    return found == std::end(kGivers) ? nullptr : found;
}

}  // namespace

bool canGive(Direction direction, const MadeCall& call, Given kind) {
    // A result list that is not a text cannot be compared, and an empty home directory would be the root of
    // the disk.
    const bool isList = kind == Given::WrongType && keyOf(call) == kReportKey;
    const bool isRoot =
        kind == Given::Empty && direction == Direction::Restore && call.name == "vx_get_homemenu_path";
    return !isList && !isRoot && findGiver(call, kind) != nullptr;
}

std::optional<int> give(SweptRun& run, const MadeCall& call, Given kind) {
    return findGiver(call, kind)->give(run, call, kind);
}

}  // namespace vxtest
