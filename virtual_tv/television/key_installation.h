#pragma once

#include <filesystem>
#include <string>

#include "virtual_tv/base/error.h"
#include "virtual_tv/base/sealing.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

enum class Installed { Now, Before };

/// Loads the clone key from a key file into the television's secure storage: both entries or none. If the
/// entries exist already and the owner in the key file can read them, nothing changes: `Before`.
///
/// The path is first looked up in the television's folder, because a session does not cover all directories
/// of the machine: /usr/share/x is DIR/usr/share/x if that exists.
///
/// Errors: NoDeviceKey, NoFleetSecret, those of `readKeyFile`, `unsealKeyFile` and `SecureStorage`. Threads
/// and processes: any.
Result<Installed> installKeyFile(const Folder& folder, const std::string& path);

/// Copies the key file to the place where the television's programs look for it, after checking that the
/// television's installation secret opens it. An existing one is replaced only with `replace`. Then the
/// secure storage removes the old key, so that the next use installs the new one.
///
/// Errors: AlreadyExists, and as `installKeyFile`. On failure the old key file is still there.
Result<void> placeKeyFile(const Folder& folder, const std::filesystem::path& file, bool replace);

/// The key with which the cloning application authenticates its packages. It is in the secure storage from
/// the creation of a television. All televisions of a fleet have the same key.
inline constexpr const char* kPackageKeyEntry = "VXCLONE_PACKAGE_KEY";

/// The owner of the entry: the cloning application.
Credential packageKeyCredential();

/// Reads a package key: a regular file of 32 bytes. Errors: NoPackageKey.
Result<std::string> readPackageKey(const std::filesystem::path& file);

}  // namespace vxtv
