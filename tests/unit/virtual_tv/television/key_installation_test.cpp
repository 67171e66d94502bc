// The results of the platform's key installation and secure storage: the statuses in virtual_tv/README.md.

#include "virtual_tv/television/key_installation.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <thread>

#include "platform/secure_storage.h"
#include "platform/wqd.h"
#include "tests/unit/virtual_tv/shared_television.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/television/key_file.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using test::sharedTelevision;

class KeyInstallation : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(sharedTelevision().faults().clear());
        fs::remove_all(folder().secureEntries());
        test::writeFile(place_, goodFile_);
        test::writeFile(folder().installationSecret(), test::smallProfile().installationSecret);
    }
    void TearDown() override {
        fs::remove_all(place_);
        test::writeFile(place_, goodFile_);
    }

    static const Folder& folder() { return sharedTelevision().folder(); }

    static int install() { return wqd_install_from_file(kCloneKeyFile, 2, 0); }

    static bool hasEntries() { return fs::exists(folder().secureEntries()); }

    static ss_credential owner(int ownerNumber = 1) {
        return ss_init_credential(test::smallCloneKey().credential.identifier.data(), ownerNumber, 0);
    }

    /// The status, and the value if there is one.
    static std::pair<int, std::string> read(const char* name, const ss_credential& credential = owner()) {
        char* data = nullptr;
        size_t length = 0;
        const int status = ss_read(&data, &length, 0, 0, name, credential, 33);
        EXPECT_EQ(status == 0, data != nullptr);
        std::string value = data != nullptr ? std::string(data, length) : std::string();
        ss_free_buffer(data);
        return {status, value};
    }

    const std::string goodFile_ = test::smallProfile().keyFile;
    const fs::path place_ = placeOf(folder(), kCloneKeyFile);
};

TEST_F(KeyInstallation, freshTelevisionInstallsItsKeyFileOnce) {
    EXPECT_EQ(read(kCloneKeyEntry).first, -3);
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(read(kCloneKeyEntry), std::pair(0, test::smallCloneKey().key));
    EXPECT_EQ(read(kCloneIvEntry), std::pair(0, test::smallCloneKey().iv));
    EXPECT_EQ(install(), 2);
}

TEST_F(KeyInstallation, damagedOrMissingEntryIsInstalledAgain) {
    ASSERT_EQ(install(), 0);
    test::writeFile(folder().secureEntries() / kCloneIvEntry, "damaged");
    EXPECT_EQ(read(kCloneIvEntry).first, -5);
    EXPECT_EQ(install(), 0);
    fs::remove(folder().secureEntries() / kCloneKeyEntry);
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(read(kCloneKeyEntry).first, 0);
    EXPECT_EQ(read(kCloneIvEntry).first, 0);
}

TEST_F(KeyInstallation, eachReasonHasItsStatusAndInstallsNothing) {
    EXPECT_EQ(wqd_install_from_file(nullptr, 2, 0), -2);
    EXPECT_EQ(wqd_install_from_file(kCloneKeyFile, 1, 0), -2);
    EXPECT_EQ(wqd_install_from_file(kCloneKeyFile, 2, 1), -2);
    EXPECT_EQ(wqd_install_from_file("/no/such/file", 2, 0), -3);
    EXPECT_EQ(wqd_install_from_file("/usr/share", 2, 0), -4);
    const std::pair<std::string, int> cases[] = {{"something else", -4},
                                                 {test::flipped(goodFile_, 11 * 8), -5},
                                                 {goodFile_.substr(0, 115), -6},
                                                 {test::flipped(goodFile_, 50 * 8), -7}};
    for (const auto& [bytes, status] : cases) {
        test::writeFile(place_, bytes);
        EXPECT_EQ(install(), status);
    }
    test::writeFile(place_, goodFile_);
    test::writeFile(folder().installationSecret(), std::string(32, 'o'));
    EXPECT_EQ(install(), -7);
    fs::remove(folder().installationSecret());
    EXPECT_EQ(install(), -9);
    EXPECT_FALSE(hasEntries());
}

TEST_F(KeyInstallation, linkAndPipeAreRefused) {
    fs::remove(place_);
    ASSERT_EQ(mkfifo(place_.c_str(), 0600), 0);
    EXPECT_EQ(install(), -4);
    fs::remove(place_);
    fs::create_symlink(folder().database(), place_);
    EXPECT_EQ(install(), -4);
    EXPECT_FALSE(hasEntries());
}

TEST_F(KeyInstallation, storageThatIsNotUpHasItsStatus) {
    ASSERT_EQ(install(), 0);
    const std::string key = test::readFile(folder().deviceKey());
    fs::remove(folder().deviceKey());
    EXPECT_EQ(install(), -8);
    EXPECT_EQ(read(kCloneKeyEntry).first, -6);
    test::writeFile(folder().deviceKey(), key);
    EXPECT_EQ(read(kCloneKeyEntry).first, 0);
}

TEST_F(KeyInstallation, noFailureLooksLikeSuccess) {
    for (int status = -10; status < 0; ++status) {
        EXPECT_NE(status & ~2, 0) << status;
    }
}

TEST_F(KeyInstallation, readRefusesWhatTheLibraryDoesNotPass) {
    ASSERT_EQ(install(), 0);
    char* data = nullptr;
    size_t length = 7;
    EXPECT_EQ(ss_read(&data, &length, 1, 0, kCloneKeyEntry, owner(), 33), -2);
    EXPECT_EQ(ss_read(&data, &length, 0, 1, kCloneKeyEntry, owner(), 33), -2);
    EXPECT_EQ(ss_read(&data, &length, 0, 0, kCloneKeyEntry, owner(), 32), -2);
    EXPECT_EQ(ss_read(&data, &length, 0, 0, nullptr, owner(), 33), -2);
    EXPECT_EQ(ss_read(nullptr, &length, 0, 0, kCloneKeyEntry, owner(), 33), -2);
    EXPECT_EQ(ss_read(&data, nullptr, 0, 0, kCloneKeyEntry, owner(), 33), -2);
    EXPECT_EQ(ss_read(&data, &length, 0, 0, kCloneKeyEntry, owner(2), 33), -4);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(length, 7U);
}

TEST_F(KeyInstallation, callLogNamesTheEntryAndHoldsNoSecret) {
    ASSERT_EQ(install(), 0);
    ASSERT_EQ(read(kCloneKeyEntry).first, 0);
    const std::string log = test::readFile(folder().calls());
    EXPECT_NE(log.find(kCloneKeyEntry), std::string::npos);
    EXPECT_EQ(log.find(test::smallCloneKey().key), std::string::npos);
}

TEST_F(KeyInstallation, manyAtOnceInstallOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> installed = 0;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&installed] {
            const int status = install();
            EXPECT_EQ(status & ~2, 0);
            installed += status == 0 ? 1 : 0;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(installed, 1);
}

TEST_F(KeyInstallation, placedKeyFileReplacesOneOnlyWhenToldAndForgetsItsKey) {
    ASSERT_EQ(install(), 0);
    const test::TestFolder other;
    CloneKey key = test::smallCloneKey();
    key.key = std::string(32, 'N');
    test::writeFile(other.path() / "new", sealKeyFile(key, test::smallProfile().installationSecret).value());
    EXPECT_EQ(placeKeyFile(folder(), other.path() / "new", false).error().code, ErrorCode::AlreadyExists);
    EXPECT_EQ(test::readFile(place_), goodFile_);
    ASSERT_TRUE(placeKeyFile(folder(), other.path() / "new", true));
    EXPECT_EQ(install(), 0);
    EXPECT_EQ(read(kCloneKeyEntry).second, key.key);
}

TEST_F(KeyInstallation, keyFileThatDoesNotOpenIsNotPlaced) {
    const test::TestFolder other;
    test::writeFile(other.path() / "foreign",
                    sealKeyFile(test::smallCloneKey(), std::string(32, 'o')).value());
    EXPECT_EQ(placeKeyFile(folder(), other.path() / "foreign", true).error().code, ErrorCode::BrokenSeal);
    EXPECT_EQ(placeKeyFile(folder(), other.path() / "none", true).error().code, ErrorCode::NoKeyFile);
    EXPECT_EQ(test::readFile(place_), goodFile_);
}

}  // namespace
}  // namespace vxtv
