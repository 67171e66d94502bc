#pragma once

#include <cstddef>
#include <cstdint>

/// Continues the hash of a file over its next bytes: for each byte, hash = hash * 3 + the byte as a signed
/// number, modulo 2^32. The hash of a file starts with 0. Result: the hash so far.
std::uint32_t VXCloneFileHash(std::uint32_t hash, const unsigned char* bytes, std::size_t count);
