#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/base/sealing.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// A secret and its name: letters, digits and underscores.
struct Secret {
    std::string name;
    std::string value;
};

/// The television's secrets, one file each, sealed with AES-256-GCM under the device key, which every
/// television has of its own.
///
/// An entry's file, numbers big-endian:
///   0  8  "VXSSENT" and a NUL
///   8  4  format version, 1
///  12 28  the credential it belongs to (credential.h)
///  40 12  nonce, a fresh one each time
///  52  n  the value, enciphered, and the 16 bytes of the tag
/// The seal covers the first 52 bytes and the entry's name as well.
///
/// Threads and processes: any. Errors common to all: NoDeviceKey.
class SecureStorage {
 public:
    explicit SecureStorage(Folder folder) : folder_(std::move(folder)) {}

    /// Makes an empty storage with a new device key when a television is created. Errors: NoSpace, Io.
    static Result<void> create(const Folder& folder);

    /// Checks that the storage is ready: its device key can be read.
    Result<void> checkUp() const;

    /// Locks the storage against changes by other processes and threads until the result is destroyed. Waits
    /// for them up to five seconds. Errors: Busy, Io.
    Result<Descriptor> lock() const;

    /// The value of the entry, for its owner. Errors: UnknownEntry, WrongCredential; BrokenSeal for an entry
    /// that is damaged or from another television; Io.
    Result<std::string> read(const std::string& name, const Credential& credential) const;

    /// Stores all secrets or, on failure, none. Other entries stay. Before: the caller holds the lock.
    /// Errors: NoSpace, Io.
    Result<void> put(const std::vector<Secret>& secrets, const Credential& credential) const;

    /// Removes the secrets with these names; a missing one is no error. Before: the caller holds the lock.
    /// Errors: Io.
    Result<void> forget(const std::vector<std::string>& names) const;

 private:
    Result<SealingKey> deviceKey() const;
    std::filesystem::path entriesBeside(const char* what) const;
    Result<void> keepOtherEntries(const std::vector<Secret>& secrets,
                                  const std::filesystem::path& beside) const;
    Result<void> writeEntries(const SealingKey& key, const std::vector<Secret>& secrets,
                              const Credential& credential) const;
    Result<void> swapIn() const;

    Folder folder_;
};

}  // namespace vxtv
