#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// The members of an archive by their names.
using ZipMembers = std::map<std::string, std::string>;

/// What an archive may be that comes from anybody.
inline constexpr std::size_t kLargestZip = 2U << 20U;
inline constexpr std::size_t kLargestZipMember = 4U << 20U;
inline constexpr std::size_t kMostZipRatio = 100;  ///< all members together against the archive

/// The archive, the same for the same members: each deflated, in the order of their names, without times.
/// Errors: Io when it cannot be made, BadArgument when it would be more than may be unpacked.
Result<std::string> packZip(const ZipMembers& members);

/// Unpacks an archive in memory. It must hold `wanted`, all of them and nothing else, each once, as a plain
/// file, neither enciphered nor set-uid, deflated or stored; nothing may stand before, between the directory
/// and the end, or behind. Nothing of it becomes a file. `name` is for the sentence.
/// Errors: NotABackupFile for what is no such archive, DamagedBackup, BadBackup for what it may not hold.
Result<ZipMembers> unpackZip(std::string_view archive, const std::vector<std::string_view>& wanted,
                             const std::string& name);

}  // namespace vxtv
