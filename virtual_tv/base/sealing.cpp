#include "virtual_tv/base/sealing.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <algorithm>
#include <memory>

namespace vxtv {

namespace {

tl::unexpected<Error> cryptoFailure() {
    return failure(ErrorCode::Io, "libcrypto cannot do its work; check that memory is not short");
}

struct FreeContext {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, FreeContext>;

const unsigned char* bytesOf(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* bytesOf(std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
}

int lengthOf(std::string_view text) {
    return static_cast<int>(text.size());
}

}  // namespace

SealingKey::SealingKey(std::string_view bytes) {
    std::copy_n(bytes.begin(), kSize, bytes_.begin());
}

SealingKey::~SealingKey() {
    OPENSSL_cleanse(bytes_.data(), bytes_.size());
}

Result<SealingKey> SealingKey::derive(std::string_view purpose) const {
    std::string derived(kSize, '\0');
    unsigned int length = 0;
    if (HMAC(EVP_sha256(), bytes_.data(), static_cast<int>(kSize), bytesOf(purpose), purpose.size(),
             bytesOf(derived), &length) == nullptr ||
        length != kSize) {
        return cryptoFailure();
    }
    const SealingKey key(derived);
    OPENSSL_cleanse(derived.data(), derived.size());
    return key;
}

Result<std::string> randomBytes(std::size_t count) {
    std::string bytes(count, '\0');
    if (RAND_bytes(bytesOf(bytes), static_cast<int>(count)) != 1) {
        return failure(ErrorCode::Io, "the system gives no random bytes; check that /dev/urandom is there");
    }
    return bytes;
}

Result<std::string> seal(const SealingKey& key, std::string_view nonce, std::string_view plain,
                         std::string_view context) {
    const Context cipher(EVP_CIPHER_CTX_new());
    std::string sealed(plain.size() + kTagSize, '\0');
    unsigned char* const tag = bytesOf(sealed) + plain.size();
    int length = 0;
    const bool done =
        cipher != nullptr &&
        EVP_EncryptInit_ex(cipher.get(), EVP_aes_256_gcm(), nullptr, key.data(), bytesOf(nonce)) == 1 &&
        EVP_EncryptUpdate(cipher.get(), nullptr, &length, bytesOf(context), lengthOf(context)) == 1 &&
        EVP_EncryptUpdate(cipher.get(), bytesOf(sealed), &length, bytesOf(plain), lengthOf(plain)) == 1 &&
        EVP_EncryptFinal_ex(cipher.get(), tag, &length) == 1 &&
        EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_GET_TAG, static_cast<int>(kTagSize), tag) == 1;
    return done ? Result<std::string>(std::move(sealed)) : cryptoFailure();
}

Result<std::string> unseal(const SealingKey& key, std::string_view nonce, std::string_view sealed,
                           std::string_view context) {
    const auto broken = failure(ErrorCode::BrokenSeal, "the seal does not hold");
    if (sealed.size() < kTagSize) {
        return broken;
    }
    const std::string_view enciphered = sealed.substr(0, sealed.size() - kTagSize);
    std::string tag(sealed.substr(enciphered.size()));
    std::string plain(enciphered.size() + 1, '\0');  // never empty, so that its address is a place to write
    const Context cipher(EVP_CIPHER_CTX_new());
    int length = 0;
    const bool ready =
        cipher != nullptr &&
        EVP_DecryptInit_ex(cipher.get(), EVP_aes_256_gcm(), nullptr, key.data(), bytesOf(nonce)) == 1 &&
        EVP_DecryptUpdate(cipher.get(), nullptr, &length, bytesOf(context), lengthOf(context)) == 1 &&
        EVP_DecryptUpdate(cipher.get(), bytesOf(plain), &length, bytesOf(enciphered), lengthOf(enciphered)) ==
            1 &&
        EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_SET_TAG, static_cast<int>(kTagSize), tag.data()) == 1;
    if (!ready) {
        return cryptoFailure();
    }
    if (EVP_DecryptFinal_ex(cipher.get(), bytesOf(plain) + enciphered.size(), &length) != 1) {
        return broken;
    }
    plain.pop_back();
    return plain;
}

std::string toBytes(const Credential& credential) {
    return std::string(credential.identifier.data(), credential.identifier.size()) +
           toBigEndian(static_cast<std::uint32_t>(credential.owner)) +
           toBigEndian(static_cast<std::uint32_t>(credential.group));
}

Credential credentialIn(std::string_view bytes) {
    Credential credential;
    const std::size_t length = credential.identifier.size();
    std::copy_n(bytes.begin(), length, credential.identifier.begin());
    credential.owner = static_cast<std::int32_t>(fromBigEndian(bytes.substr(length)));
    credential.group = static_cast<std::int32_t>(fromBigEndian(bytes.substr(length + kNumberSize)));
    return credential;
}

}  // namespace vxtv
