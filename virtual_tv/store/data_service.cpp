#include "virtual_tv/store/data_service.h"

#include <fmt/format.h>

namespace vxtv {

void createServiceTable(SQLite::Database& connection) {
    connection.exec("CREATE TABLE services (name TEXT NOT NULL PRIMARY KEY) WITHOUT ROWID");
}

void noteDataService(SQLite::Database& connection, std::string_view name) {
    SQLite::Statement note(connection, "INSERT INTO services (name) VALUES (?)");
    note.bind(1, std::string(name));
    note.exec();
}

bool hasDataService(SQLite::Database& connection, std::string_view name) {
    SQLite::Statement row(connection, "SELECT 1 FROM services WHERE name = ?");
    row.bind(1, std::string(name));
    return row.executeStep();
}

Result<void> requireDataService(SQLite::Database& connection, std::string_view name) {
    if (hasDataService(connection, name)) {
        return {};
    }
    return failure(ErrorCode::UnknownService,
                   fmt::format("this television has no service \"{}\"; its profile gave it none", name));
}

}  // namespace vxtv
