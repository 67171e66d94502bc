#include "virtual_tv/apps/hotel_app/misbehaviour.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace vxtv::hotel {

namespace {

constexpr int kLongestMs = 600'000;

struct Habit {
    std::string_view name;
    bool Misbehaviour::*flag;
};
constexpr std::array kHabits = {
    Habit{"no-reply", &Misbehaviour::noReply},
    Habit{"fail", &Misbehaviour::fail},
    Habit{"wrong-case", &Misbehaviour::wrongCase},
    Habit{"no-entry", &Misbehaviour::noEntry},
    Habit{"crash-in-backup", &Misbehaviour::crashInBackup},
    Habit{"crash-in-restore", &Misbehaviour::crashInRestore},
};

struct Delay {
    std::string_view name;
    int Misbehaviour::*milliseconds;
};
constexpr std::array kDelays = {
    Delay{"late-port", &Misbehaviour::latePortMs},
    Delay{"late-reply", &Misbehaviour::lateReplyMs},
};

bool take(std::string_view text, Misbehaviour& misbehaviour) {
    for (const Habit& habit : kHabits) {
        if (habit.name == text) {
            misbehaviour.*habit.flag = true;
            return true;
        }
    }
    const std::size_t split = std::min(text.find('='), text.size());
    const std::string_view number = text.substr(std::min(split + 1, text.size()));
    for (const Delay& delay : kDelays) {
        if (delay.name == text.substr(0, split)) {
            int& value = misbehaviour.*delay.milliseconds;
            const char* const end = number.data() + number.size();
            const auto [last, error] = std::from_chars(number.data(), end, value);
            return error == std::errc() && last == end && value >= 0 && value <= kLongestMs;
        }
    }
    return false;
}

}  // namespace

Result<Misbehaviour> readMisbehaviour(const std::vector<std::string>& texts) {
    Misbehaviour misbehaviour;
    for (const std::string& text : texts) {
        if (!take(text, misbehaviour)) {
            return failure(ErrorCode::BadArgument, fmt::format("\"{}\" is no misbehaviour; take one of {}",
                                                               text, misbehaviourNames()));
        }
    }
    return misbehaviour;
}

std::string misbehaviourNames() {
    std::string names;
    for (const Delay& delay : kDelays) {
        names += fmt::format("{}=MS, ", delay.name);
    }
    for (const Habit& habit : kHabits) {
        names += fmt::format("{}{}", habit.name, &habit == &kHabits.back() ? "" : ", ");
    }
    return names;
}

}  // namespace vxtv::hotel
