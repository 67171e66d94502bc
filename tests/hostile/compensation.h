#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace vxtest {

// The sum that the seal holds, worked out from its description and not with the library's code: who forges
// has no more. The hash of a file is carried from byte to byte as hash * 3 + byte, the byte being signed, in
// 32 bits; the sum is that of the hashes of all files.

std::uint32_t hashOf(const std::string& content);

/// The sum of a package's files, the seal apart.
std::uint32_t sumOf(const std::filesystem::path& package);

/// A content with this hash, a few bytes long.
std::string bytesOfHash(std::uint32_t hash);

}  // namespace vxtest
