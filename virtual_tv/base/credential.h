#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vxtv {

/// Who a secret belongs to, and who asks for one.
struct Credential {
    std::array<char, 20> identifier{};
    std::int32_t owner = 0;
    std::int32_t group = 0;

    bool operator==(const Credential&) const = default;
};

/// How many bytes a credential takes in a file.
inline constexpr std::size_t kCredentialSize = 28;

/// The credential as it stands in files: the identifier, the owner and the group, the numbers big-endian.
std::string toBytes(const Credential& credential);

/// The credential in the first `kCredentialSize` bytes. Before: there are as many.
Credential credentialIn(std::string_view bytes);

}  // namespace vxtv
