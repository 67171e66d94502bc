#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

// The file in which a service saves its data: a header with the name of the service, and a JSON document.
// docs/service-backups.md describes the bytes.

/// The limits for a service's name, for the JSON text, and for the depth of the document.
inline constexpr std::size_t kLongestServiceName = 32;
inline constexpr std::size_t kLargestBackupBody = 4U << 20U;
inline constexpr int kDeepestBackup = 16;

/// Writes the file, completely or not at all, and replaces an existing one. Its folder must exist. `version`
/// is that of the service's document, from 1. Errors: NoSpace, Io; BadArgument for a document that is too
/// large, too deep or not UTF-8, or a name with an invalid length.
Result<void> writeBackupFile(const std::filesystem::path& file, std::string_view service, int version,
                             const nlohmann::json& body);

/// The document of an untrusted file. It was written completely by the service in this version of its
/// document, and no member occurs twice. The caller must check the values. Never blocks, does not follow a
/// link at the end of the path, changes nothing. Errors: NoBackupFile; NotABackupFile, also for a file that
/// is not regular; OtherVersion, OtherService, DamagedBackup, Io.
Result<nlohmann::json> readBackupFile(const std::filesystem::path& file, std::string_view service,
                                      int version);

}  // namespace vxtv
