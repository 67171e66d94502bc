// The seal over a package.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/filesystem.hpp>
#include <cstdio>
#include <functional>

#include "integrity_test.h"

namespace vxtest {
namespace {

/// Called after each stream that the library closes.
std::function<void()> onceClosed;

}  // namespace

extern "C" {
int __real_fclose(std::FILE* file);
int __wrap_fclose(std::FILE* file) {
    const int result = __real_fclose(file);
    if (onceClosed) {
        onceClosed();
    }
    return result;
}
}

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

constexpr const char* kPlain = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/validate_temp.txt";
constexpr const char* kEnciphered = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/validate.txt";

class ManifestTest : public IntegrityTest {
 protected:
    int seal(std::vector<std::string> files, const std::string& drive = "/tmp/area/drive.txt") {
        return run(std::move(files), 0, drive);
    }
    int verify(std::vector<std::string> files, const std::string& drive = "/tmp/area/drive.txt") {
        return run(std::move(files), 1, drive);
    }
    int run(std::vector<std::string> files, int mode, std::string drive) {
        return engine.m_checkHashValidity(files, mode, drive.data());
    }

    std::string fileWith(const std::string& name, const std::string& content) {
        writeFile(work(name), content);
        return work(name).string();
    }

    /// The plain text of a seal file.
    std::string opened(const fs::path& sealed) {
        EXPECT_TRUE(decipher(sealed, work("opened")));
        return readFile(work("opened"));
    }

    /// Makes a seal file with the text.
    void sealText(const std::string& text) {
        writeFile(work("text"), text);
        ASSERT_TRUE(encipher(work("text"), work("drive.txt")));
    }

    std::vector<std::string> engineLog() const {
        std::vector<std::string> result;
        for (const std::string& line : tv.describedLog()) {
            if (line.find(" m_checkHashValidity: ") != std::string::npos) {
                result.push_back(line);
            }
        }
        return result;
    }

    static std::string said(const std::string& message) { return "E/35 m_checkHashValidity: " + message; }
};

TEST_F(ManifestTest, sealOfFilesWritesTheEncipheredTotalAndCleansUp) {
    const std::string a = fileWith("a", "A");
    const std::string b = fileWith("b", "AB");
    EXPECT_EQ(seal({a, b}), 1);
    EXPECT_EQ(fs::file_size(work("drive.txt")), 16U);
    EXPECT_EQ(opened(work("drive.txt")), "326");
    EXPECT_FALSE(fs::exists(kPlain));
    EXPECT_FALSE(fs::exists(kEnciphered));
}

TEST_F(ManifestTest, sealLogsEachStep) {
    const std::string a = fileWith("a", "A");
    const std::string b = fileWith("b", "AB");
    EXPECT_EQ(seal({a, b}), 1);
    EXPECT_THAT(
        engineLog(),
        ElementsAre(
            said("Calculate hash of following files"), said("/tmp/area/a"), said("Length = 1"),
            said("hash value = 0"), "D/33 m_checkHashValidity: hash value = 65 file hash 65\n",
            said("/tmp/area/b"), said("Length = 2"), said("hash value = 65"),
            "D/33 m_checkHashValidity: hash value = 326 file hash 261\n", said("final hash calculated = 326"),
            said("Get key and IV"), said("hash code written successfully"),
            said("Encryption Success , Copying Validate file to USB .... Deleting temp & Encrypted file"),
            said("Validation success!!")));
}

TEST_F(ManifestTest, sealOpensItsOwnFilesByTheirNamesAndModes) {
    EXPECT_EQ(seal({}), 1);
    EXPECT_THAT(tv.describedLog(),
                Contains(std::string("E/35 SafeFileOpen: strPath: ") + kPlain + " strMode: w"));
}

TEST_F(ManifestTest, sealLeavesNoFileOpen) {
    const auto openFiles = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const std::string a = fileWith("a", "A");
    const auto before = openFiles();
    EXPECT_EQ(seal({a, "/tmp/area/missing", kWorkDirectory}), 1);
    EXPECT_EQ(openFiles(), before);
}

/// If the caller has closed its standard input, the first file gets the number 0.
TEST_F(ManifestTest, sealOfAFileThatIsDescriptorZeroCountsAndClosesIt) {
    const std::string a = fileWith("a", "A");
    const int kept = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
    ASSERT_GE(kept, 0);
    ASSERT_EQ(close(STDIN_FILENO), 0);
    const int result = seal({a});
    const bool closed = fcntl(STDIN_FILENO, F_GETFD) < 0;
    ASSERT_EQ(dup2(kept, STDIN_FILENO), STDIN_FILENO);
    close(kept);
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(closed);
    EXPECT_EQ(opened(work("drive.txt")), "65");
}

TEST_F(ManifestTest, sealOfNothingIsZero) {
    EXPECT_EQ(seal({}), 1);
    EXPECT_EQ(opened(work("drive.txt")), "0");
}

TEST_F(ManifestTest, sealOfALargeByteIsNegative) {
    EXPECT_EQ(seal({fileWith("a", "\xff")}), 1);
    EXPECT_EQ(opened(work("drive.txt")), "4294967295");
}

TEST_F(ManifestTest, sealWrapsAroundAtTwoToTheThirtyTwo) {
    EXPECT_EQ(seal({fileWith("a", "\xff"), fileWith("b", "\x02")}), 1);
    EXPECT_EQ(opened(work("drive.txt")), "1");
}

TEST_F(ManifestTest, sealOfAnEmptyFileAddsNothing) {
    EXPECT_EQ(seal({fileWith("empty", ""), fileWith("a", "A")}), 1);
    EXPECT_EQ(opened(work("drive.txt")), "65");
    EXPECT_THAT(engineLog(), Contains("D/33 m_checkHashValidity: hash value = 0 file hash 0\n"));
}

TEST_F(ManifestTest, sealOfAFileListedTwiceCountsItTwice) {
    const std::string a = fileWith("a", "A");
    EXPECT_EQ(seal({a, a}), 1);
    EXPECT_EQ(opened(work("drive.txt")), "130");
}

TEST_F(ManifestTest, sealOfALargeFileIsThatOfItsBytes) {
    const std::string content = someBytes(1000003);
    std::uint32_t expected = 0;
    for (const char byte : content) {
        expected =
            expected * 3 + static_cast<std::uint32_t>(static_cast<int>(static_cast<signed char>(byte)));
    }
    EXPECT_EQ(seal({fileWith("large", content)}), 1);
    EXPECT_EQ(opened(work("drive.txt")), std::to_string(expected));
    EXPECT_THAT(engineLog(), Contains(said("Length = 1000003")));
}

TEST_F(ManifestTest, sealPassesOverWhatIsMissingALinkOrNoFile) {
    const std::string a = fileWith("a", "A");
    fs::create_symlink(a, work("link"));
    fs::create_directories(work("directory"));
    ASSERT_EQ(mkfifo(work("fifo").c_str(), 0600), 0);
    EXPECT_EQ(seal({a, "/tmp/area/missing", "/tmp/area/link", "/tmp/area/directory", "/tmp/area/fifo",
                    "/dev/zero"}),
              1);
    EXPECT_EQ(opened(work("drive.txt")), "65");
    const auto log = engineLog();
    EXPECT_THAT(log, Contains(said("/tmp/area/link is symbolic link")));
    EXPECT_EQ(std::count(log.begin(), log.end(), said("hash value = 65 file hash 0\n")), 4);
}

TEST_F(ManifestTest, sealOverAnOldValidationFileReplacesIt) {
    writeFile(work("drive.txt"), std::string(100, 'x'));
    EXPECT_EQ(seal({}), 1);
    EXPECT_EQ(fs::file_size(work("drive.txt")), 16U);
}

TEST_F(ManifestTest, sealWithoutCloneDirectoryFails) {
    fs::remove_all(kCloneDirectory);
    EXPECT_EQ(seal({}), 0);
    EXPECT_EQ(engineLog().back(), said("Error creating hash file on drive"));
}

TEST_F(ManifestTest, sealThatCannotBeEncipheredLeavesBothFiles) {
    fs::create_directories(kEnciphered);
    EXPECT_EQ(seal({}), 0);
    EXPECT_EQ(engineLog().back(), said("Encryption Failed"));
    EXPECT_EQ(readFile(kPlain), "0");
    EXPECT_TRUE(fs::exists(kEnciphered));
    EXPECT_FALSE(fs::exists(work("drive.txt")));
}

TEST_F(ManifestTest, sealOntoAMissingDriveRaisesTheErrorAndLeavesBothFiles) {
    EXPECT_THROW(seal({}, "/tmp/area/missing/drive.txt"), boost::filesystem::filesystem_error);
    EXPECT_TRUE(fs::exists(kPlain));
    EXPECT_TRUE(fs::exists(kEnciphered));
}

TEST_F(ManifestTest, verifyOfUntouchedFilesIsOneAndCleansUp) {
    const std::string a = fileWith("a", someBytes(5000));
    ASSERT_EQ(seal({a}), 1);
    EXPECT_EQ(verify({a}), 1);
    EXPECT_FALSE(fs::exists(kPlain));
    EXPECT_TRUE(fs::exists(work("drive.txt")));
}

TEST_F(ManifestTest, verifyLogsEachStep) {
    ASSERT_EQ(seal({fileWith("a", "A")}), 1);
    tv.reset();
    tv.setSecret("VX_CLONE_API_AES_KEY", key);
    tv.setSecret("VX_CLONE_API_AES_IV", iv);
    EXPECT_EQ(verify({work("a").string()}), 1);
    const auto log = engineLog();
    EXPECT_THAT(std::vector<std::string>(log.begin() + 5, log.end()),
                ElementsAre(said("final hash calculated = 65"), said("Get key and IV"),
                            said("Decrypt Success"), said("Hash from file = 65"),
                            said("Removing temp decrypted file"), said("Validation success!!")));
}

TEST_F(ManifestTest, verifyOfAnotherOrderIsOne) {
    const std::string a = fileWith("a", "first");
    const std::string b = fileWith("b", "second");
    ASSERT_EQ(seal({a, b}), 1);
    EXPECT_EQ(verify({b, a}), 1);
}

TEST_F(ManifestTest, verifyOfAnAlteredFileIsZero) {
    const std::string a = fileWith("a", "content");
    ASSERT_EQ(seal({a}), 1);
    writeFile(work("a"), "contenT");
    EXPECT_EQ(verify({a}), 0);
    EXPECT_EQ(engineLog().back(), said("Hash value did not match"));
    EXPECT_FALSE(fs::exists(kPlain));
}

TEST_F(ManifestTest, verifyReadsTheFirstLineOfTheManifest) {
    sealText("123\n456");
    EXPECT_EQ(verify({fileWith("a", std::string(1, 123))}), 1);
    EXPECT_THAT(engineLog(), Contains(said("Hash from file = 123")));
}

struct ManifestNumber {
    const char* name;
    const char* text;
    const char* content;  ///< of the one file
    int result;
};

class ManifestNumberTest : public ManifestTest, public testing::WithParamInterface<ManifestNumber> {};

TEST_P(ManifestNumberTest, verifyComparesTheLowThirtyTwoBits) {
    sealText(GetParam().text);
    EXPECT_EQ(verify({fileWith("a", GetParam().content)}), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Numbers, ManifestNumberTest,
                         testing::Values(ManifestNumber{"minusOne", "-1", "\xff", 1},
                                         ManifestNumber{"twoToTheThirtyTwo", "4294967296", "", 1},
                                         ManifestNumber{"blanksAndSign", "  +65", "A", 1},
                                         ManifestNumber{"textBehind", "65abc", "A", 1},
                                         ManifestNumber{"empty", "", "", 1},
                                         ManifestNumber{"noNumber", "abc", "", 1},
                                         ManifestNumber{"saturatedHigh", "99999999999999999999", "\xff", 1},
                                         ManifestNumber{"saturatedLow", "-99999999999999999999", "", 1},
                                         ManifestNumber{"another", "66", "A", 0}),
                         [](const auto& test) { return test.param.name; });

TEST_F(ManifestTest, verifyOfAMissingValidationFileIsZero) {
    EXPECT_EQ(verify({}, "/tmp/area/missing.txt"), 0);
    EXPECT_EQ(engineLog().back(), said("/tmp/area/missing.txt doesnt exist or, is symbolic link."));
}

TEST_F(ManifestTest, verifyThroughALinkIsZero) {
    ASSERT_EQ(seal({}), 1);
    fs::create_symlink(work("drive.txt"), work("link.txt"));
    EXPECT_EQ(verify({}, "/tmp/area/link.txt"), 0);
    EXPECT_EQ(engineLog().back(), said("/tmp/area/link.txt doesnt exist or, is symbolic link."));
}

TEST_F(ManifestTest, verifyThroughADanglingLinkIsZero) {
    fs::create_symlink("/tmp/area/nowhere", work("link.txt"));
    EXPECT_EQ(verify({}, "/tmp/area/link.txt"), 0);
    EXPECT_EQ(engineLog().back(), said("/tmp/area/link.txt doesnt exist or, is symbolic link."));
}

TEST_F(ManifestTest, verifyOfADamagedValidationFileIsZeroAndLeavesTheTemporaryFile) {
    writeFile(work("drive.txt"), "seventeen bytes !");
    EXPECT_EQ(verify({}), 0);
    EXPECT_EQ(engineLog().back(), said(" Decrypt Failed"));
    EXPECT_TRUE(fs::exists(kPlain));
}

TEST_F(ManifestTest, verifyWhoseTemporaryFileCannotBeReadIsZero) {
    sealText("0");
    onceClosed = [] { fs::remove(kPlain); };
    EXPECT_EQ(verify({}), 0);
    onceClosed = nullptr;
    EXPECT_EQ(engineLog().back(), said("Error opening temp validate file"));
}

TEST_F(ManifestTest, anotherModeFetchesTheKeyAndTouchesNoManifest) {
    EXPECT_EQ(run({fileWith("a", "A")}, 2, "/tmp/area/drive.txt"), 1);
    EXPECT_FALSE(fs::exists(work("drive.txt")));
    EXPECT_FALSE(fs::exists(kPlain));
    EXPECT_EQ(engineLog().back(), said("Validation success!!"));
}

TEST_F(ManifestTest, everyModeFailsWithoutTheKeyAfterTheHash) {
    fs::remove("/tmp/securestorage-ready");
    for (const int mode : {0, 1, 2}) {
        EXPECT_EQ(run({}, mode, "/tmp/area/drive.txt"), 0);
        const auto log = engineLog();
        EXPECT_EQ(log[log.size() - 3], said("final hash calculated = 0"));
        EXPECT_EQ(log.back(), said("Unable to Get AES Key-IV Pair, Encryption Failed"));
    }
}

TEST_F(ManifestTest, missingKeyIsInstalledFromTheShippedFile) {
    tv.reset();
    tv.setInstalledSecrets({{"VX_CLONE_API_AES_KEY", key}, {"VX_CLONE_API_AES_IV", iv}});
    EXPECT_EQ(seal({}), 1);
    EXPECT_THAT(tv.callsOf("wqd_install_from_file"),
                ElementsAre("wqd_install_from_file(\"/usr/share/wqd/vx-clone-api-key/00000044.bin\", 2, 0)"));
}

TEST_F(ManifestTest, publicOperationConnectsToTheTimersFirstAndGoesOnWithout) {
    char drive[] = "/tmp/area/drive.txt";
    EXPECT_EQ(engine.CheckHashValidity({}, 0, drive), 1);
    EXPECT_EQ(tv.transcript()[0], "E/35 CheckHashValidity: ");
    EXPECT_EQ(tv.transcript()[1], "tvtimer_init()");
    const std::string failed = "E/35 CheckHashValidity: failed to init tvtimer api";
    EXPECT_THAT(tv.describedLog(), Not(Contains(failed)));
    tv.answer("tvtimer_init", -1);
    EXPECT_EQ(engine.CheckHashValidity({}, 1, drive), 1);
    EXPECT_THAT(tv.describedLog(), Contains(failed));
}

}  // namespace
}  // namespace vxtest
