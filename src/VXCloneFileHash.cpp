#include "VXCloneFileHash.h"

#include <array>

namespace {

constexpr std::uint32_t power(std::uint32_t base, unsigned exponent) {
    std::uint32_t result = 1;
    for (; exponent > 0; --exponent) {
        result *= base;
    }
    return result;
}

// A row of bytes is split into groups of four. The hash is linear, so each group can have a hash of its own
// that is continued from row to row. This removes the dependency on the previous byte, and a compiler can
// compute many groups at once.
constexpr unsigned kGroup = 4;
constexpr unsigned kGroups = 32;
constexpr std::size_t kRow = std::size_t{kGroup} * kGroups;
constexpr std::uint32_t kGroupFactor = power(3, kGroup);
constexpr std::uint32_t kRowFactor = power(3, kRow);

// Bytes are shifted into the range 0 to 255, so that a group's hash can be computed in the two halves of one
// word without a borrow between them. The shift adds this value: 128 * (27 + 9 + 3 + 1).
constexpr std::uint32_t kSignBits = 0x80808080U;
constexpr std::uint32_t kShiftOfGroup = 128U * 40U;
constexpr std::uint32_t kEvenBytes = 0x00FF00FFU;
constexpr std::uint32_t kLowHalf = 0xFFFFU;

std::uint32_t hashOfGroup(const unsigned char* bytes) {
    std::uint32_t word = std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8U |
                         std::uint32_t{bytes[2]} << 16U | std::uint32_t{bytes[3]} << 24U;
    word ^= kSignBits;
    const std::uint32_t pairs = (word & kEvenBytes) * 3 + ((word >> 8U) & kEvenBytes);
    return (pairs & kLowHalf) * 9 + (pairs >> 16U) - kShiftOfGroup;
}

std::uint32_t hashOfBytes(std::uint32_t hash, const unsigned char* bytes, std::size_t count) {
    for (std::size_t at = 0; at < count; ++at) {
        hash = hash * 3 + static_cast<std::uint32_t>(static_cast<signed char>(bytes[at]));
    }
    return hash;
}

}  // namespace

std::uint32_t VXCloneFileHash(std::uint32_t hash, const unsigned char* bytes, std::size_t count) {
    const std::size_t rows = count / kRow;
    if (rows > 0) {
        std::array<std::uint32_t, kGroups> groups{};
        groups.back() = hash;
        for (std::size_t row = 0; row < rows; ++row, bytes += kRow) {
            for (std::size_t group = 0; group < kGroups; ++group) {
                groups[group] = groups[group] * kRowFactor + hashOfGroup(bytes + kGroup * group);
            }
        }
        hash = 0;
        for (const std::uint32_t group : groups) {
            hash = hash * kGroupFactor + group;
        }
    }
    return hashOfBytes(hash, bytes, count % kRow);
}
