#include "virtual_tv/store/secure_storage.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/television/key_installation.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class SecureStorageTest : public testing::Test {
 protected:
    SecureStorageTest() {
        EXPECT_TRUE(storage_.put({{"FIRST", "one secret"}, {"SECOND", "two secret"}}, owner_));
    }

    ErrorCode readingFails(const std::string& name = "FIRST") const {
        const Result<std::string> value = storage_.read(name, owner_);
        EXPECT_FALSE(value);
        return value ? ErrorCode::CannotRun : value.error().code;
    }

    fs::path entry(const char* name) const { return television_.folder().secureEntries() / name; }

    test::TestFolder folder_;
    Television television_ = test::makeTelevision(folder_.path() / "tv");
    SecureStorage storage_ = television_.secureStorage();
    Credential owner_ = test::smallCloneKey().credential;
};

TEST_F(SecureStorageTest, readAfterPutIsTheValue) {
    EXPECT_TRUE(storage_.checkUp());
    EXPECT_EQ(storage_.read("FIRST", owner_).value(), "one secret");
    EXPECT_EQ(storage_.read("SECOND", owner_).value(), "two secret");
}

TEST_F(SecureStorageTest, noSecretStandsInTheFolderInClear) {
    for (const auto& file : fs::recursive_directory_iterator(television_.folder().root())) {
        if (file.is_regular_file()) {
            EXPECT_EQ(test::readFile(file.path()).find("one secret"), std::string::npos) << file.path();
        }
    }
}

TEST_F(SecureStorageTest, everythingIsForTheOwnerAlone) {
    for (const auto& file : fs::recursive_directory_iterator(television_.folder().secure())) {
        const mode_t expected = file.is_directory() ? 0700 : 0600;
        struct stat status {};
        ASSERT_EQ(stat(file.path().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, expected) << file.path();
    }
    EXPECT_EQ(fs::file_size(television_.folder().deviceKey()), SealingKey::kSize);
}

TEST_F(SecureStorageTest, anyChangedByteIsRefused) {
    const std::string sealed = test::readFile(entry("FIRST"));
    for (std::size_t byte = 0; byte < sealed.size(); ++byte) {
        test::writeFile(entry("FIRST"), test::flipped(sealed, byte * 8));
        EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal) << byte;
    }
    EXPECT_EQ(storage_.read("SECOND", owner_).value(), "two secret");
}

TEST_F(SecureStorageTest, everyTruncationIsRefused) {
    const std::string sealed = test::readFile(entry("FIRST"));
    for (std::size_t length = 0; length < sealed.size(); ++length) {
        test::writeFile(entry("FIRST"), sealed.substr(0, length));
        EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal) << length;
    }
    test::writeFile(entry("FIRST"), sealed + "x");
    EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal);
}

TEST_F(SecureStorageTest, entryUnderAnotherNameIsRefused) {
    fs::copy_file(entry("SECOND"), entry("FIRST"), fs::copy_options::overwrite_existing);
    EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal);
}

TEST_F(SecureStorageTest, entryOfAnotherTelevisionIsRefused) {
    const Television other = test::makeTelevision(folder_.path() / "other");
    ASSERT_TRUE(other.secureStorage().put({{"FIRST", "one secret"}}, owner_));
    fs::copy_file(other.folder().secureEntries() / "FIRST", entry("FIRST"),
                  fs::copy_options::overwrite_existing);
    EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal);
}

TEST_F(SecureStorageTest, anotherCredentialIsRefused) {
    Credential identifier = owner_;
    identifier.identifier.back() ^= 1;
    Credential owner = owner_;
    owner.owner = 2;
    Credential group = owner_;
    group.group = -1;
    for (const Credential& other : {identifier, owner, group}) {
        const auto value = storage_.read("FIRST", other);
        ASSERT_FALSE(value);
        EXPECT_EQ(value.error().code, ErrorCode::WrongCredential);
    }
}

TEST_F(SecureStorageTest, unknownEntryIsRefusedAndNoPathLeadsOut) {
    const std::string away = std::string(65, 'A');
    for (const std::string& name : {std::string("NONE"), std::string(), std::string("../device.key"),
                                    std::string("/etc/passwd"), std::string("."), away}) {
        EXPECT_EQ(readingFails(name), ErrorCode::UnknownEntry) << name;
    }
}

TEST_F(SecureStorageTest, linkAndFolderInPlaceOfAnEntryAreRefused) {
    fs::rename(entry("FIRST"), folder_.path() / "away");
    fs::create_symlink(folder_.path() / "away", entry("FIRST"));
    EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal);
    fs::remove(entry("FIRST"));
    fs::create_directory(entry("FIRST"));
    EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal);
    fs::remove(entry("FIRST"));
    ASSERT_EQ(mkfifo(entry("FIRST").c_str(), 0600), 0);
    EXPECT_EQ(readingFails(), ErrorCode::BrokenSeal);
}

TEST_F(SecureStorageTest, missingOrShortDeviceKeyMeansNotUp) {
    test::writeFile(television_.folder().deviceKey(), std::string(31, 'x'));
    EXPECT_EQ(readingFails(), ErrorCode::NoDeviceKey);
    fs::remove(television_.folder().deviceKey());
    EXPECT_EQ(readingFails(), ErrorCode::NoDeviceKey);
    EXPECT_FALSE(storage_.checkUp());
    EXPECT_EQ(storage_.put({{"FIRST", "x"}}, owner_).error().code, ErrorCode::NoDeviceKey);
}

TEST_F(SecureStorageTest, putKeepsOtherEntriesAndLeavesNothingBeside) {
    fs::create_directories(television_.folder().secure() / "entries.new" / "x");
    ASSERT_TRUE(storage_.put({{"SECOND", "new"}, {"THIRD", "three"}}, owner_));
    EXPECT_EQ(storage_.read("FIRST", owner_).value(), "one secret");
    EXPECT_EQ(storage_.read("SECOND", owner_).value(), "new");
    EXPECT_EQ(storage_.read("THIRD", owner_).value(), "three");
    EXPECT_EQ(std::distance(fs::directory_iterator(television_.folder().secure()), fs::directory_iterator()),
              3);  // the two keys and the entries
}

TEST_F(SecureStorageTest, putPassesOverWhatIsNoPlainFile) {
    fs::create_symlink("/etc/passwd", entry("LINK"));
    fs::create_directory(entry("FOLDER"));
    ASSERT_TRUE(storage_.put({{"THIRD", "three"}}, owner_));
    EXPECT_FALSE(fs::exists(fs::symlink_status(entry("LINK"))));
    EXPECT_EQ(storage_.read("FIRST", owner_).value(), "one secret");
}

TEST_F(SecureStorageTest, forgetTakesTheNamedEntriesAlone) {
    ASSERT_TRUE(storage_.forget({"FIRST", "NEVER_THERE"}));
    EXPECT_EQ(readingFails("FIRST"), ErrorCode::UnknownEntry);
    EXPECT_EQ(storage_.read("SECOND", owner_).value(), "two secret");
    fs::remove_all(television_.folder().secureEntries());
    EXPECT_TRUE(storage_.forget({"FIRST"}));
}

TEST_F(SecureStorageTest, newTelevisionHoldsThePackageKey) {
    EXPECT_EQ(storage_.read(kPackageKeyEntry, packageKeyCredential()).value(),
              test::smallProfile().packageKey);
    EXPECT_EQ(storage_.read(kPackageKeyEntry, owner_).error().code, ErrorCode::WrongCredential);
}

TEST_F(SecureStorageTest, failedPutKeepsEveryEntry) {
    EXPECT_FALSE(storage_.put({{"FIRST", "new"}, {"no/such/folder", "x"}}, owner_));
    EXPECT_EQ(storage_.read("FIRST", owner_).value(), "one secret");
    EXPECT_EQ(storage_.read("SECOND", owner_).value(), "two secret");
    EXPECT_FALSE(fs::exists(television_.folder().secure() / "entries.new"));
}

TEST_F(SecureStorageTest, putOverEntriesThatCannotBeListedIsRefusedAndChangesNothing) {
    const fs::path entries = television_.folder().secureEntries();
    fs::remove_all(entries);
    test::writeFile(entries, "what cannot be listed");
    const Result<void> put = storage_.put({{"THIRD", "three secret"}}, owner_);
    ASSERT_FALSE(put);
    EXPECT_EQ(put.error().code, ErrorCode::Io);
    EXPECT_NE(put.error().sentence.find(entries.string()), std::string::npos);
    EXPECT_EQ(test::readFile(entries), "what cannot be listed");
    EXPECT_FALSE(fs::exists(television_.folder().secure() / "entries.new"));
}

TEST_F(SecureStorageTest, putLeavesNoMomentWithoutEntries) {
    constexpr int kPuts = 50;
    const fs::path entries = television_.folder().secureEntries();
    std::atomic<bool> ended = false;
    std::thread putting([&] {
        for (int count = 0; count < kPuts; ++count) {
            EXPECT_TRUE(storage_.put({{"FIRST", std::to_string(count)}}, owner_));
        }
        ended = true;
    });
    int moments = 0;
    while (!ended) {
        moments += fs::exists(entries) ? 0 : 1;
    }
    putting.join();
    EXPECT_EQ(moments, 0);
}

TEST_F(SecureStorageTest, sameValueIsSealedAnewEachTime) {
    const std::string before = test::readFile(entry("FIRST"));
    ASSERT_TRUE(storage_.put({{"FIRST", "one secret"}}, owner_));
    EXPECT_NE(test::readFile(entry("FIRST")), before);
}

}  // namespace
}  // namespace vxtv
