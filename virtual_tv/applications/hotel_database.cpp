#include "virtual_tv/applications/hotel_database.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <array>
#include <string_view>

#include "virtual_tv/store/database_reason.h"

namespace vxtv::hotel {

namespace fs = std::filesystem;

namespace {

constexpr int kFileMark = 0x4854417a;  // tells our databases from other files of SQLite
constexpr int kVersion = 1;
constexpr int kBusyTimeoutMs = 2000;

struct Table {
    std::string_view name;
    std::string_view statement;
};

constexpr std::array kTables = {
    Table{"cards",
          "CREATE TABLE cards (number INTEGER PRIMARY KEY, title TEXT NOT NULL, body TEXT NOT NULL, "
          "picture TEXT NOT NULL, openings INTEGER NOT NULL)"},
    Table{"greetings",
          "CREATE TABLE greetings (language TEXT NOT NULL PRIMARY KEY, text TEXT NOT NULL) WITHOUT ROWID"},
};

tl::unexpected<Error> broken(const fs::path& file, std::string_view why) {
    return failure(ErrorCode::DamagedBackup,
                   fmt::format("the database {} is damaged: {}; make the backup anew", file.string(), why));
}

tl::unexpected<Error> failed(const fs::path& file, const SQLite::Exception& exception) {
    if (exception.getErrorCode() == SQLITE_NOTADB || exception.getErrorCode() == SQLITE_CORRUPT) {
        return broken(file, databaseReason(exception));
    }
    const bool full = exception.getErrorCode() == SQLITE_FULL;
    return failure(full ? ErrorCode::NoSpace : ErrorCode::Io,
                   fmt::format("{}: {}; {}", file.string(), databaseReason(exception),
                               full ? "make room on the disk and try again"
                                    : "check that it is there and its folder may be written"));
}

void fill(SQLite::Database& database, const Content& content) {
    for (const Table& table : kTables) {
        database.exec(std::string(table.statement));
    }
    SQLite::Statement greeting(database, "INSERT INTO greetings (language, text) VALUES (?, ?)");
    for (const auto& [language, text] : content.greetings) {
        greeting.bind(1, language);
        greeting.bind(2, text);
        greeting.exec();
        greeting.reset();
    }
    SQLite::Statement card(database,
                           "INSERT INTO cards (title, body, picture, openings) VALUES (?, ?, ?, ?)");
    for (const Card& it : content.cards) {
        card.bind(1, it.title);
        card.bind(2, it.body);
        card.bind(3, it.picture);
        card.bind(4, it.openings);
        card.exec();
        card.reset();
    }
}

/// The file may only contain what we defined. A view or a trigger would run in the process that reads the
/// database.
bool hasOurForm(SQLite::Database& database) {
    SQLite::Statement rows(database, "SELECT type, name, sql FROM sqlite_master ORDER BY name");
    for (const Table& table : kTables) {
        const bool isOurs = rows.executeStep() && rows.getColumn(0).getString() == "table" &&
                            rows.getColumn(1).getString() == table.name &&
                            rows.getColumn(2).getString() == table.statement;
        if (!isOurs) {
            return false;
        }
    }
    return !rows.executeStep();
}

Result<void> check(SQLite::Database& database, const fs::path& file) {
    database.exec("PRAGMA trusted_schema = OFF");
    if (database.execAndGet("PRAGMA application_id").getInt() != kFileMark) {
        return broken(file, "it is another program's");
    }
    const int version = database.execAndGet("PRAGMA user_version").getInt();
    if (version != kVersion) {
        return failure(ErrorCode::OtherVersion,
                       fmt::format("the database {} is of version {}, and this application knows {}; use the "
                                   "same version on both televisions",
                                   file.string(), version, kVersion));
    }
    if (!hasOurForm(database)) {
        return broken(file, "its tables are others");
    }
    const std::string verdict = database.execAndGet("PRAGMA integrity_check(1)").getString();
    return verdict == "ok" ? Result<void>() : broken(file, "its content is damaged");
}

}  // namespace

Result<void> createDatabase(const fs::path& file, const Content& content) {
    try {
        SQLite::Database database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec("PRAGMA synchronous = OFF");
        database.exec("PRAGMA journal_mode = MEMORY");
        SQLite::Transaction transaction(database);
        database.exec(fmt::format("PRAGMA application_id = {}", kFileMark));
        database.exec(fmt::format("PRAGMA user_version = {}", kVersion));
        fill(database, content);
        transaction.commit();
        return {};
    } catch (const SQLite::Exception& exception) {
        return failed(file, exception);
    }
}

Result<void> snapshotDatabase(const fs::path& file, const fs::path& copy) {
    try {
        SQLite::Database database(file.string(), SQLite::OPEN_READWRITE, kBusyTimeoutMs);
        if (const auto checked = check(database, file); !checked) {
            return checked;
        }
        SQLite::Statement vacuum(database, "VACUUM INTO ?");
        vacuum.bind(1, copy.string());
        vacuum.exec();
        // SQLite counts copies in this field. Setting it back makes the bytes equal for equal contents.
        SQLite::Database(copy.string(), SQLite::OPEN_READWRITE).exec("PRAGMA schema_version = 1");
        return {};
    } catch (const SQLite::Exception& exception) {
        return failed(file, exception);
    }
}

Result<void> checkDatabase(const fs::path& file) {
    try {
        SQLite::Database database(file.string(), SQLite::OPEN_READONLY);
        return check(database, file);
    } catch (const SQLite::Exception& exception) {
        return broken(file, databaseReason(exception));
    }
}

}  // namespace vxtv::hotel
