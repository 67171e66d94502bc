#include "expected_verdict.h"

#include <utility>

namespace vxtest {

namespace {

constexpr int kCategories = 15;
constexpr int kPortChecks = 11;
constexpr const char* kProgress = "db/hotel/clone_progress";
constexpr const char* kResults = "db/hotel/clone_result";

/// The reports of each direction, after the applications.
const std::vector<std::string> kBackupOrder = {
    "VXCLONE_FACTORY_SETTINGS", "VXCLONE_AV_SETTINGS",          "VXCLONE_HOME_INTERNAL_API_DATA",
    "VXCLONE_WAS_API_DATA",     "VXCLONE_BROADCAST_TVS",        "VXCLONE_SETTINGS_DATA",
    "VXCLONE_VXTV_TIMER_DATA",  "VXCLONE_VXHOTEL_HOMEAPP_DATA", "VXCLONE_NTP_SETTINGS_DATA"};
const std::vector<std::string> kRestoreOrder = {
    "VXCLONE_FACTORY_SETTINGS", "VXCLONE_AV_SETTINGS",      "VXCLONE_HOME_INTERNAL_API_DATA",
    "VXCLONE_WAS_API_DATA",     "VXCLONE_BROADCAST_TVS",    "VXCLONE_SETTINGS_DATA",
    "VXCLONE_VXTV_TIMER_DATA",  "VXCLONE_HOSPITALITY_LOGO", "VXCLONE_VXHOTEL_HOMEAPP_DATA",
    "VXCLONE_VXHOTEL_MBR_LOGO", "VXCLONE_NTP_SETTINGS_DATA"};

/// The first text in quotes.
std::string keyIn(const std::string& arguments) {
    const std::size_t begin = arguments.find('"') + 1;
    return arguments.substr(begin, arguments.find('"', begin) - begin);
}

}  // namespace

ExpectedVerdict::ExpectedVerdict(Direction direction, std::string stale)
    : direction_(direction), before_(std::move(stale)), failed_{"VXCLONE_FACTORY_SETTINGS"} {}

void ExpectedVerdict::called(const std::string& call, const std::string& arguments,
                             std::optional<int> status) {
    const CallRule* const rule = findRule(direction_, call, arguments);
    if (rule == nullptr) {
        unknown_.push_back(call + "(" + arguments + ")");
        return;
    }
    follow(call, arguments, !status);
    if (status && rule->isFailure(*status)) {
        apply(*rule, arguments, *status);
    } else if (status && rule->effect == Effect::SettingLost) {
        emptySettings_.insert(keyIn(arguments));
    }
}

void ExpectedVerdict::follow(const std::string& call, const std::string& arguments, bool done) {
    if (call == "message_port_register_local_port") {
        ++exchange_;
        portRegistered_ |= done;
    } else if (call == "vconf_set_int" && keyIn(arguments) == kProgress) {
        ++progressWrites_;
        progress_ = done ? 100 * progressWrites_ / kCategories : progress_;
    } else if (call == "vconf_set_str" && arguments == "\"" + std::string(kResults) + "\", \"\"") {
        before_ = done ? "" : before_;
    } else if (keyIn(arguments) == kResults) {
        // An entry is lost if the list cannot be read, or then cannot be written.
        reports_ += call == "vconf_get_str" ? 1U : 0U;
        if (!done) {
            lostReports_.insert(reports_ - 1);
        }
    }
}

void ExpectedVerdict::listBecomes(std::string content) {
    before_ = std::move(content);
    firstEntry_ = reports_;
}

void ExpectedVerdict::apply(const CallRule& rule, const std::string& arguments, int status) {
    switch (rule.effect) {
        case Effect::None:
            break;
        case Effect::Failed:
            failed_.insert(rule.category);
            break;
        case Effect::NoNetwork:
            missing_.insert({"VXCLONE_HOME_INTERNAL_API_DATA", "VXCLONE_WAS_API_DATA"});
            break;
        case Effect::NoApplication:
            --applications_;
            break;
        case Effect::ExchangeFailed:
            failedExchanges_.insert(exchange_);
            break;
        case Effect::NoPort:
            if (status < 0 || !portRegistered_) {
                failedExchanges_.insert(exchange_);
            }
            break;
        case Effect::PortUnseen:
            if (++unseenPorts_[exchange_] == kPortChecks) {
                failedExchanges_.insert(exchange_);
            }
            break;
        case Effect::SettingLost:
            lostSettings_.insert(keyIn(arguments));
            break;
    }
}

std::vector<std::string> ExpectedVerdict::entries() const {
    std::vector<std::string> entries;
    for (int each = 0; each < applications_; ++each) {
        entries.push_back(std::string("VXCLONE_VXHOTEL_FIRSTSCREEN_DATA") +
                          (failedExchanges_.count(each) != 0 ? "-FAIL\n" : "-SUCCESS\n"));
    }
    for (const std::string& category : direction_ == Direction::Backup ? kBackupOrder : kRestoreOrder) {
        if (missing_.count(category) == 0) {
            entries.push_back(category + (failed_.count(category) != 0 ? "-FAIL\n" : "-SUCCESS\n"));
        }
    }
    return entries;
}

std::string ExpectedVerdict::results() const {
    std::string text = before_;
    const std::vector<std::string> all = entries();
    for (std::size_t each = firstEntry_; each < all.size(); ++each) {
        text += lostReports_.count(each) != 0 ? "" : all[each];
    }
    return text;
}

}  // namespace vxtest
