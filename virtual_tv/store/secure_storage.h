#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "virtual_tv/base/credential.h"
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

    /// Makes an empty storage with a new device key; part of the creation of a television. Errors: NoSpace,
    /// Io.
    static Result<void> create(const Folder& folder);

    /// Whether the storage is up: its device key can be read.
    Result<void> checkUp() const;

    /// Keeps other processes and threads from changing the storage until the result goes; waits for them up
    /// to five seconds. Errors: Busy, Io.
    Result<Descriptor> lock() const;

    /// The value of the entry, for the one it belongs to. Errors: UnknownEntry, WrongCredential, BrokenSeal
    /// for an entry that is damaged or of another television, Io.
    Result<std::string> read(const std::string& name, const Credential& credential) const;

    /// Puts the secrets into the storage, all of them or, on failure, none; other entries stay. Before: the
    /// caller holds the lock. Errors: NoSpace, Io.
    Result<void> put(const std::vector<Secret>& secrets, const Credential& credential) const;

    /// Forgets the secrets of these names; one that is not there counts as forgotten. Before: the caller
    /// holds the lock. Errors: Io.
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
