#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>
#include <variant>
#include <vector>

#include "virtual_tv/store/database.h"

namespace vxtv {

enum class SettingType { Int, Bool, String };

/// A setting's value. The alternatives are in the order of `SettingType`.
using SettingValue = std::variant<int, bool, std::string>;

/// "int", "bool" or "string".
const char* nameOf(SettingType type);
SettingType typeOf(const SettingValue& value);

struct Setting {
    std::string key;
    SettingValue value;
    bool isStatus = false;  ///< holds the state of a run and is not cloned
};

/// The settings of a television. Keys and their types are fixed when the television is created.
///
/// Errors common to all: UnknownKey, WrongType, and those of `Database`. Threads and processes: any.
class SettingsStore {
 public:
    explicit SettingsStore(Database& database) : database_(database) {}

    /// Makes the table and its rows when a television is created.
    static void create(SQLite::Database& connection, const std::vector<Setting>& settings);

    Result<int> getInt(const std::string& key) const;
    Result<bool> getBool(const std::string& key) const;
    Result<std::string> getString(const std::string& key) const;
    Result<Setting> get(const std::string& key) const;

    /// All settings, sorted by key.
    Result<std::vector<Setting>> list() const;

    /// Stores the value if the key has its type. Errors: OutOfRange for a string that contains a NUL.
    Result<void> set(const std::string& key, const SettingValue& value);

    /// Stores a bool that is given as a number. Errors: OutOfRange unless it is 0 or 1.
    Result<void> setBool(const std::string& key, int value);

 private:
    Database& database_;
};

}  // namespace vxtv
