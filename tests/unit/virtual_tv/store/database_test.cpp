#include "virtual_tv/store/database.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <fstream>

#include "tests/support/machine/process.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class DatabaseTest : public testing::Test {
 protected:
    ErrorCode openingFails() const {
        const Result<Television> television = Television::open(place_);
        EXPECT_FALSE(television);
        return television ? ErrorCode::CannotRun : television.error().code;
    }

    void overwrite(std::streamoff offset, const std::string& bytes) const {
        std::fstream file(place_ / "tv.db", std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(offset);
        file << bytes;
    }

    test::TestFolder folder_;
    fs::path place_ = folder_.path() / "tv";
};

TEST_F(DatabaseTest, openOfMissingFolderIsNoTelevision) {
    EXPECT_EQ(ErrorCode::NotATelevision, openingFails());
}

TEST_F(DatabaseTest, openOfOtherFolderIsNoTelevision) {
    fs::create_directory(place_);
    EXPECT_EQ(ErrorCode::NotATelevision, openingFails());
    EXPECT_TRUE(fs::is_empty(place_));
}

TEST_F(DatabaseTest, openOfForeignDatabaseIsNoTelevisionAndTouchesNothing) {
    fs::create_directory(place_);
    SQLite::Database((place_ / "tv.db").string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("CREATE TABLE notes (text)");
    const std::string before = test::readFile(place_ / "tv.db");
    EXPECT_EQ(ErrorCode::NotATelevision, openingFails());
    EXPECT_EQ(before, test::readFile(place_ / "tv.db"));
}

TEST_F(DatabaseTest, openOfEmptyFileIsDamaged) {
    test::makeTelevision(place_);
    fs::resize_file(place_ / "tv.db", 0);
    EXPECT_EQ(ErrorCode::Damaged, openingFails());
}

TEST_F(DatabaseTest, openOfTextIsDamaged) {
    test::makeTelevision(place_);
    test::writeFile(place_ / "tv.db", std::string(4096, 'x'));
    EXPECT_EQ(ErrorCode::Damaged, openingFails());
}

TEST_F(DatabaseTest, openOfNewerDataIsOtherVersion) {
    test::makeTelevision(place_);
    overwrite(60, std::string("\0\0\0\x63", 4));
    EXPECT_EQ(ErrorCode::OtherVersion, openingFails());
}

TEST_F(DatabaseTest, openOfDataFromBeforeTheSecureStorageIsOtherVersion) {
    test::makeTelevision(place_);
    overwrite(60, std::string("\0\0\0\1", 4));
    EXPECT_EQ(ErrorCode::OtherVersion, openingFails());
}

TEST_F(DatabaseTest, openOfSpecialFileDoesNotHang) {
    fs::create_directory(place_);
    fs::create_symlink("/dev/zero", place_ / "tv.db");
    EXPECT_EQ(ErrorCode::NotATelevision, openingFails());
}

TEST_F(DatabaseTest, viewsAndTriggersAreRefusedBeforeTheyRun) {
    const char* const endless =
        "ALTER TABLE settings RENAME TO hidden; CREATE VIEW settings AS WITH RECURSIVE n(x) AS (SELECT 1 "
        "UNION "
        "ALL SELECT x + 1 FROM n) SELECT x AS key FROM n";
    const char* const circular =
        "ALTER TABLE settings RENAME TO hidden; CREATE VIEW settings AS SELECT * FROM settings";
    const char* const trigger = "CREATE TRIGGER t AFTER UPDATE ON settings BEGIN DELETE FROM settings; END";
    for (const char* const statements : {endless, circular, trigger}) {
        fs::remove_all(place_);
        test::makeTelevision(place_);
        SQLite::Database((place_ / "tv.db").string(), SQLite::OPEN_READWRITE).exec(statements);
        const Result<Television> television = Television::open(place_);
        ASSERT_FALSE(television) << statements;
        EXPECT_EQ(ErrorCode::Damaged, television.error().code);
        EXPECT_EQ((place_ / "tv.db").string() +
                      " is damaged (it holds more than tables); remove its folder and create the television "
                      "again",
                  television.error().sentence);
    }
}

TEST_F(DatabaseTest, fileBesideItThatIsALinkOrAPipeIsRefused) {
    test::makeTelevision(place_);
    const fs::path theirs = folder_.path() / "theirs";
    test::writeFile(theirs, "kept");
    for (const char* const ending : {"-wal", "-shm", "-journal"}) {
        const fs::path beside = (place_ / "tv.db").string() + ending;
        for (const bool pipe : {false, true}) {
            fs::remove(beside);
            if (pipe) {
                ASSERT_EQ(0, mkfifo(beside.c_str(), 0600));
            } else {
                fs::create_symlink(theirs, beside);
            }
            const Result<Television> television = Television::open(place_);
            ASSERT_FALSE(television) << beside;
            EXPECT_EQ(beside.string() + " is no plain file; remove it and try again",
                      television.error().sentence);
        }
        fs::remove(beside);
    }
    EXPECT_EQ("kept", test::readFile(theirs));
}

TEST_F(DatabaseTest, televisionWithALinkForAFolderOfItsOwnIsRefused) {
    for (const char* const own : {"opt", "tmp", "media", "log", "run", "secure"}) {
        fs::remove_all(place_);
        test::makeTelevision(place_);
        fs::rename(place_ / own, folder_.path() / own);
        fs::create_directory_symlink(folder_.path() / own, place_ / own);
        const Result<Television> television = Television::open(place_);
        ASSERT_FALSE(television) << own;
        EXPECT_EQ(
            (place_ / own).string() +
                " is a link, and a television's own folder is none; put the folder itself there and try "
                "again",
            television.error().sentence);
    }
}

TEST_F(DatabaseTest, readOfDamagedPagesIsDamaged) {
    test::makeTelevision(place_);
    overwrite(100, std::string(static_cast<std::size_t>(fs::file_size(place_ / "tv.db")) - 100, '\xAA'));
    const Result<Television> television = Television::open(place_);
    const Error error = television ? television->settings().list().error() : television.error();
    EXPECT_EQ(ErrorCode::Damaged, error.code);
    EXPECT_EQ((place_ / "tv.db").string() +
                  ": its content is damaged; remove its folder and create the television again",
              error.sentence);
}

TEST_F(DatabaseTest, tableThatIsMissingIsDamageAndNotToldInTheDatabasesOwnWords) {
    const Television television = test::makeTelevision(place_);
    SQLite::Database((place_ / "tv.db").string(), SQLite::OPEN_READWRITE).exec("DROP TABLE settings");
    const auto listed = television.settings().list();
    ASSERT_FALSE(listed);
    EXPECT_EQ(ErrorCode::Damaged, listed.error().code);
    EXPECT_EQ((place_ / "tv.db").string() +
                  ": a table in it is not as it was made; remove its folder and create the television again",
              listed.error().sentence);
}

TEST_F(DatabaseTest, writeWhileAnotherHoldsItIsBusy) {
    const Television television = test::makeTelevision(place_);
    SQLite::Database other((place_ / "tv.db").string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN IMMEDIATE");
    const Result<void> set = television.settings().set("volume", 1);
    ASSERT_FALSE(set);
    EXPECT_EQ(ErrorCode::Busy, set.error().code);
    EXPECT_EQ((place_ / "tv.db").string() + ": another process uses it; end that process and try again",
              set.error().sentence);
    EXPECT_EQ(12, television.settings().getInt("volume").value());
    other.exec("ROLLBACK");
    EXPECT_TRUE(television.settings().set("volume", 1));
}

TEST_F(DatabaseTest, failedWorkLeavesNoTrace) {
    test::makeTelevision(place_);
    const auto database = Database::open(place_ / "tv.db");
    ASSERT_TRUE(database);
    const Result<void> written = (*database)->write([](SQLite::Database& connection) -> Result<void> {
        connection.exec("DELETE FROM settings");
        return failure(ErrorCode::Io, "no");
    });
    EXPECT_FALSE(written);
    EXPECT_EQ(4U, SettingsStore(**database).list().value().size());
}

/// Makes calls of fcntl on a lock fail, for databases that are opened while it exists.
class FailingLocks {
 public:
    FailingLocks() { put(reinterpret_cast<sqlite3_syscall_ptr>(call)); }
    ~FailingLocks() {
        failNone();
        put(nullptr);
    }
    FailingLocks(const FailingLocks&) = delete;
    FailingLocks& operator=(const FailingLocks&) = delete;

    /// The nth call from now on fails once with `error`.
    static void failAt(int number, int error) {
        error_ = error;
        left_ = number;
    }
    static void failNone() { left_ = 0; }
    /// Whether that call has failed.
    static bool hasFailed() { return left_ <= 0; }

 private:
    static void put(sqlite3_syscall_ptr function) {
        sqlite3_vfs* const files = sqlite3_vfs_find(nullptr);
        files->xSetSystemCall(files, "fcntl", function);
    }
    static int call(int file, int command, ...) {  // NOLINT(cert-dcl50-cpp)
        va_list arguments;
        va_start(arguments, command);
        void* const argument = va_arg(arguments, void*);
        va_end(arguments);
        if (command == F_SETLK && left_ > 0 && --left_ == 0) {
            errno = error_;
            return -1;
        }
        return ::fcntl(file, command, argument);
    }

    static inline std::atomic<int> left_ = 0;
    static inline std::atomic<int> error_ = 0;
};

class DatabaseLocks : public DatabaseTest {
 protected:
    /// For each lock call of a change of a setting: it fails once, and then another process changes the
    /// setting.
    void changeInTurnsWhenEachFails(int error) {
        test::makeTelevision(place_);
        const FailingLocks locks;
        const Result<Television> television = Television::open(place_);
        ASSERT_TRUE(television);
        bool failed = true;
        for (int number = 1; failed; ++number) {
            FailingLocks::failAt(number, error);
            const Result<void> set = television->settings().set("volume", number);
            failed = FailingLocks::hasFailed();
            FailingLocks::failNone();
            EXPECT_TRUE(set) << "call " << number << ": " << (set ? std::string() : set.error().sentence);
            const vxtest::Finished other =
                vxtest::run({{vxtest::vxtvProgram(), "set", place_, "volume", "100"}, {}, {}, {}});
            ASSERT_EQ(other.status, 0) << "call " << number << ": " << other.errors;
            EXPECT_EQ(100, television->settings().getInt("volume").value());
            ++tried_;
        }
    }

    int tried_ = 0;
};

TEST_F(DatabaseLocks, callOnALockThatASignalInterruptsKeepsNobodyOut) {
    changeInTurnsWhenEachFails(EINTR);
    EXPECT_GT(tried_, 4);
}

TEST_F(DatabaseLocks, callOnALockForWhichThereIsNoRoomKeepsNobodyOut) {
    changeInTurnsWhenEachFails(ENOLCK);
    EXPECT_GT(tried_, 4);
}

}  // namespace
}  // namespace vxtv
