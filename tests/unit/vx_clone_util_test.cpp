// Opening files, the clone key, and the file cipher.

#include <openssl/evp.h>

#include "integrity_test.h"

namespace vxtest {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kCredential = "ss_init_credential(\"VXCLONE-HOTEL-KEY-01\", 1, 0)";
constexpr const char* kReadKey = "ss_read(0, 0, \"VX_CLONE_API_AES_KEY\", 1/0, 33)";
constexpr const char* kReadIv = "ss_read(0, 0, \"VX_CLONE_API_AES_IV\", 1/0, 33)";
constexpr const char* kInstall = "wqd_install_from_file(\"/keys.bin\", 2, 0)";
constexpr const char* kRelease = "ss_free_buffer()";

class UtilTest : public IntegrityTest {};

std::string readLine(int status) {
    return "E/35 SSReadString: [QrSecureStorageUtil::SSReadString], nRet[" + std::to_string(status) + "]";
}

TEST_F(UtilTest, safeFileOpenOfAFileGivesItsStream) {
    writeFile(work("file"), "content");
    std::FILE* const file = CVXCloneUtil::SafeFileOpen("/tmp/area/file", "r");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fgetc(file), 'c');
    std::fclose(file);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 SafeFileOpen: strPath: /tmp/area/file strMode: r"));
    EXPECT_EQ(tv.log().at(0).source, "VXCloneUtil.cpp");
    EXPECT_EQ(tv.log().at(0).tag, "cloneapi");
}

TEST_F(UtilTest, safeFileOpenOfAMissingFileToReadIsNull) {
    EXPECT_EQ(CVXCloneUtil::SafeFileOpen("/tmp/area/missing", "r"), nullptr);
    EXPECT_EQ(tv.messages().size(), 1U);
}

TEST_F(UtilTest, safeFileOpenOfAMissingFileToWriteMakesIt) {
    std::FILE* const file = CVXCloneUtil::SafeFileOpen("/tmp/area/new", "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_TRUE(fs::exists(work("new")));
}

TEST_F(UtilTest, safeFileOpenOfALinkIsRefusedBeforeItIsOpened) {
    fs::create_symlink(work("target"), work("link"));
    EXPECT_EQ(CVXCloneUtil::SafeFileOpen("/tmp/area/link", "w"), nullptr);
    EXPECT_FALSE(fs::exists(work("target")));
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 SafeFileOpen: strPath: /tmp/area/link strMode: w",
                                             "E/35 SafeFileOpen: /tmp/area/link is symbolic link"));
}

TEST_F(UtilTest, readStringPresentsTheCredentialAndReleasesTheBuffer) {
    std::string value = "before";
    EXPECT_TRUE(CVXCloneUtil::SSReadString("VX_CLONE_API_AES_KEY", value));
    EXPECT_EQ(value, key);
    EXPECT_THAT(tv.transcript(), ElementsAre(kCredential, kReadKey, kRelease, readLine(0)));
}

TEST_F(UtilTest, readStringDropsOneNulAtTheEnd) {
    tv.setSecret("entry", std::string("ab\0", 3));
    std::string value;
    EXPECT_TRUE(CVXCloneUtil::SSReadString("entry", value));
    EXPECT_EQ(value, "ab");
    tv.setSecret("entry", std::string("a\0b\0\0", 5));
    EXPECT_TRUE(CVXCloneUtil::SSReadString("entry", value));
    EXPECT_EQ(value, std::string("a\0b\0", 4));
}

TEST_F(UtilTest, readStringOfAnEmptyEntryIsTrueAndLeavesTheValue) {
    tv.setSecret("entry", "");
    std::string value = "before";
    EXPECT_TRUE(CVXCloneUtil::SSReadString("entry", value));
    EXPECT_EQ(value, "before");
}

TEST_F(UtilTest, readStringOfALoneNulEmptiesTheValue) {
    tv.setSecret("entry", std::string(1, '\0'));
    std::string value = "before";
    EXPECT_TRUE(CVXCloneUtil::SSReadString("entry", value));
    EXPECT_EQ(value, "");
}

TEST_F(UtilTest, readStringThatFailsLeavesTheValue) {
    std::string value = "before";
    EXPECT_FALSE(CVXCloneUtil::SSReadString("missing", value));
    EXPECT_EQ(value, "before");
    EXPECT_EQ(tv.describedLog().back(), readLine(-1));
}

TEST_F(UtilTest, installWhereTheKeyIsThereDoesNothing) {
    EXPECT_TRUE(CVXCloneUtil::InstallAESKeyFromBin("/keys.bin", false));
    EXPECT_THAT(tv.callsOf("wqd_install_from_file"), IsEmpty());
    EXPECT_EQ(tv.describedLog().back(), "E/35 InstallAESKeyFromBin: keys Already Installed");
}

TEST_F(UtilTest, installByForceReadsNothingFirst) {
    EXPECT_TRUE(CVXCloneUtil::InstallAESKeyFromBin("/keys.bin", true));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 InstallAESKeyFromBin: Start Installation", kInstall,
                            "E/35 InstallAESKeyFromBin: [InstallAESKeyFromBin] - install ok"));
}

TEST_F(UtilTest, installWhereTheKeyIsEmptyInstalls) {
    tv.setSecret("VX_CLONE_API_AES_KEY", "");
    EXPECT_TRUE(CVXCloneUtil::InstallAESKeyFromBin("/keys.bin", false));
    EXPECT_EQ(tv.callsOf("wqd_install_from_file").size(), 1U);
}

TEST_F(UtilTest, installStatusTwoIsASuccess) {
    tv.answer("wqd_install_from_file", 2);
    EXPECT_TRUE(CVXCloneUtil::InstallAESKeyFromBin("/keys.bin", true));
}

TEST_F(UtilTest, installOfAnyOtherStatusFailsWithIt) {
    for (const int status : {1, 3, -1, 4, -2}) {
        tv.answer("wqd_install_from_file", status);
        EXPECT_FALSE(CVXCloneUtil::InstallAESKeyFromBin("/keys.bin", true));
        EXPECT_EQ(tv.describedLog().back(),
                  "E/35 InstallAESKeyFromBin: [InstallAESKeyFromBin] - install fail [ret-" +
                      std::to_string(status) + "]");
    }
}

TEST_F(UtilTest, keyPairThatIsThereIsReadWithoutInstallation) {
    std::string readKey;
    std::string readIv;
    EXPECT_TRUE(CVXCloneUtil::GetAESInfo(readKey, readIv, "/keys.bin"));
    EXPECT_EQ(readKey, key);
    EXPECT_EQ(readIv, iv);
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 GetAESInfo: sDestinationPath[/keys.bin]", kCredential, kReadKey, kRelease,
                            readLine(0), kCredential, kReadIv, kRelease, readLine(0)));
}

TEST_F(UtilTest, keyPairWithoutReadyStorageIsNotTouched) {
    fs::remove("/tmp/securestorage-ready");
    std::string readKey;
    std::string readIv;
    EXPECT_FALSE(CVXCloneUtil::GetAESInfo(readKey, readIv, "/keys.bin"));
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 GetAESInfo: Securestorage Isn't Ready"));
}

TEST_F(UtilTest, keyPairThatIsMissingIsInstalledOnceAndReadAgain) {
    tv.reset();
    tv.setInstalledSecrets({{"VX_CLONE_API_AES_KEY", key}, {"VX_CLONE_API_AES_IV", iv}});
    std::string readKey;
    std::string readIv;
    EXPECT_TRUE(CVXCloneUtil::GetAESInfo(readKey, readIv, "/keys.bin"));
    EXPECT_EQ(readKey, key);
    EXPECT_EQ(readIv, iv);
    EXPECT_THAT(
        tv.transcript(),
        ElementsAre("E/35 GetAESInfo: sDestinationPath[/keys.bin]", kCredential, kReadKey, readLine(-1),
                    kCredential, kReadIv, readLine(-1), "E/35 GetAESInfo: AES key not found", kCredential,
                    kReadKey, readLine(-1), "E/35 InstallAESKeyFromBin: Start Installation", kInstall,
                    "E/35 InstallAESKeyFromBin: [InstallAESKeyFromBin] - install ok",
                    "E/35 GetAESInfo: sDestinationPath[]", kCredential, kReadKey, kRelease, readLine(0),
                    kCredential, kReadIv, kRelease, readLine(0)));
}

TEST_F(UtilTest, keyPairThatStaysMissingFailsAfterOneInstallation) {
    tv.reset();
    std::string readKey;
    std::string readIv;
    EXPECT_FALSE(CVXCloneUtil::GetAESInfo(readKey, readIv, "/keys.bin"));
    EXPECT_EQ(tv.callsOf("wqd_install_from_file").size(), 1U);
    const auto messages = tv.messages();
    EXPECT_EQ(messages[messages.size() - 2], "AES key not found");
    EXPECT_EQ(messages.back(), "AES key not found after Re-installed...");
}

TEST_F(UtilTest, keyPairWhoseVectorAloneIsMissingIsNotInstalledOverThePresentKey) {
    tv.setSecret("VX_CLONE_API_AES_IV", "");
    tv.setInstalledSecrets({{"VX_CLONE_API_AES_IV", iv}});
    std::string readKey;
    std::string readIv;
    EXPECT_FALSE(CVXCloneUtil::GetAESInfo(readKey, readIv, "/keys.bin"));
    EXPECT_THAT(tv.callsOf("wqd_install_from_file"), IsEmpty());
    EXPECT_THAT(tv.messages(), testing::Contains("keys Already Installed"));
}

TEST_F(UtilTest, keyPairWithoutKeyFileIsNotInstalled) {
    tv.reset();
    std::string readKey;
    std::string readIv;
    EXPECT_FALSE(CVXCloneUtil::GetAESInfo(readKey, readIv, ""));
    EXPECT_THAT(tv.callsOf("wqd_install_from_file"), IsEmpty());
}

TEST_F(UtilTest, keyPairChecksReadinessAgainAfterTheInstallation) {
    tv.reset();
    tv.onCall("wqd_install_from_file", [] { fs::remove("/tmp/securestorage-ready"); });
    std::string readKey;
    std::string readIv;
    EXPECT_FALSE(CVXCloneUtil::GetAESInfo(readKey, readIv, "/keys.bin"));
    EXPECT_EQ(tv.messages().back(), "Securestorage Isn't Ready");
}

/// The enciphered text, computed without files.
std::string cipherText(const std::string& text, const std::string& key, const std::string& iv) {
    EVP_CIPHER_CTX* const context = EVP_CIPHER_CTX_new();
    std::string output(text.size() + 32, '\0');
    const auto bytes = [](const std::string& from) {
        return reinterpret_cast<const unsigned char*>(from.data());
    };
    auto* const to = reinterpret_cast<unsigned char*>(output.data());
    int length = 0;
    int rest = 0;
    EVP_EncryptInit_ex(context, EVP_aes_256_cbc(), nullptr, bytes(key), bytes(iv));
    EVP_EncryptUpdate(context, to, &length, bytes(text), static_cast<int>(text.size()));
    EVP_EncryptFinal_ex(context, to + length, &rest);
    EVP_CIPHER_CTX_free(context);
    output.resize(static_cast<std::size_t>(length + rest));
    return output;
}

class CipherSizeTest : public IntegrityTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(CipherSizeTest, fileIsEncipheredAsAWholeAndComesBack) {
    const std::string plain = someBytes(GetParam());
    writeFile(work("plain"), plain);
    EXPECT_TRUE(encipher(work("plain"), work("ciphered")));
    EXPECT_EQ(readFile(work("ciphered")), cipherText(plain, key, iv));
    EXPECT_EQ(readFile(work("ciphered")).size(), (GetParam() / 16 + 1) * 16);
    EXPECT_TRUE(decipher(work("ciphered"), work("again")));
    EXPECT_EQ(readFile(work("again")), plain);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CipherSizeTest,
                         testing::Values(0, 1, 15, 16, 17, 1023, 1024, 1025, 2048, 4096, 5000, 65536,
                                         100000));

TEST_F(UtilTest, cipherUsesTheFirstBytesOfALongerPair) {
    writeFile(work("plain"), "text");
    EXPECT_TRUE(CVXCloneUtil::EncryptDecryptFile("/tmp/area/plain", "/tmp/area/out", key + "more",
                                                 iv + "more", CRYPT_OP_ENCRYPT));
    EXPECT_EQ(readFile(work("out")), cipherText("text", key, iv));
}

TEST_F(UtilTest, cipherOverAnOldOutputReplacesIt) {
    writeFile(work("plain"), "text");
    writeFile(work("out"), std::string(5000, 'x'));
    EXPECT_TRUE(encipher(work("plain"), work("out")));
    EXPECT_EQ(readFile(work("out")).size(), 16U);
}

TEST_F(UtilTest, cipherOfAMissingInputFailsAndMakesNoOutput) {
    EXPECT_FALSE(encipher(work("missing"), work("out")));
    EXPECT_FALSE(fs::exists(work("out")));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 SafeFileOpen: strPath: /tmp/area/missing strMode: rb",
                            "E/35 EncryptDecryptFile: unable to open read file = [/tmp/area/missing]"));
}

TEST_F(UtilTest, cipherOfALinkAsInputIsRefused) {
    writeFile(work("plain"), "text");
    fs::create_symlink(work("plain"), work("link"));
    EXPECT_FALSE(encipher(work("link"), work("out")));
    EXPECT_FALSE(fs::exists(work("out")));
}

TEST_F(UtilTest, cipherOntoALinkIsRefusedAndMakesNoFile) {
    writeFile(work("plain"), "text");
    fs::create_symlink(work("target"), work("link"));
    EXPECT_FALSE(encipher(work("plain"), work("link")));
    EXPECT_FALSE(fs::exists(work("target")));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 SafeFileOpen: strPath: /tmp/area/plain strMode: rb",
                            "E/35 SafeFileOpen: strPath: /tmp/area/link strMode: wb",
                            "E/35 SafeFileOpen: /tmp/area/link is symbolic link",
                            "E/35 EncryptDecryptFile: unable to open write file = [/tmp/area/link]"));
}

TEST_F(UtilTest, decipherWithAWrongKeyFailsInTheFinalStepAndLeavesWhatWasWritten) {
    writeFile(work("plain"), someBytes(5000));
    ASSERT_TRUE(encipher(work("plain"), work("ciphered")));
    const std::string wrongKey(32, 'w');
    EXPECT_FALSE(CVXCloneUtil::EncryptDecryptFile("/tmp/area/ciphered", "/tmp/area/out", wrongKey, iv,
                                                  CRYPT_OP_DECRYPT));
    EXPECT_EQ(readFile(work("out")).size(), 4992U);
    EXPECT_THAT(
        tv.describedLog().back(),
        testing::AllOf(
            StartsWith("E/35 sm_EncryptDecryptFile: ERROR: EVP_CipherFinal_ex failed. OpenSSL error: error:"),
            EndsWith("\n")));
}

TEST_F(UtilTest, decipherOfATruncatedFileFails) {
    writeFile(work("ciphered"), std::string(17, 'x'));
    EXPECT_FALSE(decipher(work("ciphered"), work("out")));
    EXPECT_THAT(tv.messages().back(), StartsWith("ERROR: EVP_CipherFinal_ex failed."));
}

TEST_F(UtilTest, cipherOfADirectoryIsAReadError) {
    fs::create_directories(work("directory"));
    EXPECT_FALSE(encipher(work("directory"), work("out")));
    EXPECT_EQ(tv.describedLog().back(), "E/35 sm_EncryptDecryptFile: ERROR: fread error");
}

TEST_F(UtilTest, cipherOntoAFullDiskIsAWriteErrorHoweverLittleItIs) {
    for (const std::size_t size : {0U, 100U, 4096U, 65536U, 300000U}) {
        writeFile(work("plain"), someBytes(size));
        EXPECT_FALSE(encipher(work("plain"), "/dev/full")) << size;
        EXPECT_EQ(tv.describedLog().back(), "E/35 sm_EncryptDecryptFile: ERROR: fwrite error") << size;
    }
}

}  // namespace
}  // namespace vxtest
