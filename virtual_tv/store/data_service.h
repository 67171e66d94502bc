#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// Named texts, as a comparison shows them.
using Texts = std::map<std::string, std::string>;

/// The part of the profile for one service of a new television.
struct ServiceSection {
    const nlohmann::json& content;
    std::string where;                    ///< the path of the content, for WrongMember
    std::filesystem::path profileFolder;  ///< the base of relative paths in the profile
};

/// A service that owns tables in tv.db.
///
/// The functions here are for creating and comparing televisions. The operations of the service are in a
/// class of its own.
struct DataService {
    std::string_view name;  ///< its member of a profile, and its area in a comparison

    /// Makes the tables and fills them when a television is created; a failure undoes the creation. Throws
    /// WrongMember for an invalid profile, and what the database throws.
    void (*create)(SQLite::Database& connection, const ServiceSection& section);

    /// All data of the service that is cloned. Throws what the database throws.
    Texts (*texts)(SQLite::Database& connection);

    /// All other data, which stays when the television is restored from a clone; null if there is none.
    /// Throws what the database throws.
    Texts (*keptTexts)(SQLite::Database& connection) = nullptr;

    /// The area of a comparison for that data, if a restore may remove it; otherwise empty.
    std::string_view lostArea = {};
};

/// Makes the table of a television's services when the television is created. This function and the next two
/// throw what the database throws.
void createServiceTable(SQLite::Database& connection);

/// Records that this television has the service.
void noteDataService(SQLite::Database& connection, std::string_view name);

/// Whether this television has the service.
bool hasDataService(SQLite::Database& connection, std::string_view name);

/// Succeeds if this television has the service. Errors: UnknownService.
Result<void> requireDataService(SQLite::Database& connection, std::string_view name);

}  // namespace vxtv
