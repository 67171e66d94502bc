#include "VXCloneUtil.h"

#include <openssl/aes.h>
#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <array>
#include <boost/filesystem.hpp>
#include <vector>

#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"
#include "VXCloneResources.h"
#include "platform/secure_storage.h"
#include "platform/wqd.h"

namespace {

// The library's identifier for the secure storage: 20 bytes, the same on every television of a deployment. A
// port sets its own here.
constexpr char kIdentifierOwner[] = "VXCL";
constexpr char kIdentifierService[] = "ONE-HOTE";
constexpr char kIdentifierVersion[] = "L-KEY-01";
constexpr int kCredentialOwner = 1;
constexpr int kCredentialGroup = 0;
constexpr int kReadFlags = 33;

// The target for the installer, and the status that means that the key was already installed.
constexpr int kInstallTarget = 2;
constexpr int kInstallOption = 0;
constexpr int kAlreadyInstalled = 2;

constexpr int AES_256_KEY_SIZE = 32;
constexpr std::size_t kCipherBlock = 1024;
// The buffer size of a stream: few system calls for many blocks.
constexpr std::size_t kStreamBuffer = std::size_t{64} * 1024;

ss_credential makeCredential() {
    const std::string identifier = std::string(kIdentifierOwner) + kIdentifierService + kIdentifierVersion;
    return ss_init_credential(identifier.c_str(), kCredentialOwner, kCredentialGroup);
}

// The log lines of the cipher keep the function name that readers of the log know.
#define VX_CIPHER_LOG(message) VX_LOG_AS("sm_EncryptDecryptFile", Error, message)
#define VX_CIPHER_ERROR(operation)                                                                 \
    VX_LOGF_AS("sm_EncryptDecryptFile", Error, "ERROR: " operation " failed. OpenSSL error: %s\n", \
               ERR_error_string(ERR_get_error(), nullptr))

bool initialise(EVP_CIPHER_CTX* context, const EVP_CIPHER* cipher, const std::string* key,
                const std::string* iv, eCRYPT_OP_TYPE type) {
    const auto bytes = [](const std::string* text) {
        return text == nullptr ? nullptr : reinterpret_cast<const unsigned char*>(text->data());
    };
    if (EVP_CipherInit_ex(context, cipher, nullptr, bytes(key), bytes(iv), type) != 1) {
        VX_CIPHER_ERROR("EVP_CipherInit_ex");
        return false;
    }
    return true;
}

bool isSound(std::FILE* output) {
    if (std::ferror(output) != 0) {
        VX_CIPHER_LOG("ERROR: fwrite error");
        return false;
    }
    return true;
}

bool cipherStream(EVP_CIPHER_CTX* context, std::FILE* input, std::FILE* output) {
    std::array<unsigned char, kCipherBlock> plain{};
    std::array<unsigned char, kCipherBlock + EVP_MAX_BLOCK_LENGTH> ciphered{};
    int produced = 0;
    std::size_t count = 0;
    do {
        count = std::fread(plain.data(), 1, plain.size(), input);
        if (std::ferror(input) != 0) {
            VX_CIPHER_LOG("ERROR: fread error");
            return false;
        }
        if (EVP_CipherUpdate(context, ciphered.data(), &produced, plain.data(), static_cast<int>(count)) !=
            1) {
            VX_CIPHER_ERROR("EVP_CipherUpdate");
            return false;
        }
        std::fwrite(ciphered.data(), 1, static_cast<std::size_t>(produced), output);
        if (!isSound(output)) {
            return false;
        }
    } while (count >= plain.size());

    if (EVP_CipherFinal_ex(context, ciphered.data(), &produced) != 1) {
        VX_CIPHER_ERROR("EVP_CipherFinal_ex");
        return false;
    }
    std::fwrite(ciphered.data(), 1, static_cast<std::size_t>(produced), output);
    // Flushed here, so that a full disk is noticed while the failure can still be returned.
    std::fflush(output);
    return isSound(output);
}

}  // namespace

std::FILE* CVXCloneUtil::SafeFileOpen(std::string path, std::string mode) {
    VX_LOGF(Error, "strPath: %s strMode: %s", path.c_str(), mode.c_str());
    boost::system::error_code ignored;
    if (boost::filesystem::is_symlink(boost::filesystem::symlink_status(path, ignored))) {
        VX_LOGF(Error, VX_TEXT_SYMBOLIC_LINK, path.c_str());
        return nullptr;
    }
    return std::fopen(path.c_str(), mode.c_str());
}

bool CVXCloneUtil::SSReadString(const std::string& name, std::string& value) {
    char* data = nullptr;
    std::size_t length = 0;
    const int status = ss_read(&data, &length, 0, 0, name.c_str(), makeCredential(), kReadFlags);
    if (status == 0 && data != nullptr && length != 0) {
        if (data[length - 1] == '\0') {
            --length;
        }
        value.assign(data, length);
        ss_free_buffer(data);
    }
    VX_LOGF(Error, "[QrSecureStorageUtil::SSReadString], nRet[%d]", status);
    return status == 0;
}

bool CVXCloneUtil::InstallAESKeyFromBin(const std::string& path, bool force) {
    if (!force) {
        std::string key;
        if (SSReadString(kAesKeyEntry, key) && !key.empty()) {
            VX_LOG(Error, "keys Already Installed");
            return true;
        }
    }
    VX_LOG(Error, "Start Installation");
    const int status = wqd_install_from_file(path.c_str(), kInstallTarget, kInstallOption);
    if ((status & ~kAlreadyInstalled) != 0) {
        VX_LOGF(Error, "[InstallAESKeyFromBin] - install fail [ret-%d]", status);
        return false;
    }
    VX_LOG(Error, "[InstallAESKeyFromBin] - install ok");
    return true;
}

bool CVXCloneUtil::GetAESInfo(std::string& key, std::string& iv, const std::string& path) {
    if (access(kSecureStorageReady, F_OK) != 0) {
        VX_LOG(Error, "Securestorage Isn't Ready");
        return false;
    }
    VX_LOGF(Error, "sDestinationPath[%s]", path.c_str());
    SSReadString(kAesKeyEntry, key);
    SSReadString(kAesIvEntry, iv);
    if (!key.empty() && !iv.empty()) {
        return true;
    }
    VX_LOG(Error, "AES key not found");
    if (path.empty()) {
        VX_LOG(Error, "AES key not found after Re-installed...");
        return false;
    }
    InstallAESKeyFromBin(path, false);
    return GetAESInfo(key, iv, "");
}

bool CVXCloneUtil::EncryptDecryptFile(const std::string& input, const std::string& output,
                                      const std::string& key, const std::string& iv, eCRYPT_OP_TYPE type) {
    const EVP_CIPHER* const cipher = EVP_aes_256_cbc();
    // Declared before the streams, because they must outlive them.
    std::vector<char> inputBuffer(kStreamBuffer);
    std::vector<char> outputBuffer(kStreamBuffer);
    const VXCloneFile source(SafeFileOpen(input, "rb"));
    if (source == nullptr) {
        VX_LOGF(Error, "unable to open read file = [%s]", input.c_str());
        return false;
    }
    std::setvbuf(source.get(), inputBuffer.data(), _IOFBF, inputBuffer.size());
    const VXCloneFile target(SafeFileOpen(output, "wb"));
    if (target == nullptr) {
        VX_LOGF(Error, "unable to open write file = [%s]", output.c_str());
        return false;
    }
    std::setvbuf(target.get(), outputBuffer.data(), _IOFBF, outputBuffer.size());
    // Intended: reset at the end and never freed. The leak is small and accepted.
    EVP_CIPHER_CTX* const ctx = EVP_CIPHER_CTX_new();
    if (ctx == nullptr) {
        VX_CIPHER_ERROR("EVP_CIPHER_CTX_new");
        return false;
    }
    bool done = initialise(ctx, cipher, nullptr, nullptr, type);
    if (done) {
        OPENSSL_assert(EVP_CIPHER_CTX_key_length(ctx) == AES_256_KEY_SIZE);
        OPENSSL_assert(EVP_CIPHER_CTX_iv_length(ctx) == AES_BLOCK_SIZE);
        done = initialise(ctx, nullptr, &key, &iv, type) && cipherStream(ctx, source.get(), target.get());
    }
    EVP_CIPHER_CTX_reset(ctx);
    return done;
}
