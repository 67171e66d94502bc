#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vxtv {

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
