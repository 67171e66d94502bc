#pragma once

#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "platform/source_api.h"
#include "platform/tv_service.h"

struct _bundle_t;

namespace vxtest {

/// A line that the library logged, split into its parts.
struct LogLine {
    int logId = 0;
    int priority = 0;
    std::string tag;       ///< the log tag, "cloneapi"
    std::string source;    ///< base name of the source file
    std::string function;  ///< function name
    int line = 0;          ///< source line
    std::string place;     ///< thread and moment: "tID:...|TICK:..."
    std::string colour;    ///< the escape sequence before the place
    std::string message;   ///< the message, formatted
};

/// The line in the form in which tests write it: "E/35 m_CreateDir: message" with the priority's letter, the
/// colour's number, the function and the message.
std::string described(const LogLine& line);

/// A setting of the scripted store. The alternative is its type; a bool is different from an int.
struct BoolSetting {
    int value = 0;
};
using Setting = std::variant<int, BoolSetting, std::string>;

/// A television that does what the test says and records all calls.
///
/// Every platform call is recorded as text, `name(arguments)` with strings in quotes, in order; log lines are
/// recorded in the same order. By default a call succeeds by its own convention. Threads: may be called from
/// several at the same time.
class ScriptedPlatform {
 public:
    /// The instance behind the platform functions of this process.
    static ScriptedPlatform& instance();
    ~ScriptedPlatform();

    /// Deletes all scripts and records, after replies in progress were delivered.
    void reset();

    // Scripting, for the test.

    /// From its nth call on (1 is the next), the call returns the status instead of doing its work. For calls
    /// that return a pointer, every status means null; for those that return a bool, 0 means false.
    void answer(const std::string& call, int status, int fromNth = 1);
    /// The same only for the nth call.
    void answerOnce(const std::string& call, int status, int nth = 1);
    /// Runs the action when the call is made, before it is answered.
    void onCall(const std::string& call, std::function<void()> action);
    /// Decides about every call by its name and its recorded arguments. Result: the status to return instead
    /// of doing the work, or empty. Called on the calling thread, and may change the script.
    using Judge = std::function<std::optional<int>(const std::string& call, const std::string& arguments)>;
    void onEveryCall(Judge judge);
    void setSetting(const std::string& key, Setting value);
    void eraseSetting(const std::string& key);
    void setModel(std::string model);
    void setProductTag(std::string tag);
    void setTunerType(int tunerType);
    void setFeature(const std::string& name, int value);
    /// Puts an entry into the secure storage, byte for byte.
    void setSecret(const std::string& name, std::string content);
    /// The entries that an installation of a key file adds.
    void setInstalledSecrets(std::map<std::string, std::string> secrets);
    void setDirectories(std::string bootLogo, std::string mbrLogo, std::string homeMenu);
    /// Whether the television can take its time from the network.
    void setTakesNetworkTime(bool takes);
    void setTimezone(int timezone);
    void setSources(std::multimap<int, CSourceItem> sources);
    void setNavigation(std::list<CCNavigationModeInfo> entries);
    /// Whether the application has ports. By default every application has them.
    void setRemotePort(const std::string& app, bool exists);
    /// Whether the application runs. By default it does not run until it is launched.
    void setRunning(const std::string& app, bool runs);
    /// After each message that is sent from now on, the application answers with `reply`, on a thread of its
    /// own. Without a value it never answers.
    void replyToSends(std::optional<std::map<std::string, std::string>> reply);
    /// Runs the callback of the last registered port on the calling thread. Result: whether there is one.
    bool deliver(const std::string& app, const std::map<std::string, std::string>& message);

    // Records of what the library did.

    /// The platform calls, in order, without the log.
    std::vector<std::string> calls() const;
    /// The calls with this name.
    std::vector<std::string> callsOf(const std::string& name) const;
    /// The log lines, in order.
    std::vector<LogLine> log() const;
    /// The messages of the log, in order.
    std::vector<std::string> messages() const;
    /// Calls and log lines of the calling thread in one order, with log lines as `described`.
    std::vector<std::string> transcript() const;
    /// The log lines of all threads, each as `described`.
    std::vector<std::string> describedLog() const;
    /// The number of buffers of the secure storage that were not released.
    int secretsHeld() const;
    /// The number of bundles that were created and not freed.
    int bundlesHeld() const;
    bool hasSetting(const std::string& key) const;
    Setting setting(const std::string& key) const;

    // For the platform functions.

    struct Decision {
        bool forced = false;  ///< answer `status` and do nothing else
        int status = 0;
    };
    Decision decide(const std::string& call, const std::string& arguments);
    void recordLog(LogLine line);
    void startReply(const std::string& app);
    template <class Use>
    auto locked(Use use) {
        const std::lock_guard lock(mutex_);
        return use(state_);
    }

    using Receive = std::function<void(const std::string& app, _bundle_t* message)>;
    struct LocalPort {
        int id = 0;
        Receive receive;
    };
    struct State {
        std::map<std::string, Setting> settings;
        std::map<std::string, int> features;
        std::map<std::string, std::string> secrets;
        std::map<std::string, std::string> installedSecrets;
        int secretsHeld = 0;  ///< buffers handed out and not released
        std::string model;
        std::string productTag;
        int tunerType = 0;
        std::string bootLogo;
        std::string mbrLogo;
        std::string homeMenu;
        bool takesNetworkTime = true;
        int timezone = 0;
        std::multimap<int, CSourceItem> sources;
        std::list<CCNavigationModeInfo> navigation;
        int bundlesHeld = 0;
        std::set<std::string> running;                ///< the applications that run
        std::map<std::string, bool> remotePorts;      ///< by application: whether it has them
        std::map<std::string, LocalPort> localPorts;  ///< by name
        std::string newestPort;                       ///< the name that was registered last
        std::optional<std::map<std::string, std::string>> reply;
    };

 private:
    struct Rule {
        std::string call;
        int status = 0;
        int fromNth = 1;
        bool once = false;
        int seen = 0;
    };
    struct Event {
        bool isLog = false;
        std::string call;
        std::string name;
        LogLine line;
        std::thread::id thread = std::this_thread::get_id();
    };

    void finishReplies();

    mutable std::mutex mutex_;
    State state_;
    std::vector<Rule> rules_;
    std::multimap<std::string, std::function<void()>> actions_;
    Judge judge_;
    std::vector<Event> events_;
    std::vector<std::thread> replies_;
};

}  // namespace vxtest
