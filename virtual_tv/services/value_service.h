#pragma once

#include <filesystem>
#include <string_view>

#include "virtual_tv/services/value_shape.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// A service that consists only of values: the rules for them, and the file in which they are saved.
struct ValueService {
    std::string_view name;  ///< as in dataServices()
    std::string_view file;  ///< the name of its backup file
    int version = 1;        ///< of the document in it
    ValueShape shape;
};

/// The part of the values that a restore loads.
enum class Stage { Whole, Early, Later };

/// The values of such a service on a television.
///
/// Errors common to all: UnknownService if the television does not have it, and those of `Database`. Threads
/// and processes: any.
class ServiceValues {
 public:
    ServiceValues(Database& database, const ValueService& service) : database_(database), service_(service) {}

    /// As DataService::create.
    static void create(SQLite::Database& connection, const ValueService& service,
                       const ServiceSection& section);
    /// As DataService::texts, for these parts.
    static Texts texts(SQLite::Database& connection, const ValueService& service, Parts parts);

    /// Writes the cloned values to the service's file in the folder, which must exist. Errors: those of
    /// `writeBackupFile`.
    Result<void> backUp(const std::filesystem::path& folder) const;

    /// Loads the values of the stage from the service's file in the folder: all of them or none. The later
    /// stage requires that the television's early values are those of the file. Errors: those of
    /// `readBackupFile`, BadBackup, TooEarly.
    Result<void> restore(const std::filesystem::path& folder, Stage stage = Stage::Whole) const;

 private:
    Result<nlohmann::json> readBackup(const std::filesystem::path& file) const;

    Database& database_;
    const ValueService& service_;
};

/// The entry in dataServices() for a service of values.
template <const ValueService& (*service)()>
DataService valueDataService() {
    return {service().name,
            [](SQLite::Database& connection, const ServiceSection& section) {
                ServiceValues::create(connection, service(), section);
            },
            [](SQLite::Database& connection) {
                return ServiceValues::texts(connection, service(), kTravellingParts);
            },
            [](SQLite::Database& connection) {
                return ServiceValues::texts(connection, service(), {Part::Kept});
            }};
}

}  // namespace vxtv
