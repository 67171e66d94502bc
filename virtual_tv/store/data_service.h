#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// Things by their names, as a comparison shows them.
using Texts = std::map<std::string, std::string>;

/// What a service gets of the profile that its television is made from.
struct ServiceSection {
    const nlohmann::json& content;
    std::string where;                    ///< the path to the content, for WrongMember
    std::filesystem::path profileFolder;  ///< what relative paths of the profile start from
};

/// A service that owns tables in tv.db.
///
/// It is driven by what creates and compares televisions; its operations stand in a class of its own.
struct DataService {
    std::string_view name;  ///< its member of a profile, and its area in a comparison

    /// Makes the tables and fills them; part of the creation of a television, which a failure undoes. Throws
    /// WrongMember for what a profile may not say, and what the database throws.
    void (*create)(SQLite::Database& connection, const ServiceSection& section);

    /// All that a clone carries of it. Throws what the database throws.
    Texts (*texts)(SQLite::Database& connection);

    /// What else it holds, and keeps when its television takes over a clone; null: nothing. Throws what the
    /// database throws.
    Texts (*keptTexts)(SQLite::Database& connection) = nullptr;

    /// The area of a comparison in which that stands, where a restore may take it away; else empty.
    std::string_view lostArea = {};
};

/// Makes the table of the services that a television has; part of its creation. Throws what the database
/// throws, as the next two do.
void createServiceTable(SQLite::Database& connection);

/// Notes that this television has the service.
void noteDataService(SQLite::Database& connection, std::string_view name);

/// Whether this television has the service.
bool hasDataService(SQLite::Database& connection, std::string_view name);

/// Nothing when this television has the service. Errors: UnknownService.
Result<void> requireDataService(SQLite::Database& connection, std::string_view name);

}  // namespace vxtv
