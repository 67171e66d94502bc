#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// 32 secret bytes. The destructor wipes them.
class SealingKey {
 public:
    static constexpr std::size_t kSize = 32;

    /// Before: `bytes` has `kSize` bytes.
    explicit SealingKey(std::string_view bytes);
    SealingKey(const SealingKey&) = default;
    SealingKey& operator=(const SealingKey&) = default;
    ~SealingKey();

    const unsigned char* data() const { return bytes_.data(); }

    /// A separate key for each purpose, from which neither this key nor another one can be computed:
    /// HMAC-SHA256 of the purpose under this key. Errors: Io if libcrypto fails.
    Result<SealingKey> derive(std::string_view purpose) const;

 private:
    std::array<unsigned char, kSize> bytes_{};
};

/// The sizes of the nonce of AES-256-GCM, and of the tag that it adds.
inline constexpr std::size_t kNonceSize = 12;
inline constexpr std::size_t kTagSize = 16;

/// Random bytes for keys and nonces. Errors: Io if the system has none.
Result<std::string> randomBytes(std::size_t count);

/// Enciphers `plain` with AES-256-GCM and binds it to `context`, which is not part of the result. Result: as
/// many bytes as `plain`, followed by the tag. Errors: Io if libcrypto fails. Before: `nonce` has
/// `kNonceSize` bytes and was never used with this key.
Result<std::string> seal(const SealingKey& key, std::string_view nonce, std::string_view plain,
                         std::string_view context);

/// The text that was sealed. Errors: BrokenSeal if key, nonce or context differ or a byte of `sealed` was
/// changed; Io if libcrypto fails.
Result<std::string> unseal(const SealingKey& key, std::string_view nonce, std::string_view sealed,
                           std::string_view context);

inline constexpr std::size_t kNumberSize = 4;

/// The number as four bytes, big-endian.
inline std::string toBigEndian(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes +=
            static_cast<char>(static_cast<unsigned char>((number >> static_cast<unsigned>(shift)) & 0xFFU));
    }
    return bytes;
}

/// The number in the first four bytes. Before: there are at least four.
inline std::uint32_t fromBigEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char byte : bytes.substr(0, kNumberSize)) {
        number = (number << 8U) | static_cast<unsigned char>(byte);
    }
    return number;
}

/// The owner of a secret, or the process that asks for one.
struct Credential {
    std::array<char, 20> identifier{};
    std::int32_t owner = 0;
    std::int32_t group = 0;

    bool operator==(const Credential&) const = default;
};

/// How many bytes a credential takes in a file.
inline constexpr std::size_t kCredentialSize = 28;

/// The credential as bytes for a file: the identifier, the owner and the group, with big-endian numbers.
std::string toBytes(const Credential& credential);

/// The credential in the first `kCredentialSize` bytes. Before: there are at least as many.
Credential credentialIn(std::string_view bytes);

}  // namespace vxtv
