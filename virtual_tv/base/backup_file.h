#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

// The file in which a service hands over its data: a header that says whose data it is, and a JSON document.
// The bytes are described in docs/service-backups.md.

/// How long a service's name and the JSON text may be, and how many layers the document may have.
inline constexpr std::size_t kLongestServiceName = 32;
inline constexpr std::size_t kLargestBackupBody = 4U << 20U;
inline constexpr int kDeepestBackup = 16;

/// Writes the file, whole or not at all, in place of one that is there; its folder must be there. `version`
/// is that of the service's document, from 1 on. Errors: NoSpace, Io, BadArgument for a document that is too
/// large, too deep or holds what is no UTF-8, or a name of no fitting length.
Result<void> writeBackupFile(const std::filesystem::path& file, std::string_view service, int version,
                             const nlohmann::json& body);

/// The document of a file that may come from anybody: it was written whole by the service in this version of
/// its document, and no member stands twice. What the values are is the caller's to check. Never waits,
/// follows no link at the path's end, changes nothing. Errors: NoBackupFile, NotABackupFile also for what is
/// no plain file, OtherVersion, OtherService, DamagedBackup, Io.
Result<nlohmann::json> readBackupFile(const std::filesystem::path& file, std::string_view service,
                                      int version);

}  // namespace vxtv
