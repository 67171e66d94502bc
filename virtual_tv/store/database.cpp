#include "virtual_tv/store/database.h"

#include <fmt/format.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "common/plain_reason.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/base/sealing.h"
#include "virtual_tv/store/database_reason.h"
#include "virtual_tv/store/steady_locks.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kApplicationId = 0x76785456;  // "vxTV"
constexpr std::uint32_t kDatabaseVersion = 3;         // 3: televisions whose services own data
constexpr int kBusyTimeoutMs = 5000;
constexpr const char* kStartAnew = "remove its folder and create the television again";

// The file header of the SQLite format: magic text, then big-endian numbers at fixed offsets.
constexpr std::size_t kDatabaseHeaderSize = 100;
constexpr std::string_view kHeaderMagic("SQLite format 3\0", 16);
constexpr std::size_t kDatabaseVersionOffset = 60;
constexpr std::size_t kApplicationIdOffset = 68;
using Header = std::array<char, kDatabaseHeaderSize>;

std::uint32_t numberAt(const Header& header, std::size_t offset) {
    return fromBigEndian(std::string_view(header.data(), header.size()).substr(offset));
}

tl::unexpected<Error> damagedDatabase(const fs::path& file, std::string_view why) {
    return failure(ErrorCode::Damaged, fmt::format("{} is damaged ({}); {}", file.string(), why, kStartAnew));
}

/// The header; empty if the file cannot be opened (errno has the reason) or is too short.
std::optional<Header> readHeader(const fs::path& file) {
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    Header header{};
    return stream.read(header.data(), kDatabaseHeaderSize) ? std::optional<Header>(header) : std::nullopt;
}

Result<void> judgeHeader(const fs::path& file, const Header& header) {
    if (std::string_view(header.data(), kHeaderMagic.size()) != kHeaderMagic) {
        return damagedDatabase(file, "it is no database");
    }
    if (numberAt(header, kApplicationIdOffset) != kApplicationId) {
        return failure(ErrorCode::NotATelevision,
                       fmt::format("{} is not a television: its tv.db belongs to another program; name a "
                                   "folder made by `vxtv create`",
                                   file.parent_path().string()));
    }
    const std::uint32_t version = numberAt(header, kDatabaseVersionOffset);
    if (version != kDatabaseVersion) {
        return failure(ErrorCode::OtherVersion,
                       fmt::format("{} was made by another version of vxtv (data version {}, this one knows "
                                   "{}); use that version, or destroy the television and create it again",
                                   file.parent_path().string(), version, kDatabaseVersion));
    }
    return {};
}

struct Failing {
    int sqliteCode;
    ErrorCode code;
    const char* advice;
};

constexpr std::array kFailings = {
    Failing{SQLITE_BUSY, ErrorCode::Busy, "end that process and try again"},
    Failing{SQLITE_LOCKED, ErrorCode::Busy, "end that process and try again"},
    Failing{SQLITE_FULL, ErrorCode::NoSpace, "make room on the disk and try again"},
    Failing{SQLITE_CORRUPT, ErrorCode::Damaged, kStartAnew},
    Failing{SQLITE_NOTADB, ErrorCode::Damaged, kStartAnew},
    Failing{SQLITE_ERROR, ErrorCode::Damaged, kStartAnew},
};
constexpr Failing kOtherFailing = {0, ErrorCode::Io,
                                   "check that the folder may be written and its disk is sound"};

/// Whether the limit of the file size prevents writing the database or the files beside it.
bool meetsFileSizeLimit(const fs::path& file) {
    constexpr std::uintmax_t kSharedIndexBytes = 32U << 10U;  // of the file that SQLite calls -shm, at least
    if (fileMayNotGrow(kSharedIndexBytes - 1)) {
        return true;
    }
    for (const char* const ending : {"", "-wal", "-journal", "-shm"}) {
        std::error_code missing;
        const std::uintmax_t bytes = fs::file_size(file.string() + ending, missing);
        if (!missing && fileMayNotGrow(bytes)) {
            return true;
        }
    }
    return false;
}

Error errorOf(const fs::path& file, const SQLite::Exception& exception) {
    const Failing* failing = &kOtherFailing;
    for (const Failing& candidate : kFailings) {
        if (candidate.sqliteCode == exception.getErrorCode()) {
            failing = &candidate;
        }
    }
    const bool limited = exception.getErrorCode() == SQLITE_IOERR && meetsFileSizeLimit(file);
    return {failing->code, fmt::format("{}: {}; {}", file.string(),
                                       limited ? std::strerror(EFBIG) : databaseReason(exception),
                                       limited ? kRaiseFileSizeLimit : failing->advice)};
}

/// The files beside the database, with pending changes, must be safe to open, too.
Result<void> checkBeside(const fs::path& file) {
    for (const char* const ending : {"-wal", "-shm", "-journal"}) {
        const fs::path beside = file.string() + ending;
        std::error_code error;
        const fs::file_status status = fs::symlink_status(beside, error);
        if (fs::exists(status) && !fs::is_regular_file(status)) {
            return failure(ErrorCode::Damaged,
                           fmt::format("{} is no plain file; remove it and try again", beside.string()));
        }
    }
    return {};
}

/// A view or a trigger runs when somebody uses the table of its name, and it may run endlessly.
bool holdsTablesAlone(SQLite::Database& connection) {
    connection.exec("PRAGMA trusted_schema = OFF");
    return connection
               .execAndGet(
                   "SELECT count(*) FROM sqlite_master WHERE type NOT IN ('table', 'index') OR sql "
                   "LIKE 'CREATE VIRTUAL%'")
               .getInt() == 0;
}

}  // namespace

Result<void> Database::identify(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(file, error);
    if (!fs::is_regular_file(status)) {
        if (error && status.type() != fs::file_type::not_found) {
            return failure(ErrorCode::Io,
                           fmt::format("{} cannot be looked at: {}", file.string(), error.message()));
        }
        const fs::path folder = file.parent_path();
        if (fs::is_directory(folder, error)) {
            return failure(
                ErrorCode::NotATelevision,
                fmt::format("{} is not a television: it holds no tv.db; name a folder made by `vxtv create`",
                            folder.string()));
        }
        return failure(ErrorCode::NotATelevision,
                       fmt::format("there is no television {0}; make it with: vxtv create {0} --profile NAME",
                                   folder.string()));
    }
    const std::optional<Header> header = readHeader(file);
    if (!header && errno == EACCES) {
        return failure(ErrorCode::Io, fmt::format("{} cannot be opened: {}; check who may read it",
                                                  file.string(), std::strerror(errno)));
    }
    return header ? judgeHeader(file, *header) : damagedDatabase(file, "it is too short");
}

bool Database::isOurs(const fs::path& file) {
    std::error_code error;
    const bool regular = fs::is_regular_file(fs::symlink_status(file, error));
    const std::optional<Header> header = regular ? readHeader(file) : std::nullopt;
    return header && numberAt(*header, kApplicationIdOffset) == kApplicationId;
}

Result<std::unique_ptr<Database>> Database::open(const fs::path& file) {
    return identify(file)
        .and_then([&file] { return checkBeside(file); })
        .and_then([&file]() -> Result<std::unique_ptr<Database>> {
            try {
                auto database = std::unique_ptr<Database>(new Database(file, SQLite::OPEN_READWRITE));
                if (!holdsTablesAlone(*database->connection_)) {
                    return damagedDatabase(file, "it holds more than tables");
                }
                return database;
            } catch (const SQLite::Exception& exception) {
                return tl::make_unexpected(errorOf(file, exception));
            }
        });
}

Result<std::unique_ptr<Database>> Database::create(const fs::path& file) {
    try {
        auto database =
            std::unique_ptr<Database>(new Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE));
        SQLite::Database& connection = *database->connection_;
        connection.exec("PRAGMA journal_mode = WAL");
        connection.exec(fmt::format("PRAGMA application_id = {}", kApplicationId));
        connection.exec(fmt::format("PRAGMA user_version = {}", kDatabaseVersion));
        return database;
    } catch (const SQLite::Exception& exception) {
        return tl::make_unexpected(errorOf(file, exception));
    }
}

Database::Database(const fs::path& file, int openFlags)
    : file_(file),
      owner_(getpid()),
      connection_(std::make_unique<SQLite::Database>(file.string(), openFlags, kBusyTimeoutMs)) {
    makeLocksSteady();
    connection_->exec("PRAGMA synchronous = NORMAL");
}

Database::~Database() {
    if (isForked()) {
        // Intended leak: closing it here would drop files that the parent process still uses.
        static_cast<void>(connection_.release());
    }
}

bool Database::isForked() const {
    return getpid() != owner_;
}

Error Database::forkedError() const {
    return {ErrorCode::Io,
            fmt::format("{} was opened before this process was forked; open it anew in a program "
                        "that the child starts",
                        file_.string())};
}

Error Database::describe(const SQLite::Exception& exception) const {
    return errorOf(file_, exception);
}

Error Database::describe(const std::exception& exception) const {
    if (dynamic_cast<const nlohmann::json::exception*>(&exception) != nullptr) {
        return damagedDatabase(file_, "a text in it is no JSON, or not of its form").value();
    }
    return {ErrorCode::Io,
            fmt::format("{}: {}; try again, and create the television again if that does not help",
                        file_.string(), vxcommon::plainReason(exception))};
}

Database::WriteTransaction::WriteTransaction(SQLite::Database& connection) : connection_(connection) {
    connection_.exec("BEGIN IMMEDIATE");
}

void Database::WriteTransaction::commit() {
    connection_.exec("COMMIT");
    open_ = false;
}

Database::WriteTransaction::~WriteTransaction() {
    if (open_) {
        // If an error, such as a full disk, has ended the transaction already, this fails and may be ignored.
        connection_.tryExec("ROLLBACK");
    }
}

}  // namespace vxtv
