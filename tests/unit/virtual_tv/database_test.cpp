#include "virtual_tv/television/database.h"

#include <gtest/gtest.h>

#include <fstream>

#include "test_television.h"

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

TEST_F(DatabaseTest, readOfDamagedPagesIsDamaged) {
    test::makeTelevision(place_);
    overwrite(100, std::string(static_cast<std::size_t>(fs::file_size(place_ / "tv.db")) - 100, '\xAA'));
    const Result<Television> television = Television::open(place_);
    const ErrorCode code = television ? television->settings().list().error().code : television.error().code;
    EXPECT_EQ(ErrorCode::Damaged, code);
}

TEST_F(DatabaseTest, writeWhileAnotherHoldsItIsBusy) {
    const Television television = test::makeTelevision(place_);
    SQLite::Database other((place_ / "tv.db").string(), SQLite::OPEN_READWRITE);
    other.exec("BEGIN IMMEDIATE");
    const Result<void> set = television.settings().set("volume", 1);
    ASSERT_FALSE(set);
    EXPECT_EQ(ErrorCode::Busy, set.error().code);
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

}  // namespace
}  // namespace vxtv
