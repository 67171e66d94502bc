#pragma once

#include <cstdio>
#include <string>

/// Direction of `CVXCloneUtil::EncryptDecryptFile`, as the cipher takes it.
enum eCRYPT_OP_TYPE : int { CRYPT_OP_DECRYPT = 0, CRYPT_OP_ENCRYPT = 1 };

/// Opening files without following links, fetching the clone key, and enciphering whole files.
///
/// There is no state: every operation is independent and may be called from any thread. Failures are logged
/// and returned; nothing throws.
class CVXCloneUtil {
 public:
    /// Opens the path with a mode of fopen. Result: the stream, which the caller closes, or null if the path
    /// is a symbolic link or cannot be opened.
    static std::FILE* SafeFileOpen(std::string path, std::string mode);

    /// Reads a text entry of the secure storage into `value`. Result: whether the storage reported success.
    /// Then `value` is replaced, unless the entry is empty. Otherwise `value` is not changed.
    static bool SSReadString(const std::string& name, std::string& value);

    /// Installs the clone key from the key file, unless it exists already and `force` is not set. Result:
    /// whether the key is installed.
    static bool InstallAESKeyFromBin(const std::string& path, bool force);

    /// Fetches the clone key and its initialisation vector. If they are missing, they are installed once from
    /// the key file `path`; an empty path installs nothing. Result: true if both exist.
    static bool GetAESInfo(std::string& key, std::string& iv, const std::string& path);

    /// Enciphers or deciphers a file with AES-256 in CBC mode.
    ///
    /// Result: true if the complete output was passed to the system. After a failure, the output written so
    /// far stays. Links are refused on both sides. Each call leaks one cipher context. Before: `key` has at
    /// least 32 bytes and `iv` at least 16; further bytes are ignored.
    static bool EncryptDecryptFile(const std::string& input, const std::string& output,
                                   const std::string& key, const std::string& iv, eCRYPT_OP_TYPE type);
};
