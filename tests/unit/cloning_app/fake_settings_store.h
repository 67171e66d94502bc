#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <variant>

/// The setting that holds the PIN.
inline constexpr const char* kPinSetting = "db/vxhotel/securitymode/changepin";
/// The setting that holds the alarm's volume, a number.
inline constexpr const char* kVolume = "db/vxmenu/system/Alarm/Volume";

/// The settings store of these tests, behind the platform's own six functions. Threads: any.
class FakeSettingsStore {
 public:
    struct Bool {
        bool value;
    };
    using Value = std::variant<int, Bool, std::string>;

    /// The instance of the process.
    static FakeSettingsStore& instance();

    /// Resets to the factory state: only the two keys of a run.
    void reset();
    void set(const std::string& key, Value value);
    std::optional<Value> get(const std::string& key);
    /// From now on writing the key fails.
    void refuseWriting(const std::string& key);
    bool write(const std::string& key, Value value);

 private:
    std::mutex mutex_;
    std::map<std::string, Value> values_;
    std::set<std::string> refused_;
};
