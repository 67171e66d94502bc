#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vxtv {

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
