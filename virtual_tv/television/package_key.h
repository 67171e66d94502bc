#pragma once

#include <filesystem>
#include <string>

#include "virtual_tv/base/credential.h"
#include "virtual_tv/base/error.h"

namespace vxtv {

/// The key with which the cloning application authenticates its packages, as the secure storage keeps it from
/// the first day of a television on. All televisions of a fleet have the same one.
inline constexpr const char* kPackageKeyEntry = "VXCLONE_PACKAGE_KEY";

/// Whom the entry belongs to: the cloning application.
Credential packageKeyCredential();

/// Reads a package key: a plain file of 32 bytes. Errors: NoFleetSecret.
Result<std::string> readPackageKey(const std::filesystem::path& file);

}  // namespace vxtv
