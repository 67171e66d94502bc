#include "virtual_tv/store/secure_storage.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>

#include <algorithm>
#include <chrono>
#include <string_view>
#include <system_error>
#include <thread>

#include "common/file_writing.h"
#include "common/tree_removal.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/base/sealing.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kEntryMagic("VXSSENT\0", 8);
constexpr std::uint32_t kEntryVersion = 1;
constexpr std::size_t kCredentialOffset = kEntryMagic.size() + kNumberSize;
constexpr std::size_t kEntryNonceOffset = kCredentialOffset + kCredentialSize;
constexpr std::size_t kEntryHeaderSize = kEntryNonceOffset + kNonceSize;
constexpr std::size_t kLargestEntry = 64 * 1024;

constexpr std::chrono::seconds kLockPatience(5);
constexpr std::chrono::milliseconds kLockPause(10);

/// Other characters could name a file in another place.
bool isEntryName(std::string_view name) {
    constexpr std::size_t kLongestName = 64;
    constexpr std::string_view kAllowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";
    return !name.empty() && name.size() <= kLongestName &&
           name.find_first_not_of(kAllowed) == std::string_view::npos;
}

tl::unexpected<Error> unknownEntry(const std::string& name) {
    return failure(ErrorCode::UnknownEntry,
                   fmt::format("the secure storage has no entry '{}'; install the key file first", name));
}

tl::unexpected<Error> brokenEntry(const std::string& name) {
    return failure(ErrorCode::BrokenSeal,
                   fmt::format("the entry '{}' of the secure storage is damaged or of another television; "
                               "install the key file again",
                               name));
}

tl::unexpected<Error> cannotChange(const fs::path& folder, const std::error_code& error) {
    return failure(ErrorCode::Io,
                   fmt::format("the secure storage cannot be changed: {}: {}; check that the television's "
                               "folder may be written",
                               folder.string(), error.message()));
}

std::error_code lastEntryError() {
    return {errno, std::generic_category()};
}

Result<std::string> sealEntry(const SealingKey& key, const Secret& secret, const Credential& credential) {
    const Result<std::string> nonce = randomBytes(kNonceSize);
    if (!nonce) {
        return nonce;
    }
    const std::string header =
        std::string(kEntryMagic) + toBigEndian(kEntryVersion) + toBytes(credential) + *nonce;
    return seal(key, *nonce, secret.value, header + secret.name).map([&header](const std::string& sealed) {
        return header + sealed;
    });
}

Result<std::string> unsealEntry(const SealingKey& key, const std::string& name, std::string_view bytes,
                                const Credential& credential) {
    if (bytes.size() < kEntryHeaderSize || bytes.size() > kLargestEntry) {
        return brokenEntry(name);
    }
    const std::string_view header = bytes.substr(0, kEntryHeaderSize);
    Result<std::string> value = unseal(key, header.substr(kEntryNonceOffset), bytes.substr(kEntryHeaderSize),
                                       std::string(header) + name);
    if (!value) {
        return value.error().code == ErrorCode::BrokenSeal ? brokenEntry(name) : value;
    }
    // The owner is not enciphered but covered by the seal, so it is checked only after the seal.
    if (credentialIn(header.substr(kCredentialOffset)) != credential) {
        return failure(
            ErrorCode::WrongCredential,
            fmt::format("the entry '{}' belongs to somebody else; ask with its owner's credential", name));
    }
    return value;
}

}  // namespace

Result<void> SecureStorage::create(const Folder& folder) {
    std::error_code error;
    fs::create_directory(folder.secure(), error);
    if (!error) {
        fs::permissions(folder.secure(), fs::perms::owner_all, error);
    }
    if (error) {
        return cannotChange(folder.secure(), error);
    }
    return randomBytes(SealingKey::kSize).and_then([&folder](const std::string& key) {
        return writePrivateFile(folder.deviceKey(), key, Existing::Refuse);
    });
}

Result<void> SecureStorage::checkUp() const {
    return deviceKey().map([](const SealingKey&) {});
}

Result<Descriptor> SecureStorage::lock() const {
    Descriptor folder(open(folder_.secure().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder) {
        return cannotChange(folder_.secure(), lastEntryError());
    }
    const auto end = std::chrono::steady_clock::now() + kLockPatience;
    while (flock(folder.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return cannotChange(folder_.secure(), lastEntryError());
        }
        if (std::chrono::steady_clock::now() > end) {
            return failure(
                ErrorCode::Busy,
                fmt::format("another process changes the secure storage of {}; end it and try again",
                            folder_.root().string()));
        }
        std::this_thread::sleep_for(kLockPause);
    }
    return folder;
}

Result<std::string> SecureStorage::read(const std::string& name, const Credential& credential) const {
    const Result<SealingKey> key = deviceKey();
    VX_RETURN_IF_FAILED(key);
    if (!isEntryName(name)) {
        return unknownEntry(name);
    }
    const auto bytes = readPlainFile(folder_.secureEntries() / name, kLargestEntry + 1);
    if (bytes) {
        return unsealEntry(*key, name, *bytes, credential);
    }
    switch (bytes.error().kind) {
        case ReadTrouble::Kind::Missing:
            return unknownEntry(name);
        case ReadTrouble::Kind::NoPlainFile:
            return brokenEntry(name);
        case ReadTrouble::Kind::CannotBeRead:
            break;
    }
    return failure(ErrorCode::Io,
                   fmt::format("the entry '{}' of the secure storage cannot be read: {}; check "
                               "who may read the television's folder",
                               name, bytes.error().reason));
}

Result<void> SecureStorage::put(const std::vector<Secret>& secrets, const Credential& credential) const {
    return deviceKey()
        .and_then([&](const SealingKey& key) { return writeEntries(key, secrets, credential); })
        .and_then([this] { return swapIn(); });
}

Result<void> SecureStorage::forget(const std::vector<std::string>& names) const {
    const fs::path entries = folder_.secureEntries();
    std::error_code error;
    if (!fs::exists(entries, error)) {
        return error ? cannotChange(entries, error) : Result<void>();
    }
    for (const std::string& name : names) {
        if (fs::remove(entries / name, error); error) {
            return cannotChange(entries, error);
        }
    }
    return flushFolder(entries);
}

Result<SealingKey> SecureStorage::deviceKey() const {
    const auto bytes = readPlainFile(folder_.deviceKey(), SealingKey::kSize + 1);
    if (bytes && bytes->size() == SealingKey::kSize) {
        return SealingKey(*bytes);
    }
    return failure(
        ErrorCode::NoDeviceKey,
        fmt::format("the secure storage is not up: {}: {}; put the television's device key back, or "
                    "destroy the television and create it again",
                    folder_.deviceKey().string(), bytes ? "it is no device key" : bytes.error().reason));
}

fs::path SecureStorage::entriesBeside(const char* what) const {
    return folder_.secureEntries().string() + what;
}

/// Keeps all other entries. Files that are not regular are not entries and are dropped.
Result<void> SecureStorage::keepOtherEntries(const std::vector<Secret>& secrets,
                                             const fs::path& beside) const {
    std::error_code error;
    fs::directory_iterator entry(folder_.secureEntries(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const bool replaced = std::any_of(secrets.begin(), secrets.end(),
                                          [&name](const Secret& secret) { return secret.name == name; });
        const auto bytes = readPlainFile(entry->path(), kLargestEntry + 1);
        if (replaced || (!bytes && bytes.error().kind == ReadTrouble::Kind::NoPlainFile)) {
            continue;
        }
        if (!bytes) {
            return cannotChange(entry->path(), std::make_error_code(std::errc::io_error));
        }
        if (auto kept = writePrivateFile(beside / name, *bytes, Existing::Refuse); !kept) {
            return kept;
        }
    }
    // Without a complete list, unseen entries would be lost in the exchange.
    const bool none = error == std::errc::no_such_file_or_directory;
    return error && !none ? cannotChange(folder_.secureEntries(), error) : Result<void>();
}

Result<void> SecureStorage::writeEntries(const SealingKey& key, const std::vector<Secret>& secrets,
                                         const Credential& credential) const {
    const fs::path beside = entriesBeside(".new");
    // Removes what a killed process may have left.
    if (const auto removed = vxcommon::removeTree(beside); !removed) {
        return cannotChange(beside, {removed.error().reason, std::generic_category()});
    }
    std::error_code error;
    if (!fs::create_directory(beside, error)) {
        return cannotChange(beside, error);
    }
    fs::permissions(beside, fs::perms::owner_all, error);
    Result<void> written = error ? cannotChange(beside, error) : keepOtherEntries(secrets, beside);
    for (const Secret& secret : secrets) {
        if (written) {
            written = sealEntry(key, secret, credential).and_then([&](const std::string& sealed) {
                return writePrivateFile(beside / secret.name, sealed, Existing::Refuse);
            });
        }
    }
    if (!written) {
        static_cast<void>(vxcommon::removeTree(beside));
    }
    return written;
}

Result<void> SecureStorage::swapIn() const {
    const fs::path entries = folder_.secureEntries();
    const fs::path beside = entriesBeside(".new");
    std::error_code error;
    // In one step: a reader, or the state after a kill, has either all old or all new entries. If the check
    // fails, it counts as "none"; then the rename fails, and nothing is lost.
    const Existing existing = fs::exists(entries, error) ? Existing::Exchange : Existing::Refuse;
    const int refused = vxcommon::putInPlace(beside, entries, {existing});
    const Result<void> done = refused == 0 ? flushFolder(folder_.secure())
                                           : cannotChange(entries, {refused, std::generic_category()});
    // Only after the exchange is on the disk, because before that a power cut may bring the old folder back.
    static_cast<void>(vxcommon::removeTree(beside));
    return done;
}

}  // namespace vxtv
