// validate.txt: any bytes, any text enciphered with the clone key, or the seal over any file.

#include <climits>
#include <filesystem>

#include "VXCloneHandler.h"
#include "VXClonePaths.h"
#include "VXCloneUtil.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/scripted/scripted_platform.h"

namespace vxfuzz {
namespace {

namespace fs = std::filesystem;
using vxtest::ScriptedPlatform;

const std::string kKey = "0123456789abcdef0123456789ABCDEF";
const std::string kIv = "fedcba9876543210";
constexpr int kSeal = 0;
constexpr int kVerify = 1;
constexpr const char* kFile = "/tmp/area/file";
constexpr const char* kText = "/tmp/area/text";
constexpr std::size_t kCipherBlock = 16;

int check(int mode) {
    char drive[] = "/tmp/area/validate.txt";
    return VXCloneHandler().CheckHashValidity({kFile}, mode, drive);
}
std::string drive() {
    return "/tmp/area/validate.txt";
}

std::uint32_t hashOf(std::string_view content) {
    std::uint32_t hash = 0;
    for (const char byte : content) {
        hash = hash * 3 + static_cast<std::uint32_t>(static_cast<signed char>(byte));
    }
    return hash;
}

/// The number at the start of the first line, limited to 64 bits; 0 without a number. Only its low 32 bits
/// count.
std::uint32_t numberIn(std::string_view text) {
    const std::string line = upToNul(text.substr(0, text.find('\n')));
    std::size_t at = std::min(line.find_first_not_of(" \t\n\v\f\r"), line.size());
    const bool negative = at < line.size() && line[at] == '-';
    at += at < line.size() && (negative || line[at] == '+') ? 1U : 0U;
    const std::uint64_t most = std::uint64_t{LLONG_MAX} + (negative ? 1U : 0U);
    std::uint64_t number = 0;
    for (; at < line.size() && line[at] >= '0' && line[at] <= '9'; ++at) {
        const auto digit = static_cast<std::uint64_t>(line[at] - '0');
        number = number > (most - digit) / 10 ? most : number * 10 + digit;
    }
    return static_cast<std::uint32_t>(negative ? 0 - number : number);
}

void verifyAny(std::string_view bytes) {
    vxtest::writeFile(kFile, "A");
    vxtest::writeFile(drive(), bytes);
    const bool isDeciphered = CVXCloneUtil::EncryptDecryptFile(drive(), kText, kKey, kIv, CRYPT_OP_DECRYPT);
    require(!isDeciphered || (!bytes.empty() && bytes.size() % kCipherBlock == 0),
            "only whole blocks decipher");
    const bool fits = isDeciphered && numberIn(vxtest::readFile(kText)) == hashOf("A");
    require(check(kVerify) == (fits ? 1 : 0), "the seal holds when it deciphers to the hash");
    require(fs::exists(kPlainManifest) == !isDeciphered, "what was deciphered is removed");
}

void verifyText(Input input) {
    const std::string file(input.take(1));
    const std::string text(input.rest());
    vxtest::writeFile(kFile, file);
    vxtest::writeFile(kText, text);
    require(CVXCloneUtil::EncryptDecryptFile(kText, drive(), kKey, kIv, CRYPT_OP_ENCRYPT),
            "a text enciphers");
    require(check(kVerify) == (numberIn(text) == hashOf(file) ? 1 : 0),
            "the seal holds for its number alone");
    require(!fs::exists(kPlainManifest), "the number's file is removed");
}

void sealFile(std::string_view content) {
    vxtest::writeFile(kFile, content);
    require(check(kSeal) == 1 && check(kVerify) == 1, "a seal holds");
    require(CVXCloneUtil::EncryptDecryptFile(drive(), kText, kKey, kIv, CRYPT_OP_DECRYPT) &&
                vxtest::readFile(kText) == std::to_string(hashOf(content)),
            "a seal is the hash of the file");
    vxtest::writeFile(kFile, std::string(content) + '\1');
    require(check(kVerify) == (hashOf(content) * 3 + 1 == hashOf(content) ? 1 : 0),
            "a seal is of its file alone");
}

void run(std::string_view bytes) {
    ScriptedPlatform& tv = ScriptedPlatform::instance();
    tv.reset();
    tv.setSecret("VX_CLONE_API_AES_KEY", kKey);
    tv.setSecret("VX_CLONE_API_AES_IV", kIv);
    vxtest::writeFile(kSecureStorageReady, "");
    fs::create_directories(kCloneDirectory);
    fs::remove(kPlainManifest);
    Input input(bytes);
    switch (input.byte()) {
        case 't':
            return verifyText(input);
        case 's':
            return sealFile(input.rest());
        default:
            return verifyAny(input.rest());
    }
}

const Target kValidationFile("validation_file", run);

}  // namespace
}  // namespace vxfuzz
