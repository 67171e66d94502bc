#include "virtual_tv/base/backup_file.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/base/sealing.h"
#include "virtual_tv/process/isolation.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr std::size_t kHeaderSize = 84;
constexpr int kVersion = 3;

class BackupFile : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(writeBackupFile(file_, "av", kVersion, document_));
        bytes_ = test::readFile(file_);
    }

    ErrorCode refusalOf(const fs::path& file) const {
        const Result<Json> read = readBackupFile(file, "av", kVersion);
        EXPECT_FALSE(read) << file;
        return read ? ErrorCode::CannotRun : read.error().code;
    }
    ErrorCode refusalOfBytes(const std::string& bytes) const {
        const fs::path file = folder_.path() / "other";
        test::writeFile(file, bytes);
        return refusalOf(file);
    }
    /// The good file with another body, and correct length and checksum.
    std::string withBody(const std::string& body) const {
        std::array<unsigned char, 32> digest{};
        EVP_Digest(body.data(), body.size(), digest.data(), nullptr, EVP_sha256(), nullptr);
        return bytes_.substr(0, 48) + toBigEndian(static_cast<std::uint32_t>(body.size())) +
               std::string(digest.begin(), digest.end()) + body;
    }

    const Json document_ = {{"mode", "movie"}, {"backlight", 20}, {"list", {1, 2, 3}}};
    test::TestFolder folder_;
    fs::path file_ = folder_.path() / "av.backup";
    std::string bytes_;
};

TEST_F(BackupFile, readAfterWriteIsTheDocument) {
    EXPECT_EQ(readBackupFile(file_, "av", kVersion).value(), document_);
}

TEST_F(BackupFile, layoutIsTheDocumentedOne) {
    const std::string text = document_.dump();
    EXPECT_EQ(test::hex(bytes_.substr(0, 12)), "565842414b0d0a1a00000001");
    EXPECT_EQ(bytes_.substr(12, 32), "av" + std::string(30, '\0'));
    EXPECT_EQ(test::hex(bytes_.substr(44, 4)), "00000003");
    EXPECT_EQ(static_cast<unsigned char>(bytes_[51]), text.size());
    EXPECT_EQ(bytes_.substr(kHeaderSize), text);
    // The SHA-256 of an empty object's text, as any other program computes it.
    ASSERT_TRUE(writeBackupFile(file_, "av", kVersion, Json::object()));
    EXPECT_EQ(test::hex(test::readFile(file_).substr(52, 32)),
              "44136fa355b3678a1146ad16f7e8649e94fb4fc21fe77e8310c060f61caaff8a");
}

TEST_F(BackupFile, anyChangedByteIsRefusedByItsPlace) {
    for (std::size_t byte = 0; byte < bytes_.size(); ++byte) {
        const bool isVersion = (byte >= 8 && byte < 12) || (byte >= 44 && byte < 48);
        const ErrorCode expected = byte < 8    ? ErrorCode::NotABackupFile
                                   : isVersion ? ErrorCode::OtherVersion
                                   : byte < 44 ? ErrorCode::OtherService
                                               : ErrorCode::DamagedBackup;
        EXPECT_EQ(refusalOfBytes(test::flipped(bytes_, byte * 8 + byte % 8)), expected) << byte;
    }
}

TEST_F(BackupFile, everyTruncationAndAnExtraByteAreRefused) {
    for (std::size_t length = 0; length < bytes_.size(); ++length) {
        EXPECT_EQ(refusalOfBytes(bytes_.substr(0, length)),
                  length < 8 ? ErrorCode::NotABackupFile : ErrorCode::DamagedBackup)
            << length;
    }
    EXPECT_EQ(refusalOfBytes(bytes_ + "x"), ErrorCode::DamagedBackup);
}

TEST_F(BackupFile, fileOfAnotherServiceOrVersionIsRefused) {
    EXPECT_EQ(readBackupFile(file_, "was", kVersion).error().code, ErrorCode::OtherService);
    EXPECT_EQ(readBackupFile(file_, "avx", kVersion).error().code, ErrorCode::OtherService);
    EXPECT_EQ(readBackupFile(file_, "av", kVersion - 1).error().code, ErrorCode::OtherVersion);
    EXPECT_EQ(readBackupFile(file_, "av", kVersion + 1).error().code, ErrorCode::OtherVersion);
}

TEST_F(BackupFile, whatIsNoPlainFileIsRefusedAtOnce) {
    const fs::path link = folder_.path() / "link";
    const fs::path pipe = folder_.path() / "pipe";
    fs::create_symlink(file_, link);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusalOf(link), ErrorCode::NotABackupFile);
    EXPECT_EQ(refusalOf(pipe), ErrorCode::NotABackupFile);
    EXPECT_EQ(refusalOf(folder_.path()), ErrorCode::NotABackupFile);
    EXPECT_EQ(refusalOf("/dev/zero"), ErrorCode::NotABackupFile);
    EXPECT_EQ(refusalOf(folder_.path() / "missing"), ErrorCode::NoBackupFile);
    EXPECT_EQ(refusalOf(file_ / "below a file"), ErrorCode::NoBackupFile);
}

TEST_F(BackupFile, fileThatIsTooLongIsRefused) {
    test::writeFile(file_, bytes_);
    fs::resize_file(file_, kHeaderSize + kLargestBackupBody + 1);
    EXPECT_EQ(refusalOf(file_), ErrorCode::DamagedBackup);
    fs::resize_file(file_, std::uintmax_t{1} << 40U);
    EXPECT_EQ(refusalOf(file_), ErrorCode::DamagedBackup);
}

TEST_F(BackupFile, bodyThatIsNoStrictJsonIsRefusedThoughItsChecksumFits) {
    ASSERT_EQ(withBody(document_.dump()), bytes_);
    const std::string deep(100000, '[');
    const std::string closed = std::string(17, '[') + std::string(17, ']');
    for (const std::string& body :
         {std::string(), std::string("{"), std::string("{\"a\":1,\"a\":2}"), std::string("{} {}"),
          std::string("\"\xFF\""), std::string("NaN"), std::string("1e999"), deep, closed}) {
        EXPECT_EQ(refusalOfBytes(withBody(body)), ErrorCode::DamagedBackup) << body.substr(0, 20);
    }
}

TEST_F(BackupFile, documentThatIsTooDeepTooLongOrNoTextIsNotWritten) {
    Json deep = 1;
    for (int layer = 0; layer <= kDeepestBackup; ++layer) {
        deep = Json::array({deep});
    }
    for (const Json& document : {deep, Json(std::string(kLargestBackupBody, 'x')), Json("\xFF")}) {
        const auto written = writeBackupFile(file_, "av", kVersion, document);
        ASSERT_FALSE(written);
        EXPECT_EQ(written.error().code, ErrorCode::BadArgument);
    }
    EXPECT_EQ(test::readFile(file_), bytes_);
    EXPECT_EQ(writeBackupFile(file_, "", kVersion, 1).error().code, ErrorCode::BadArgument);
    EXPECT_EQ(writeBackupFile(file_, std::string(33, 'n'), kVersion, 1).error().code, ErrorCode::BadArgument);
    EXPECT_EQ(writeBackupFile(file_, "av", 0, 1).error().code, ErrorCode::BadArgument);
}

TEST_F(BackupFile, writeReplacesALinkAndLeavesItsTarget) {
    const fs::path victim = folder_.path() / "victim";
    const fs::path link = folder_.path() / "link";
    test::writeFile(victim, "precious");
    fs::create_symlink(victim, link);
    ASSERT_TRUE(writeBackupFile(link, "av", kVersion, document_));
    EXPECT_EQ(test::readFile(victim), "precious");
    EXPECT_EQ(test::readFile(link), bytes_);
}

TEST_F(BackupFile, writeIntoAMissingFolderOrOverAFolderFails) {
    EXPECT_EQ(writeBackupFile(folder_.path() / "none" / "av", "av", 1, 1).error().code, ErrorCode::Io);
    fs::create_directory(folder_.path() / "taken");
    EXPECT_EQ(writeBackupFile(folder_.path() / "taken", "av", 1, 1).error().code, ErrorCode::Io);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()), 2);
}

/// Writes to a disk of 64 KiB, first a file that fits and then one that does not. True if only the first file
/// exists afterwards.
bool keepsTheFileOnAFullDisk(const fs::path& folder) {
    constexpr int kNoNamespace = 77;
    if (!enterMountNamespace() || mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") != 0) {
        _exit(kNoNamespace);
    }
    const fs::path file = folder / "av.backup";
    const bool wrote = writeBackupFile(file, "av", kVersion, "small").has_value();
    const auto refused = writeBackupFile(file, "av", kVersion, std::string(100000, 'x'));
    const auto read = readBackupFile(file, "av", kVersion);
    return wrote && !refused && refused.error().code == ErrorCode::NoSpace && read && *read == "small" &&
           std::distance(fs::directory_iterator(folder), fs::directory_iterator()) == 1;
}

TEST_F(BackupFile, fullDiskLeavesTheFileOfBeforeAndNoOther) {
    const fs::path disk = folder_.path() / "disk";
    fs::create_directory(disk);
    const int status = test::inChild([&disk] { return keepsTheFileOnAFullDisk(disk); });
    if (status == 77) {
        GTEST_SKIP() << "this machine gives no mount namespace";
    }
    EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace vxtv
