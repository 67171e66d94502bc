#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// The members of an archive, by name.
using ZipMembers = std::map<std::string, std::string>;

/// The limits of an untrusted archive.
inline constexpr std::size_t kLargestZip = 2U << 20U;
inline constexpr std::size_t kLargestZipMember = 4U << 20U;
inline constexpr std::size_t kMostZipRatio = 100;  ///< the size of all members divided by that of the archive

/// Makes the archive. Equal members give an equal archive: each is deflated, they are sorted by name, and
/// there are no times. Errors: Io if it cannot be made, BadArgument if it would exceed the limits for
/// unpacking.
Result<std::string> packZip(const ZipMembers& members);

/// Unpacks an archive in memory. It must hold exactly the members `wanted`, each once, as regular files, not
/// enciphered, not set-uid, deflated or stored. No bytes may stand before the first member, between the
/// directory and the end record, or after it. No file is created. `name` is used in the sentence. Errors:
/// NotABackupFile if it is not such an archive, DamagedBackup, BadBackup for forbidden content.
Result<ZipMembers> unpackZip(std::string_view archive, const std::vector<std::string_view>& wanted,
                             const std::string& name);

}  // namespace vxtv
