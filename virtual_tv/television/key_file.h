#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "virtual_tv/base/error.h"
#include "virtual_tv/base/sealing.h"

namespace vxtv {

/// The content of a key file: the clone key, its initialisation vector, and the credential that may read them
/// from the secure storage. docs/key-file-format.md describes the format.
struct CloneKey {
    static constexpr std::size_t kKeySize = 32;
    static constexpr std::size_t kIvSize = 16;

    std::string key;  ///< `kKeySize` bytes
    std::string iv;   ///< `kIvSize` bytes
    Credential credential;
};

/// The names of the two entries in the secure storage.
inline constexpr const char* kCloneKeyEntry = "VX_CLONE_API_AES_KEY";
inline constexpr const char* kCloneIvEntry = "VX_CLONE_API_AES_IV";

/// A new random clone key for the owner of the credential. Errors: Io if the system has no random bytes.
Result<CloneKey> makeCloneKey(const Credential& credential);

/// The bytes of a key file, sealed for the fleet with this installation secret. Errors: Io. Before: `secret`
/// comes from `readFleetSecret`.
Result<std::string> sealKeyFile(const CloneKey& key, std::string_view secret);

/// The content of a key file; sentences call it `file`. Errors: NotAKeyFile, OtherVersion, ShortKeyFile;
/// BrokenSeal if it is damaged or sealed for another fleet; Io.
Result<CloneKey> unsealKeyFile(std::string_view bytes, std::string_view secret,
                               const std::filesystem::path& file);

/// The bytes of the file; at most a few more than a key file has. Never blocks, follows no link. Errors:
/// NoKeyFile; NotAKeyFile if the file is not regular; Io.
Result<std::string> readKeyFile(const std::filesystem::path& file);

/// Reads a fleet's installation secret: a regular file of 32 bytes. Errors: NoFleetSecret.
Result<std::string> readFleetSecret(const std::filesystem::path& file);

/// Reads the owner of the clone key: a JSON object with `identifier` (a string of 20 bytes), `owner` and
/// `group` (ints). Errors: BadArgument, with the member in the sentence.
Result<Credential> readClient(const std::filesystem::path& file);

}  // namespace vxtv
