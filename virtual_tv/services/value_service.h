#pragma once

#include <filesystem>
#include <string_view>

#include "virtual_tv/services/value_shape.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// A service that is nothing but values: what they may be, and the file by which they travel.
struct ValueService {
    std::string_view name;  ///< as in dataServices()
    std::string_view file;  ///< the name of its backup file
    int version = 1;        ///< of the document in it
    ValueShape shape;
};

/// What a restore brings back.
enum class Stage { Whole, Early, Later };

/// The values that a television holds of such a service.
///
/// Errors common to all: UnknownService when the television does not have it, and those of `Database`.
/// Threads and processes: any.
class ServiceValues {
 public:
    ServiceValues(Database& database, const ValueService& service) : database_(database), service_(service) {}

    /// As DataService::create.
    static void create(SQLite::Database& connection, const ValueService& service,
                       const ServiceSection& section);
    /// As DataService::texts, of these parts.
    static Texts texts(SQLite::Database& connection, const ValueService& service, Parts parts);

    /// Writes the values that travel to the service's file in the folder, which must be there. Errors: those
    /// of `writeBackupFile`.
    Result<void> backUp(const std::filesystem::path& folder) const;

    /// Takes the values over from the service's file in the folder: all of the stage or none. The later stage
    /// is for a television whose early values are those of the file. Errors: those of `readBackupFile`,
    /// BadBackup, TooEarly.
    Result<void> restore(const std::filesystem::path& folder, Stage stage = Stage::Whole) const;

 private:
    Result<nlohmann::json> readBackup(const std::filesystem::path& file) const;

    Database& database_;
    const ValueService& service_;
};

/// The entry of dataServices() for a service of values.
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
