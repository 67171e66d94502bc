#include "cloning_app/package/package_key.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <algorithm>
#include <memory>

#include "cloning_app/package/digest.h"
#include "platform/secure_storage.h"

namespace vxclone {

namespace {

// This application to the secure storage.
constexpr std::string_view kIdentifier = "VXCLONE-PACKAGE-KEY1";
static_assert(kIdentifier.size() == sizeof ss_credential::identifier);
constexpr int kOwner = 1;
constexpr int kGroup = 0;
constexpr int kReserved = 0;
constexpr int kReadFlags = 33;

/// Leaves nothing of a secret in the memory that is given back.
struct WipeAndFree {
    std::size_t size;

    void operator()(char* secret) const {
        OPENSSL_cleanse(secret, size);
        ss_free_buffer(secret);
    }
};

/// A secret may end in a NUL that is part of its length.
std::string_view withoutLastNul(std::string_view secret) {
    const bool ends = secret.size() == PackageKey::kBytes + 1 && secret.back() == '\0';
    return ends ? secret.substr(0, PackageKey::kBytes) : secret;
}

}  // namespace

PackageKey::PackageKey(std::string_view bytes) {
    std::copy(bytes.begin(), bytes.end(), bytes_.begin());
}

PackageKey::PackageKey(PackageKey&& other) noexcept : bytes_(other.bytes_) {
    OPENSSL_cleanse(other.bytes_.data(), other.bytes_.size());
}

PackageKey::~PackageKey() {
    OPENSSL_cleanse(bytes_.data(), bytes_.size());
}

std::optional<PackageKey> PackageKey::ofTelevision() {
    char* data = nullptr;
    std::size_t length = 0;
    const int status = ss_read(&data, &length, kReserved, kReserved, kPackageKeyEntry,
                               ss_init_credential(kIdentifier.data(), kOwner, kGroup), kReadFlags);
    const std::unique_ptr<char, WipeAndFree> owned(data, WipeAndFree{length});
    if (status != 0 || !owned) {
        return std::nullopt;
    }
    const std::string_view secret = withoutLastNul({owned.get(), length});
    return secret.size() == kBytes ? std::optional(PackageKey(secret)) : std::nullopt;
}

std::string PackageKey::codeOf(std::string_view text) const {
    std::array<unsigned char, EVP_MAX_MD_SIZE> code{};
    unsigned size = 0;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    const bool made = HMAC(EVP_sha256(), bytes_.data(), static_cast<int>(bytes_.size()), bytes, text.size(),
                           code.data(), &size) != nullptr;
    return made ? hexText(std::string(code.begin(), code.begin() + size)) : std::string();
}

bool PackageKey::accepts(std::string_view text, std::string_view code) const {
    const std::string right = codeOf(text);
    return !right.empty() && right.size() == code.size() &&
           CRYPTO_memcmp(right.data(), code.data(), code.size()) == 0;
}

}  // namespace vxclone
