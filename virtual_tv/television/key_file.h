#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "virtual_tv/base/credential.h"
#include "virtual_tv/base/error.h"

namespace vxtv {

/// What a key file carries: the clone key, its initialisation vector, and who may read them once they are in
/// the secure storage. The format is described in docs/key-file-format.md.
struct CloneKey {
    static constexpr std::size_t kKeySize = 32;
    static constexpr std::size_t kIvSize = 16;

    std::string key;  ///< `kKeySize` bytes
    std::string iv;   ///< `kIvSize` bytes
    Credential credential;
};

/// The names under which the secure storage keeps the two.
inline constexpr const char* kCloneKeyEntry = "VX_CLONE_API_AES_KEY";
inline constexpr const char* kCloneIvEntry = "VX_CLONE_API_AES_IV";

/// A new random clone key for the credential's owner. Errors: Io when the system gives no random bytes.
Result<CloneKey> makeCloneKey(const Credential& credential);

/// The bytes of a key file, sealed for the fleet with this installation secret. Errors: Io.
/// Before: `secret` is what `readFleetSecret` gives.
Result<std::string> sealKeyFile(const CloneKey& key, std::string_view secret);

/// What the bytes of a key file hold; `file` is what the sentences call it.
/// Errors: NotAKeyFile, OtherVersion, ShortKeyFile, BrokenSeal when it is damaged or sealed for another
/// fleet, Io.
Result<CloneKey> unsealKeyFile(std::string_view bytes, std::string_view secret,
                               const std::filesystem::path& file);

/// The bytes of the file, at most a few more than a key file has. Never waits, follows no link.
/// Errors: NoKeyFile, NotAKeyFile for what is no plain file, Io.
Result<std::string> readKeyFile(const std::filesystem::path& file);

/// Reads a fleet's installation secret: a plain file of 32 bytes. Errors: NoFleetSecret.
Result<std::string> readFleetSecret(const std::filesystem::path& file);

/// Reads whom the clone key belongs to: a JSON object with `identifier` (a string of 20 bytes), `owner` and
/// `group` (ints). Errors: BadArgument, which names the member.
Result<Credential> readClient(const std::filesystem::path& file);

}  // namespace vxtv
