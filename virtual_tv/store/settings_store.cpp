#include "virtual_tv/store/settings_store.h"

#include <fmt/format.h>

#include <array>
#include <limits>
#include <optional>
#include <string_view>

namespace vxtv {

namespace {

constexpr std::array kTypeNames = {"int", "bool", "string"};
static_assert(kTypeNames.size() == static_cast<std::size_t>(SettingType::String) + 1);

std::optional<SettingType> typeNamed(std::string_view name) {
    for (std::size_t i = 0; i < kTypeNames.size(); ++i) {
        if (name == kTypeNames.at(i)) {
            return static_cast<SettingType>(i);
        }
    }
    return std::nullopt;
}

std::optional<SettingValue> valueIn(SettingType type, SQLite::Column column) {
    if (type == SettingType::String) {
        return column.isText() ? std::optional<SettingValue>(column.getString()) : std::nullopt;
    }
    if (!column.isInteger()) {
        return std::nullopt;
    }
    const long long number = column.getInt64();
    if (type == SettingType::Bool) {
        return number == 0 || number == 1 ? std::optional<SettingValue>(number == 1) : std::nullopt;
    }
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
        return std::nullopt;
    }
    return static_cast<int>(number);
}

Result<Setting> settingIn(SQLite::Statement& row) {
    const std::string key = row.getColumn(0).getString();
    const std::optional<SettingType> type = typeNamed(row.getColumn(1).getText());
    const std::optional<SettingValue> value = type ? valueIn(*type, row.getColumn(2)) : std::nullopt;
    if (!value) {
        return failure(ErrorCode::Damaged,
                       fmt::format("the setting {} is damaged: its value does not fit its type; destroy this "
                                   "television and create it again",
                                   key));
    }
    return Setting{key, *value, row.getColumn(3).getInt() != 0};
}

void bindValue(SQLite::Statement& statement, int index, const SettingValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        statement.bind(index, *text);
    } else if (const auto* number = std::get_if<int>(&value)) {
        statement.bind(index, *number);
    } else {
        statement.bind(index, std::get<bool>(value) ? 1 : 0);
    }
}

Result<Setting> find(SQLite::Database& connection, const std::string& key) {
    SQLite::Statement row(connection, "SELECT key, type, value, is_status FROM settings WHERE key = ?");
    row.bind(1, key);
    if (!row.executeStep()) {
        return failure(
            ErrorCode::UnknownKey,
            fmt::format("this television has no setting {}; `vxtv settings` lists those it has", key));
    }
    return settingIn(row);
}

tl::unexpected<Error> wrongType(const Setting& setting, SettingType wanted) {
    return failure(ErrorCode::WrongType, fmt::format("the setting {} is of the type {}, not {}", setting.key,
                                                     nameOf(typeOf(setting.value)), nameOf(wanted)));
}

template <class Value>
Result<Value> as(const Result<Setting>& setting, SettingType type) {
    VX_RETURN_IF_FAILED(setting);
    if (const auto* value = std::get_if<Value>(&setting->value)) {
        return *value;
    }
    return wrongType(*setting, type);
}

}  // namespace

const char* nameOf(SettingType type) {
    return kTypeNames.at(static_cast<std::size_t>(type));
}

SettingType typeOf(const SettingValue& value) {
    return static_cast<SettingType>(value.index());
}

void SettingsStore::create(SQLite::Database& connection, const std::vector<Setting>& settings) {
    connection.exec(
        "CREATE TABLE settings (key TEXT PRIMARY KEY, type TEXT NOT NULL, value NOT NULL, "
        "is_status INTEGER NOT NULL) WITHOUT ROWID");
    SQLite::Statement insert(connection, "INSERT INTO settings VALUES (?, ?, ?, ?)");
    for (const Setting& setting : settings) {
        insert.reset();
        insert.bind(1, setting.key);
        insert.bind(2, nameOf(typeOf(setting.value)));
        bindValue(insert, 3, setting.value);
        insert.bind(4, setting.isStatus ? 1 : 0);
        insert.exec();
    }
}

Result<int> SettingsStore::getInt(const std::string& key) const {
    return as<int>(get(key), SettingType::Int);
}

Result<bool> SettingsStore::getBool(const std::string& key) const {
    return as<bool>(get(key), SettingType::Bool);
}

Result<std::string> SettingsStore::getString(const std::string& key) const {
    return as<std::string>(get(key), SettingType::String);
}

Result<Setting> SettingsStore::get(const std::string& key) const {
    return database_.read([&key](SQLite::Database& connection) { return find(connection, key); });
}

Result<std::vector<Setting>> SettingsStore::list() const {
    return database_.read([](SQLite::Database& connection) -> Result<std::vector<Setting>> {
        std::vector<Setting> settings;
        SQLite::Statement row(connection, "SELECT key, type, value, is_status FROM settings ORDER BY key");
        while (row.executeStep()) {
            Result<Setting> setting = settingIn(row);
            VX_RETURN_IF_FAILED(setting);
            settings.push_back(std::move(*setting));
        }
        return settings;
    });
}

Result<void> SettingsStore::set(const std::string& key, const SettingValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text != nullptr && text->find('\0') != std::string::npos) {
        return failure(ErrorCode::OutOfRange,
                       fmt::format("the value for {} holds a NUL, which no setting can", key));
    }
    return database_.write([&key, &value](SQLite::Database& connection) -> Result<void> {
        const Result<Setting> present = find(connection, key);
        VX_RETURN_IF_FAILED(present);
        if (typeOf(present->value) != typeOf(value)) {
            return wrongType(*present, typeOf(value));
        }
        SQLite::Statement update(connection, "UPDATE settings SET value = ? WHERE key = ?");
        bindValue(update, 1, value);
        update.bind(2, key);
        update.exec();
        return {};
    });
}

Result<void> SettingsStore::setBool(const std::string& key, int value) {
    if (value != 0 && value != 1) {
        return failure(ErrorCode::OutOfRange,
                       fmt::format("{} does not fit {}: a bool is 0 or 1", value, key));
    }
    return set(key, value == 1);
}

}  // namespace vxtv
