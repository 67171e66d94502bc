#pragma once

#include <cstdio>
#include <string>

/// Direction of `CVXCloneUtil::EncryptDecryptFile`, as the cipher takes it.
enum eCRYPT_OP_TYPE : int { CRYPT_OP_DECRYPT = 0, CRYPT_OP_ENCRYPT = 1 };

/// Opening files without following links, fetching the clone key, and enciphering whole files.
///
/// No state: every operation stands alone and may be called from any thread. Failures are logged and
/// returned; nothing throws.
class CVXCloneUtil {
 public:
    /// Opens the path with a mode of fopen. Result: the stream, the caller's to close, or null when the path
    /// is a symbolic link or does not open.
    static std::FILE* SafeFileOpen(std::string path, std::string mode);

    /// Reads a text entry of the secure storage into `value`. Result: whether the storage answered with
    /// success; `value` is then replaced unless the entry is empty. Otherwise `value` is as it was.
    static bool SSReadString(const std::string& name, std::string& value);

    /// Installs the clone key from the key file, unless it is there already and `force` is not set. Result:
    /// whether the key is installed.
    static bool InstallAESKeyFromBin(const std::string& path, bool force);

    /// Fetches the clone key and its initialisation vector, installing them once from the key file `path`
    /// when they are missing; an empty path installs nothing. Result: true when both are there.
    static bool GetAESInfo(std::string& key, std::string& iv, const std::string& path);

    /// Enciphers or deciphers a file with AES-256 in CBC mode.
    ///
    /// Result: true when the whole output was handed to the system; false leaves behind what had been
    /// written. Links are refused on both sides. Each call costs one cipher context that is never freed.
    /// Before: `key` has 32 bytes and `iv` 16 at least; more are not looked at.
    static bool EncryptDecryptFile(const std::string& input, const std::string& output,
                                   const std::string& key, const std::string& iv, eCRYPT_OP_TYPE type);
};
