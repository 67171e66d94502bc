#pragma once

#include <filesystem>
#include <string>

#include "virtual_tv/base/credential.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

enum class Installed { Now, Before };

/// Loads the clone key from a key file into the television's secure storage, both entries or none. Entries
/// that are there and can be read by the owner that the key file names stay as they are: `Before`.
///
/// The path is looked up in the television's folder first, since a session does not cover all of the
/// machine's directories: /usr/share/x is DIR/usr/share/x if that is there.
///
/// Errors: NoDeviceKey, NoFleetSecret, those of `readKeyFile`, `unsealKeyFile` and `SecureStorage`.
/// Threads and processes: any.
Result<Installed> installKeyFile(const Folder& folder, const std::string& path);

/// Puts the key file to where the television's programs look for it, after checking that it opens with the
/// television's installation secret. One that is there is replaced only if `replace`; the secure storage then
/// forgets the key of before, so that the next use installs the new one.
///
/// Errors: AlreadyExists, and as `installKeyFile`. On failure the key file of before is still there.
Result<void> placeKeyFile(const Folder& folder, const std::filesystem::path& file, bool replace);

/// The key with which the cloning application authenticates its packages, as the secure storage keeps it from
/// the first day of a television on. All televisions of a fleet have the same one.
inline constexpr const char* kPackageKeyEntry = "VXCLONE_PACKAGE_KEY";

/// Whom the entry belongs to: the cloning application.
Credential packageKeyCredential();

/// Reads a package key: a plain file of 32 bytes. Errors: NoFleetSecret.
Result<std::string> readPackageKey(const std::filesystem::path& file);

}  // namespace vxtv
