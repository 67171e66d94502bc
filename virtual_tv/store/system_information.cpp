#include "virtual_tv/store/system_information.h"

#include <fmt/format.h>

namespace vxtv {

namespace {

Feature featureIn(SQLite::Statement& row) {
    const int value = row.getColumn(2).getInt();
    Feature feature{row.getColumn(0).getString(), value};
    if (row.getColumn(1).getInt() != 0) {
        feature.value = value != 0;
    }
    return feature;
}

template <class Value>
Result<Value> featureValue(Database& database, const std::string& name) {
    return database.read([&name](SQLite::Database& connection) -> Result<Value> {
        SQLite::Statement row(connection, "SELECT name, is_switch, value FROM features WHERE name = ?");
        row.bind(1, name);
        if (!row.executeStep()) {
            return failure(ErrorCode::UnknownKey, fmt::format("this television has no feature {}", name));
        }
        const Feature feature = featureIn(row);
        if (const auto* value = std::get_if<Value>(&feature.value)) {
            return *value;
        }
        return failure(ErrorCode::WrongType, fmt::format("the feature {} is of another type", name));
    });
}

}  // namespace

void SystemInformation::create(SQLite::Database& connection, const Identity& identity,
                               const std::vector<Feature>& features) {
    connection.exec(
        "CREATE TABLE identity (only_row INTEGER PRIMARY KEY CHECK (only_row = 1), model TEXT NOT NULL, "
        "product_tag TEXT NOT NULL, tuner_type INTEGER NOT NULL)");
    SQLite::Statement insertIdentity(connection, "INSERT INTO identity VALUES (1, ?, ?, ?)");
    insertIdentity.bind(1, identity.model);
    insertIdentity.bind(2, identity.productTag);
    insertIdentity.bind(3, identity.tunerType);
    insertIdentity.exec();

    connection.exec(
        "CREATE TABLE features (name TEXT PRIMARY KEY, is_switch INTEGER NOT NULL, value INTEGER NOT NULL) "
        "WITHOUT ROWID");
    SQLite::Statement insertFeature(connection, "INSERT INTO features VALUES (?, ?, ?)");
    for (const Feature& feature : features) {
        const bool isSwitch = std::holds_alternative<bool>(feature.value);
        insertFeature.reset();
        insertFeature.bind(1, feature.name);
        insertFeature.bind(2, isSwitch ? 1 : 0);
        insertFeature.bind(3, std::visit([](auto value) { return static_cast<int>(value); }, feature.value));
        insertFeature.exec();
    }
}

Result<Identity> SystemInformation::identity() const {
    return database_.read([](SQLite::Database& connection) -> Result<Identity> {
        SQLite::Statement row(connection, "SELECT model, product_tag, tuner_type FROM identity");
        if (!row.executeStep()) {
            return failure(ErrorCode::Damaged,
                           "the television has lost its identity; destroy it and create it again");
        }
        return Identity{row.getColumn(0).getString(), row.getColumn(1).getString(),
                        row.getColumn(2).getInt()};
    });
}

Result<std::vector<Feature>> SystemInformation::features() const {
    return database_.read([](SQLite::Database& connection) -> Result<std::vector<Feature>> {
        std::vector<Feature> features;
        SQLite::Statement row(connection, "SELECT name, is_switch, value FROM features ORDER BY name");
        while (row.executeStep()) {
            features.push_back(featureIn(row));
        }
        return features;
    });
}

Result<int> SystemInformation::featureInt(const std::string& name) const {
    return featureValue<int>(database_, name);
}

Result<bool> SystemInformation::featureBool(const std::string& name) const {
    return featureValue<bool>(database_, name);
}

}  // namespace vxtv
