#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace vxtest {

// The sum of the seal, computed from its description and without the library's code, as an attacker would do.
// The hash of a file is continued from byte to byte as hash * 3 + byte, with signed bytes, in 32 bits. The
// sum is that of the hashes of all files.

std::uint32_t hashOf(const std::string& content);

/// The sum of a package's files without the seal.
std::uint32_t sumOf(const std::filesystem::path& package);

/// A content of a few bytes with this hash.
std::string bytesOfHash(std::uint32_t hash);

}  // namespace vxtest
