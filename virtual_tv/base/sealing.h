#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// 32 secret bytes, wiped when the object goes.
class SealingKey {
 public:
    static constexpr std::size_t kSize = 32;

    /// Before: `bytes` are `kSize`.
    explicit SealingKey(std::string_view bytes);
    SealingKey(const SealingKey&) = default;
    SealingKey& operator=(const SealingKey&) = default;
    ~SealingKey();

    const unsigned char* data() const { return bytes_.data(); }

    /// A key of its own for each purpose, from which neither this one nor another can be found: HMAC-SHA256
    /// of the purpose under this key. Errors: Io when libcrypto fails.
    Result<SealingKey> derive(std::string_view purpose) const;

 private:
    std::array<unsigned char, kSize> bytes_{};
};

/// What AES-256-GCM needs beside the key, and adds to the text.
inline constexpr std::size_t kNonceSize = 12;
inline constexpr std::size_t kTagSize = 16;

/// Random bytes for keys and nonces. Errors: Io when the system gives none.
Result<std::string> randomBytes(std::size_t count);

/// Enciphers `plain` with AES-256-GCM and binds it to `context`, which stays outside. Result: as many bytes
/// as `plain`, and the tag behind them. Errors: Io when libcrypto fails.
/// Before: `nonce` has `kNonceSize` bytes and was never used with this key.
Result<std::string> seal(const SealingKey& key, std::string_view nonce, std::string_view plain,
                         std::string_view context);

/// The text that was sealed. Errors: BrokenSeal when key, nonce or context is another one or a byte of
/// `sealed` is not as it was; Io when libcrypto fails.
Result<std::string> unseal(const SealingKey& key, std::string_view nonce, std::string_view sealed,
                           std::string_view context);

inline constexpr std::size_t kNumberSize = 4;

/// The number as four bytes, the highest first.
inline std::string toBigEndian(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes +=
            static_cast<char>(static_cast<unsigned char>((number >> static_cast<unsigned>(shift)) & 0xFFU));
    }
    return bytes;
}

/// The number in the first four bytes. Before: there are four.
inline std::uint32_t fromBigEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (const char byte : bytes.substr(0, kNumberSize)) {
        number = (number << 8U) | static_cast<unsigned char>(byte);
    }
    return number;
}

}  // namespace vxtv
