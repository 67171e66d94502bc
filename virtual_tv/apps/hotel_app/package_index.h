#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

// The list of what a package of the application's data holds, beside the data: index.json, an object with
// "format", "version", "application" and "files", of which each has "name", "size" and "sha256".

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

/// Whether the bytes are those that the entry tells of.
bool fits(const IndexEntry& entry, std::string_view bytes);

/// Errors: BadArgument for a name that is no UTF-8.
Result<std::string> indexText(const std::string& application, const std::vector<IndexEntry>& files);

/// Reads an index that may come from anybody: it is the application's own, in a known version, names the
/// database, no file twice, and stays within the limits above. Errors: NotABackupFile, OtherVersion,
/// OtherService when it is another application's.
Result<std::vector<IndexEntry>> readIndex(const std::filesystem::path& file, const std::string& application);

}  // namespace vxtv::hotel
