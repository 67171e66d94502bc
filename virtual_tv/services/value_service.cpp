#include "virtual_tv/services/value_service.h"

#include <fmt/format.h>

#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

Json load(SQLite::Database& connection, const ValueService& service) {
    SQLite::Statement row(connection, "SELECT content FROM service_values WHERE service = ?");
    row.bind(1, std::string(service.name));
    return row.executeStep() ? Json::parse(row.getColumn(0).getString()) : Json::object();
}

void store(SQLite::Database& connection, const ValueService& service, const Json& document) {
    SQLite::Statement row(connection, "INSERT OR REPLACE INTO service_values VALUES (?, ?)");
    row.bind(1, std::string(service.name));
    row.bind(2, document.dump());
    row.exec();
}

}  // namespace

void ServiceValues::create(SQLite::Database& connection, const ValueService& service,
                           const ServiceSection& section) {
    expectShape(section.content, section.where, service.shape, kAllParts);
    connection.exec(
        "CREATE TABLE IF NOT EXISTS service_values (service TEXT NOT NULL PRIMARY KEY, content TEXT NOT "
        "NULL) WITHOUT ROWID");
    store(connection, service, section.content);
}

Texts ServiceValues::texts(SQLite::Database& connection, const ValueService& service, Parts parts) {
    return textsIn(load(connection, service), service.shape, parts);
}

Result<void> ServiceValues::backUp(const fs::path& folder) const {
    return database_
        .read([this](SQLite::Database& connection) -> Result<Json> {
            return requireDataService(connection, service_.name).map([&] {
                return partsOf(load(connection, service_), service_.shape, kTravellingParts);
            });
        })
        .and_then([&](const Json& document) {
            return writeBackupFile(folder / service_.file, service_.name, service_.version, document);
        });
}

Result<Json> ServiceValues::readBackup(const fs::path& file) const {
    Result<Json> document = readBackupFile(file, service_.name, service_.version);
    try {
        if (document) {
            expectShape(*document, "", service_.shape, kTravellingParts);
        }
        return document;
    } catch (const WrongMember& wrong) {
        return failure(ErrorCode::BadBackup, fmt::format("the backup {} cannot be used: \"{}\" {}; make the "
                                                         "backup anew",
                                                         file.string(), wrong.member, wrong.reason));
    }
}

Result<void> ServiceValues::restore(const fs::path& folder, Stage stage) const {
    return readBackup(folder / service_.file).and_then([&](const Json& backup) {
        return database_.write([&](SQLite::Database& connection) -> Result<void> {
            if (const auto present = requireDataService(connection, service_.name); !present) {
                return present;
            }
            Json document = load(connection, service_);
            const auto earlyOf = [this](const Json& whole) {
                return partsOf(whole, service_.shape, {Part::Early});
            };
            if (stage == Stage::Later && earlyOf(document) != earlyOf(backup)) {
                return failure(ErrorCode::TooEarly,
                               fmt::format("the later values of the service {} need its early ones; restore "
                                           "those first",
                                           service_.name));
            }
            document.merge_patch(stage == Stage::Early   ? earlyOf(backup)
                                 : stage == Stage::Later ? partsOf(backup, service_.shape, {Part::Carried})
                                                         : backup);
            store(connection, service_, document);
            return {};
        });
    });
}

}  // namespace vxtv
