#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include "tests/support/machine/file_tree.h"
#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/applications/hotel_database.h"
#include "virtual_tv/apps/hotel_app/data_package.h"
#include "virtual_tv/apps/hotel_app/misbehaviour.h"
#include "virtual_tv/apps/hotel_app/package_index.h"

namespace vxtv::hotel {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* kId = "org.example.hotel";

class HotelPackageTest : public testing::Test {
 protected:
    HotelPackageTest() {
        makeData("first", "one");
        makeData("second", "two");
        fs::create_directory(where_);
    }

    void makeData(const std::string& name, const std::string& word) {
        const fs::path data = place_.path() / name / "data";
        fs::create_directories(data / kPicturesName);
        test::writeFile(data / kPicturesName / (word + ".png"), "picture " + word);
        ASSERT_TRUE(
            createDatabase(data / kDatabaseName, {{{"en", word}}, {{word, "body", word + ".png", 3}}}));
    }

    Result<void> backUp(const Halfway& halfway = [] {}) { return writePackage(first_, where_, kId, halfway); }
    Result<void> restore(const Halfway& halfway = [] {}) {
        return loadPackage(second_, where_, kId, halfway);
    }

    /// The error of a restore, which must leave the data unchanged and nothing beside it.
    ErrorCode refused() {
        const auto before = vxtest::snapshot(place_.path() / "second");
        const auto loaded = restore();
        EXPECT_FALSE(loaded);
        EXPECT_EQ(before, vxtest::snapshot(place_.path() / "second"));
        sentence_ = loaded ? "" : loaded.error().sentence;
        return loaded ? ErrorCode::Io : loaded.error().code;
    }

    void changeIndex(const std::function<void(Json&)>& change) const {
        Json index = Json::parse(test::readFile(package_ / kIndexName));
        change(index);
        test::writeFile(package_ / kIndexName, index.dump());
    }

    /// Replaces the database by other bytes, and updates the index.
    void replaceDatabase(const std::string& bytes) const {
        test::writeFile(package_ / kDatabaseName, bytes);
        const IndexEntry entry = describe(kDatabaseName, bytes);
        changeIndex([&entry](Json& index) {
            for (Json& file : index["files"]) {
                if (file["name"] == kDatabaseName) {
                    file["size"] = entry.size;
                    file["sha256"] = entry.sha256;
                }
            }
        });
    }

    test::TestFolder place_;
    std::string sentence_;  ///< of the latest refusal
    DataFolder first_{place_.path() / "first"};
    DataFolder second_{place_.path() / "second"};
    fs::path where_ = place_.path() / "clone";
    fs::path package_ = where_ / kId;
};

TEST_F(HotelPackageTest, restoreOfABackupBringsRowsAndPictures) {
    ASSERT_TRUE(backUp());
    const auto loaded = restore();
    ASSERT_TRUE(loaded) << loaded.error().sentence;
    EXPECT_EQ("picture one", test::readFile(second_.path() / kPicturesName / "one.png"));
    EXPECT_FALSE(fs::exists(second_.path() / kPicturesName / "two.png"));
    EXPECT_EQ(test::readFile(package_ / kDatabaseName), test::readFile(second_.path() / kDatabaseName));
    EXPECT_FALSE(fs::exists(second_.staging()));
}

TEST_F(HotelPackageTest, backupOfWhatWasRestoredIsTheSameByteForByte) {
    ASSERT_TRUE(backUp());
    const std::string before = test::readFile(where_ / kId / "hotel.db");
    ASSERT_TRUE(restore());
    ASSERT_TRUE(writePackage(second_, where_, kId, [] {}));
    EXPECT_EQ(test::readFile(where_ / kId / "hotel.db"), before);
}

TEST_F(HotelPackageTest, secondBackupReplacesTheFirst) {
    ASSERT_TRUE(backUp());
    fs::remove(first_.path() / kPicturesName / "one.png");
    ASSERT_TRUE(backUp());
    EXPECT_FALSE(fs::exists(package_ / kPicturesName / "one.png"));
    EXPECT_EQ(1, std::distance(fs::directory_iterator(where_), fs::directory_iterator()));
    EXPECT_TRUE(restore());
}

TEST_F(HotelPackageTest, backupToNoFolderIsRefused) {
    EXPECT_FALSE(writePackage(first_, place_.path() / "none", kId, [] {}));
    EXPECT_FALSE(writePackage(first_, "relative", kId, [] {}));
    EXPECT_FALSE(writePackage(first_, "", kId, [] {}));
    EXPECT_FALSE(fs::exists(place_.path() / "none"));
}

TEST_F(HotelPackageTest, backupOfALinkIsRefusedAndLeavesNothing) {
    fs::create_symlink("/etc/passwd", first_.path() / kPicturesName / "link.png");
    EXPECT_FALSE(backUp());
    EXPECT_TRUE(fs::is_empty(where_));
}

TEST_F(HotelPackageTest, backupThatDiesLeavesNoPackage) {
    EXPECT_EQ(-SIGKILL, test::inChild([this] { return backUp([] { raise(SIGKILL); }).has_value(); }));
    EXPECT_FALSE(fs::exists(package_));
    EXPECT_EQ(ErrorCode::NoBackupFile, refused());
    ASSERT_TRUE(backUp());
    EXPECT_EQ(1, std::distance(fs::directory_iterator(where_), fs::directory_iterator()));
}

TEST_F(HotelPackageTest, restoreThatDiesLeavesTheOldDataWhole) {
    ASSERT_TRUE(backUp());
    const auto before = vxtest::snapshot(second_.path());
    EXPECT_EQ(-SIGKILL, test::inChild([this] { return restore([] { raise(SIGKILL); }).has_value(); }));
    EXPECT_TRUE(fs::exists(second_.staging()));
    ASSERT_TRUE(second_.recover());
    EXPECT_EQ(before, vxtest::snapshot(second_.path()));
    EXPECT_FALSE(fs::exists(second_.staging()));
    EXPECT_TRUE(restore());
}

TEST_F(HotelPackageTest, dataThatIsMissingIsMadeEmpty) {
    fs::create_directory(place_.path() / "third");
    const DataFolder third(place_.path() / "third");
    ASSERT_TRUE(third.recover());
    EXPECT_TRUE(checkDatabase(third.path() / kDatabaseName));
}

TEST_F(HotelPackageTest, missingPackageIsTold) {
    EXPECT_EQ(ErrorCode::NoBackupFile, refused());
}

TEST_F(HotelPackageTest, packageThatIsALinkIsRefused) {
    ASSERT_TRUE(backUp());
    fs::rename(package_, where_ / "elsewhere");
    fs::create_directory_symlink(where_ / "elsewhere", package_);
    EXPECT_EQ(ErrorCode::NotABackupFile, refused());
}

TEST_F(HotelPackageTest, linksPipesAndFurtherFilesAreRefused) {
    const fs::path extra = package_ / kPicturesName / "extra";
    const std::vector<std::function<void()>> tricks = {
        [&] { fs::create_symlink("/etc/passwd", extra); },
        [&] { ASSERT_EQ(0, mkfifo(extra.c_str(), 0600)); },
        [&] { test::writeFile(extra, "x"); },
        [&] { fs::create_directory(extra); },
    };
    for (const auto& trick : tricks) {
        ASSERT_TRUE(backUp());
        trick();
        EXPECT_EQ(ErrorCode::DamagedBackup, refused());
    }
}

TEST_F(HotelPackageTest, listedFileThatIsALinkOrAPipeIsRefused) {
    const fs::path picture = package_ / kPicturesName / "one.png";
    ASSERT_TRUE(backUp());
    fs::remove(picture);
    fs::create_symlink(first_.path() / kPicturesName / "one.png", picture);
    EXPECT_EQ(ErrorCode::DamagedBackup, refused());
    fs::remove(picture);
    ASSERT_EQ(0, mkfifo(picture.c_str(), 0600));
    EXPECT_EQ(ErrorCode::DamagedBackup, refused());
}

TEST_F(HotelPackageTest, changedShortenedAndMissingFilesAreRefused) {
    const fs::path picture = package_ / kPicturesName / "one.png";
    for (const std::string content : {"picture two", "pict", "picture one and more"}) {
        ASSERT_TRUE(backUp());
        test::writeFile(picture, content);
        EXPECT_EQ(ErrorCode::DamagedBackup, refused()) << content;
    }
    fs::remove(picture);
    EXPECT_EQ(ErrorCode::DamagedBackup, refused());
}

TEST_F(HotelPackageTest, wrongIndexesAreRefused) {
    const std::vector<std::pair<ErrorCode, std::function<void(Json&)>>> wrong = {
        {ErrorCode::OtherVersion, [](Json& it) { it["version"] = 2; }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["format"] = "other"; }},
        {ErrorCode::OtherService, [](Json& it) { it["application"] = "org.example.other"; }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["more"] = 1; }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["files"] = Json::array(); }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["files"].push_back(it["files"][0]); }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["files"][1]["name"] = "pictures/../../escape"; }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["files"][1]["name"] = "/etc/passwd"; }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["files"][1]["name"] = "pictures/.."; }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["files"][1]["size"] = -1; }},
        {ErrorCode::NotABackupFile, [](Json& it) { it["files"][1]["size"] = 1ULL << 40U; }},
        {ErrorCode::NotABackupFile,
         [](Json& it) { it["files"] = Json(std::vector<Json>(300, it["files"][0])); }},
        {ErrorCode::NotABackupFile, [](Json& it) { it = Json::array(); }},
    };
    for (std::size_t at = 0; at < wrong.size(); ++at) {
        ASSERT_TRUE(backUp());
        changeIndex(wrong[at].second);
        EXPECT_EQ(wrong[at].first, refused()) << "change " << at;
    }
}

TEST_F(HotelPackageTest, indexThatIsNoJsonOrALinkIsRefused) {
    ASSERT_TRUE(backUp());
    for (const std::string& text : {std::string("{"), std::string(300000, ' '), std::string(2000, '[')}) {
        test::writeFile(package_ / kIndexName, text);
        EXPECT_EQ(ErrorCode::NotABackupFile, refused());
    }
    fs::remove(package_ / kIndexName);
    fs::create_symlink("/dev/zero", package_ / kIndexName);
    EXPECT_EQ(ErrorCode::NotABackupFile, refused());
}

TEST_F(HotelPackageTest, whatIsNoDatabaseIsRefused) {
    ASSERT_TRUE(backUp());
    const std::string whole = test::readFile(package_ / kDatabaseName);
    for (const auto& [bytes, why] :
         {std::pair(std::string(), "it is another program's"),
          std::pair(std::string("no database"), "it is no database"),
          std::pair(whole.substr(0, 4096), "its content is damaged"),
          std::pair(whole.substr(0, 4096) + std::string(whole.size() - 4096, '\xAA'),
                    "its content is damaged")}) {
        replaceDatabase(bytes);
        EXPECT_EQ(ErrorCode::DamagedBackup, refused()) << bytes.size();
        const std::string told = std::string("hotel.db is damaged: ") + why + "; make the backup anew";
        EXPECT_NE(sentence_.find(told), std::string::npos) << sentence_;
    }
}

TEST_F(HotelPackageTest, databaseWithATriggerAViewOrAnotherVersionIsRefused) {
    for (const char* const statement :
         {"CREATE TRIGGER t AFTER INSERT ON cards BEGIN DELETE FROM cards; END", "CREATE VIEW v AS SELECT 1",
          "ALTER TABLE cards ADD COLUMN more TEXT", "DROP TABLE greetings", "PRAGMA application_id = 5"}) {
        ASSERT_TRUE(backUp());
        const fs::path other = place_.path() / "other.db";
        fs::copy_file(package_ / kDatabaseName, other, fs::copy_options::overwrite_existing);
        SQLite::Database(other.string(), SQLite::OPEN_READWRITE).exec(statement);
        replaceDatabase(test::readFile(other));
        EXPECT_EQ(ErrorCode::DamagedBackup, refused()) << statement;
    }
}

TEST(Misbehaviour, knownHabitsAreReadAndOthersRefused) {
    const auto habits = readMisbehaviour({"late-port=20", "no-reply"});
    ASSERT_TRUE(habits);
    EXPECT_EQ(20, habits->latePortMs);
    EXPECT_TRUE(habits->noReply);
    EXPECT_FALSE(habits->fail);
    for (const char* const wrong :
         {"", "late-port", "late-port=", "late-port=x", "late-port=-1", "no-reply=1"}) {
        EXPECT_FALSE(readMisbehaviour({wrong})) << wrong;
    }
}

}  // namespace
}  // namespace vxtv::hotel
