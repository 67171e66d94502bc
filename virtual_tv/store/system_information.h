#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>
#include <variant>
#include <vector>

#include "virtual_tv/store/database.h"

namespace vxtv {

/// The model and identity of a television.
struct Identity {
    std::string model;
    std::string productTag;
    int tunerType = 0;
};

/// A configured property of the model: a number or a switch.
struct Feature {
    std::string name;
    std::variant<int, bool> value;
};

/// The television's identity and features, which are fixed when it is created.
///
/// Errors common to all: those of `Database`. Threads and processes: any.
class SystemInformation {
 public:
    explicit SystemInformation(Database& database) : database_(database) {}

    /// Makes the tables and their rows when a television is created.
    static void create(SQLite::Database& connection, const Identity& identity,
                       const std::vector<Feature>& features);

    Result<Identity> identity() const;

    /// All features, sorted by name.
    Result<std::vector<Feature>> features() const;

    /// Errors: UnknownKey, WrongType for a switch.
    Result<int> featureInt(const std::string& name) const;
    /// Errors: UnknownKey, WrongType for a number.
    Result<bool> featureBool(const std::string& name) const;

 private:
    Database& database_;
};

}  // namespace vxtv
