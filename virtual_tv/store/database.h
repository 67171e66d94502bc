#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <sys/types.h>

#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// The file with all data of the television's services.
///
/// Threads: any; one operation at a time in a process. Processes: any number; a write waits up to five
/// seconds for the others, then fails with Busy. A committed write survives the death of its process. After a
/// fork, the child's object refuses every operation.
class Database {
 public:
    /// Errors: NotATelevision, Damaged, OtherVersion, Busy, Io. A foreign file is never written to.
    static Result<std::unique_ptr<Database>> open(const std::filesystem::path& file);

    /// Makes the file without any table. The file must not exist.
    static Result<std::unique_ptr<Database>> create(const std::filesystem::path& file);

    /// Checks the file's kind without opening it as a database: success, or one of NotATelevision, Damaged,
    /// OtherVersion and Io.
    static Result<void> identify(const std::filesystem::path& file);

    /// Whether the file belongs to a television, even if it is damaged or of another version.
    static bool isOurs(const std::filesystem::path& file);

    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// Calls `work(connection)`, which returns a Result, and returns its result. An exception of the database
    /// becomes an error.
    template <class Work>
    auto read(Work&& work) -> std::invoke_result_t<Work, SQLite::Database&>;

    /// The same as one transaction, which is committed if the work succeeds and rolled back if it fails.
    template <class Work>
    auto write(Work&& work) -> std::invoke_result_t<Work, SQLite::Database&>;

 private:
    Database(const std::filesystem::path& file, int openFlags);

    class WriteTransaction {
     public:
        explicit WriteTransaction(SQLite::Database& connection);
        ~WriteTransaction();
        WriteTransaction(const WriteTransaction&) = delete;
        WriteTransaction& operator=(const WriteTransaction&) = delete;
        void commit();

     private:
        SQLite::Database& connection_;
        bool open_ = true;
    };

    Error describe(const SQLite::Exception& exception) const;
    Error describe(const std::exception& exception) const;
    bool isForked() const;
    Error forkedError() const;

    std::filesystem::path file_;
    pid_t owner_;
    std::mutex mutex_;
    std::unique_ptr<SQLite::Database> connection_;
};

template <class Work>
auto Database::read(Work&& work) -> std::invoke_result_t<Work, SQLite::Database&> {
    if (isForked()) {
        return tl::make_unexpected(forkedError());
    }
    const std::lock_guard lock(mutex_);
    try {
        return std::forward<Work>(work)(*connection_);
    } catch (const SQLite::Exception& exception) {
        return tl::make_unexpected(describe(exception));
    } catch (const std::exception& exception) {
        return tl::make_unexpected(describe(exception));
    }
}

template <class Work>
auto Database::write(Work&& work) -> std::invoke_result_t<Work, SQLite::Database&> {
    return read([&work](SQLite::Database& connection) {
        WriteTransaction transaction(connection);
        auto result = std::forward<Work>(work)(connection);
        if (result) {
            transaction.commit();
        }
        return result;
    });
}

}  // namespace vxtv
