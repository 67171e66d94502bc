#include "tests/support/scripted/scripted_platform.h"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/dlog.h"

namespace vxtest {

std::string described(const LogLine& line) {
    const std::map<int, std::string> letters = {
        {DLOG_DEBUG, "D"}, {DLOG_INFO, "I"}, {DLOG_ERROR, "E"}, {DLOG_FATAL, "F"}};
    constexpr std::string_view kColourStart = "\x1b[0;";
    const bool coloured = line.colour.rfind(kColourStart, 0) == 0 && line.colour.back() == 'm';
    const std::string number =
        coloured ? line.colour.substr(kColourStart.size(), line.colour.size() - kColourStart.size() - 1)
                 : "?";
    return letters.at(line.priority) + "/" + number + " " + line.function + ": " + line.message;
}

ScriptedPlatform& ScriptedPlatform::instance() {
    static ScriptedPlatform platform;
    return platform;
}

ScriptedPlatform::~ScriptedPlatform() {
    finishReplies();
}

void ScriptedPlatform::reset() {
    finishReplies();
    const std::lock_guard lock(mutex_);
    state_ = {};
    rules_.clear();
    actions_.clear();
    judge_ = {};
    events_.clear();
}

void ScriptedPlatform::finishReplies() {
    std::vector<std::thread> replies;
    {
        const std::lock_guard lock(mutex_);
        state_.reply.reset();
        replies.swap(replies_);
    }
    for (std::thread& reply : replies) {
        reply.join();
    }
}

void ScriptedPlatform::answer(const std::string& call, int status, int fromNth) {
    const std::lock_guard lock(mutex_);
    rules_.push_back({call, status, fromNth, false, 0});
}

void ScriptedPlatform::answerOnce(const std::string& call, int status, int nth) {
    const std::lock_guard lock(mutex_);
    rules_.push_back({call, status, nth, true, 0});
}

void ScriptedPlatform::onCall(const std::string& call, std::function<void()> action) {
    const std::lock_guard lock(mutex_);
    actions_.emplace(call, std::move(action));
}

void ScriptedPlatform::onEveryCall(Judge judge) {
    const std::lock_guard lock(mutex_);
    judge_ = std::move(judge);
}

void ScriptedPlatform::setSetting(const std::string& key, Setting value) {
    const std::lock_guard lock(mutex_);
    state_.settings[key] = std::move(value);
}

void ScriptedPlatform::eraseSetting(const std::string& key) {
    const std::lock_guard lock(mutex_);
    state_.settings.erase(key);
}

void ScriptedPlatform::setModel(std::string model) {
    const std::lock_guard lock(mutex_);
    state_.model = std::move(model);
}

void ScriptedPlatform::setProductTag(std::string tag) {
    const std::lock_guard lock(mutex_);
    state_.productTag = std::move(tag);
}

void ScriptedPlatform::setTunerType(int tunerType) {
    const std::lock_guard lock(mutex_);
    state_.tunerType = tunerType;
}

void ScriptedPlatform::setFeature(const std::string& name, int value) {
    const std::lock_guard lock(mutex_);
    state_.features[name] = value;
}

void ScriptedPlatform::setSecret(const std::string& name, std::string content) {
    const std::lock_guard lock(mutex_);
    state_.secrets[name] = std::move(content);
}

void ScriptedPlatform::setInstalledSecrets(std::map<std::string, std::string> secrets) {
    const std::lock_guard lock(mutex_);
    state_.installedSecrets = std::move(secrets);
}

void ScriptedPlatform::setTakesNetworkTime(bool takes) {
    const std::lock_guard lock(mutex_);
    state_.takesNetworkTime = takes;
}

void ScriptedPlatform::setTimezone(int timezone) {
    const std::lock_guard lock(mutex_);
    state_.timezone = timezone;
}

void ScriptedPlatform::setSources(std::multimap<int, CSourceItem> sources) {
    const std::lock_guard lock(mutex_);
    state_.sources = std::move(sources);
}

void ScriptedPlatform::setNavigation(std::list<CCNavigationModeInfo> entries) {
    const std::lock_guard lock(mutex_);
    state_.navigation = std::move(entries);
}

void ScriptedPlatform::setRemotePort(const std::string& app, bool exists) {
    const std::lock_guard lock(mutex_);
    state_.remotePorts[app] = exists;
}

void ScriptedPlatform::setRunning(const std::string& app, bool runs) {
    const std::lock_guard lock(mutex_);
    if (runs) {
        state_.running.insert(app);
    } else {
        state_.running.erase(app);
    }
}

void ScriptedPlatform::replyToSends(std::optional<std::map<std::string, std::string>> reply) {
    const std::lock_guard lock(mutex_);
    state_.reply = std::move(reply);
}

int ScriptedPlatform::bundlesHeld() const {
    const std::lock_guard lock(mutex_);
    return state_.bundlesHeld;
}

int ScriptedPlatform::secretsHeld() const {
    const std::lock_guard lock(mutex_);
    return state_.secretsHeld;
}

void ScriptedPlatform::setDirectories(std::string bootLogo, std::string mbrLogo, std::string homeMenu) {
    const std::lock_guard lock(mutex_);
    state_.bootLogo = std::move(bootLogo);
    state_.mbrLogo = std::move(mbrLogo);
    state_.homeMenu = std::move(homeMenu);
}

std::vector<std::string> ScriptedPlatform::calls() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> result;
    for (const Event& event : events_) {
        if (!event.isLog) {
            result.push_back(event.call);
        }
    }
    return result;
}

std::vector<std::string> ScriptedPlatform::callsOf(const std::string& name) const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> result;
    for (const Event& event : events_) {
        if (!event.isLog && event.name == name) {
            result.push_back(event.call);
        }
    }
    return result;
}

std::vector<LogLine> ScriptedPlatform::log() const {
    const std::lock_guard lock(mutex_);
    std::vector<LogLine> result;
    for (const Event& event : events_) {
        if (event.isLog) {
            result.push_back(event.line);
        }
    }
    return result;
}

std::vector<std::string> ScriptedPlatform::messages() const {
    std::vector<std::string> result;
    for (const LogLine& line : log()) {
        result.push_back(line.message);
    }
    return result;
}

std::vector<std::string> ScriptedPlatform::transcript() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> result;
    for (const Event& event : events_) {
        if (event.thread == std::this_thread::get_id()) {
            result.push_back(event.isLog ? described(event.line) : event.call);
        }
    }
    return result;
}

std::vector<std::string> ScriptedPlatform::describedLog() const {
    std::vector<std::string> result;
    for (const LogLine& line : log()) {
        result.push_back(described(line));
    }
    return result;
}

bool ScriptedPlatform::hasSetting(const std::string& key) const {
    const std::lock_guard lock(mutex_);
    return state_.settings.count(key) != 0;
}

Setting ScriptedPlatform::setting(const std::string& key) const {
    const std::lock_guard lock(mutex_);
    const auto found = state_.settings.find(key);
    if (found == state_.settings.end()) {
        throw std::out_of_range("no setting " + key);
    }
    return found->second;
}

ScriptedPlatform::Decision ScriptedPlatform::decide(const std::string& call, const std::string& arguments) {
    std::vector<std::function<void()>> actions;
    Judge judge;
    Decision decision;
    {
        const std::lock_guard lock(mutex_);
        events_.push_back({false, call + "(" + arguments + ")", call, {}});
        const auto [first, last] = actions_.equal_range(call);
        for (auto action = first; action != last; ++action) {
            actions.push_back(action->second);
        }
        judge = judge_;
        for (Rule& rule : rules_) {
            if (rule.call != call) {
                continue;
            }
            ++rule.seen;
            if (rule.once ? rule.seen == rule.fromNth : rule.seen >= rule.fromNth) {
                decision = {true, rule.status};
            }
        }
    }
    for (const auto& action : actions) {
        action();
    }
    if (const std::optional<int> judged = judge ? judge(call, arguments) : std::nullopt) {
        decision = {true, *judged};
    }
    return decision;
}

void ScriptedPlatform::recordLog(LogLine line) {
    const std::lock_guard lock(mutex_);
    events_.push_back({true, {}, {}, std::move(line)});
}

}  // namespace vxtest
