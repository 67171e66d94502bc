#include "virtual_tv/television/key_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kFileSize = 116;
const std::string kSecret(32, 's');

std::string goodFile() {
    return sealKeyFile(test::smallCloneKey(), kSecret).value();
}

ErrorCode refusalOf(const std::string& bytes, const std::string& secret = kSecret) {
    const Result<CloneKey> key = unsealKeyFile(bytes, secret, "the file");
    EXPECT_FALSE(key);
    return key ? ErrorCode::CannotRun : key.error().code;
}

TEST(KeyFile, unsealOfASealedFileIsWhatWentIn) {
    const std::string bytes = goodFile();
    EXPECT_EQ(bytes.size(), kFileSize);
    EXPECT_EQ(test::hex(bytes.substr(0, 12)), "56584b45590d0a1a00000001");
    const CloneKey key = unsealKeyFile(bytes, kSecret, "x").value();
    EXPECT_EQ(key.key, test::smallCloneKey().key);
    EXPECT_EQ(key.iv, test::smallCloneKey().iv);
    EXPECT_EQ(key.credential, test::smallCloneKey().credential);
    EXPECT_NE(goodFile(), bytes) << "the nonce is not new";
}

TEST(KeyFile, anyChangedByteIsRefusedByItsPlace) {
    const std::string bytes = goodFile();
    for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
        const ErrorCode expected = byte < 8    ? ErrorCode::NotAKeyFile
                                   : byte < 12 ? ErrorCode::OtherVersion
                                               : ErrorCode::BrokenSeal;
        EXPECT_EQ(refusalOf(test::flipped(bytes, byte * 8 + byte % 8)), expected) << byte;
    }
}

TEST(KeyFile, everyTruncationIsRefused) {
    const std::string bytes = goodFile();
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        EXPECT_EQ(refusalOf(bytes.substr(0, length)), ErrorCode::ShortKeyFile) << length;
    }
    EXPECT_EQ(refusalOf(bytes + "x"), ErrorCode::BrokenSeal);
}

TEST(KeyFile, otherFleetAndForeignFileAreRefused) {
    EXPECT_EQ(refusalOf(goodFile(), std::string(32, 'o')), ErrorCode::BrokenSeal);
    EXPECT_EQ(refusalOf("{\"a\": \"foreign file\"}"), ErrorCode::NotAKeyFile);
    EXPECT_EQ(refusalOf(std::string(kFileSize, '\0')), ErrorCode::NotAKeyFile);
}

TEST(KeyFile, newKeysAreRandomAndHoldNoNul) {
    const Credential credential = test::smallCloneKey().credential;
    for (int round = 0; round < 50; ++round) {
        const CloneKey key = makeCloneKey(credential).value();
        EXPECT_EQ(key.key.size(), 32U);
        EXPECT_EQ(key.iv.size(), 16U);
        EXPECT_EQ((key.key + key.iv).find('\0'), std::string::npos);
    }
    EXPECT_NE(makeCloneKey(credential)->key, makeCloneKey(credential)->key);
}

class KeyFileOnDisk : public testing::Test {
 protected:
    ErrorCode refusal() const {
        const Result<std::string> bytes = readKeyFile(file_);
        EXPECT_FALSE(bytes);
        return bytes ? ErrorCode::CannotRun : bytes.error().code;
    }
    ErrorCode clientRefusal(const std::string& text) const {
        test::writeFile(file_, text);
        const Result<Credential> client = readClient(file_);
        EXPECT_FALSE(client) << text;
        return client ? ErrorCode::CannotRun : client.error().code;
    }

    test::TestFolder folder_;
    fs::path file_ = folder_.path() / "file";
};

TEST_F(KeyFileOnDisk, missingFileIsRefused) {
    EXPECT_EQ(refusal(), ErrorCode::NoKeyFile);
}

TEST_F(KeyFileOnDisk, whatIsNoPlainFileIsRefusedWithoutWaiting) {
    ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
    EXPECT_EQ(refusal(), ErrorCode::NotAKeyFile);
    fs::remove(file_);
    fs::create_directory(file_);
    EXPECT_EQ(refusal(), ErrorCode::NotAKeyFile);
    fs::remove(file_);
    test::writeFile(folder_.path() / "real", goodFile());
    fs::create_symlink("real", file_);
    EXPECT_EQ(refusal(), ErrorCode::NotAKeyFile);
    fs::remove(file_);
    fs::create_symlink("/dev/zero", file_);
    EXPECT_EQ(refusal(), ErrorCode::NotAKeyFile);
}

TEST_F(KeyFileOnDisk, hugeFileIsReadNoFurtherThanNeeded) {
    test::writeFile(file_, goodFile());
    fs::resize_file(file_, std::uintmax_t{1} << 40U);
    const std::string bytes = readKeyFile(file_).value();
    EXPECT_EQ(bytes.size(), kFileSize + 1);
    EXPECT_EQ(refusalOf(bytes), ErrorCode::BrokenSeal);
}

TEST_F(KeyFileOnDisk, fleetSecretOfAnotherLengthIsRefused) {
    EXPECT_EQ(readFleetSecret(file_).error().code, ErrorCode::NoFleetSecret);
    for (const std::size_t length : {0U, 31U, 33U}) {
        test::writeFile(file_, std::string(length, 'x'));
        EXPECT_EQ(readFleetSecret(file_).error().code, ErrorCode::NoFleetSecret);
    }
    test::writeFile(file_, kSecret);
    EXPECT_EQ(readFleetSecret(file_).value(), kSecret);
}

TEST_F(KeyFileOnDisk, clientIsReadStrictly) {
    test::writeFile(file_, R"({"identifier": "12345678901234567890", "owner": -1, "group": 2147483647})");
    const Credential client = readClient(file_).value();
    EXPECT_EQ(std::string(client.identifier.data(), 20), "12345678901234567890");
    EXPECT_EQ(client.owner, -1);
    EXPECT_EQ(client.group, 2147483647);
    for (const char* text : {"", "[]", "{", R"({"identifier": "short", "owner": 1, "group": 0})",
                             R"({"identifier": 1, "owner": 1, "group": 0})", R"({"owner": 1, "group": 0})",
                             R"({"identifier": "12345678901234567890", "owner": 1})",
                             R"({"identifier": "12345678901234567890", "owner": "1", "group": 0})",
                             R"({"identifier": "12345678901234567890", "owner": 1.5, "group": 0})",
                             R"({"identifier": "12345678901234567890", "owner": 2147483648, "group": 0})",
                             R"({"identifier": "12345678901234567890", "owner": 18446744073709551615,)"
                             R"( "group": 0})"}) {
        EXPECT_EQ(clientRefusal(text), ErrorCode::BadArgument);
    }
}

}  // namespace
}  // namespace vxtv
