#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

// The index of a package of the application's data: index.json, an object with "format", "version",
// "application" and "files". Each file has "name", "size" and "sha256".

inline constexpr const char* kIndexName = "index.json";
inline constexpr std::size_t kLargestIndex = 256U << 10U;
inline constexpr std::size_t kLargestFile = 16U << 20U;
inline constexpr std::size_t kLargestPackage = 64U << 20U;
inline constexpr std::size_t kMostFiles = 256;

/// A file of a package.
struct IndexEntry {
    std::string name;  ///< "hotel.db", or "pictures/" and a plain name
    std::uint64_t size = 0;
    std::string sha256;  ///< in hexadecimal digits
};

IndexEntry describe(const std::string& name, std::string_view bytes);

/// Whether the bytes match the entry.
bool fits(const IndexEntry& entry, std::string_view bytes);

/// Errors: BadArgument for a name that is not UTF-8.
Result<std::string> indexText(const std::string& application, const std::vector<IndexEntry>& files);

/// Reads an untrusted index. It must be the application's own, have a known version, contain the database and
/// no file twice, and be within the limits above. Errors: NotABackupFile, OtherVersion, OtherService for
/// another application's index.
Result<std::vector<IndexEntry>> readIndex(const std::filesystem::path& file, const std::string& application);

}  // namespace vxtv::hotel
