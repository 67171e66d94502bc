#include "virtual_tv/television/key_installation.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <system_error>

#include "virtual_tv/base/private_file.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/store/secure_storage.h"
#include "virtual_tv/television/key_file.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

fs::path lookUp(const Folder& folder, const std::string& path) {
    std::error_code error;
    const fs::path own = placeOf(folder, path);
    const bool isOwn = fs::path(path).is_absolute() && fs::exists(fs::symlink_status(own, error));
    return isOwn ? own : fs::path(path);
}

/// The content of the file at the path, opened with the television's installation secret.
Result<CloneKey> openKeyFile(const Folder& folder, const fs::path& file) {
    return readFleetSecret(folder.installationSecret()).and_then([&file](const std::string& secret) {
        return readKeyFile(file).and_then(
            [&](const std::string& bytes) { return unsealKeyFile(bytes, secret, file); });
    });
}

Result<Installed> installInto(const SecureStorage& storage, const CloneKey& key) {
    const Result<Descriptor> lock = storage.lock();
    VX_RETURN_IF_FAILED(lock);
    if (storage.read(kCloneKeyEntry, key.credential) && storage.read(kCloneIvEntry, key.credential)) {
        return Installed::Before;
    }
    return storage.put({{kCloneKeyEntry, key.key}, {kCloneIvEntry, key.iv}}, key.credential).map([] {
        return Installed::Now;
    });
}

Result<void> forgetInstalledKey(const SecureStorage& storage) {
    return storage.lock().and_then([&storage](const Descriptor&) {
        return storage.forget({kCloneKeyEntry, kCloneIvEntry});
    });
}

constexpr std::size_t kPackageKeySize = 32;
constexpr std::string_view kApplication = "VXCLONE-PACKAGE-KEY1";
constexpr std::int32_t kOwner = 1;

}  // namespace

Result<Installed> installKeyFile(const Folder& folder, const std::string& path) {
    const SecureStorage storage(folder);
    return storage.checkUp()
        .and_then([&] { return openKeyFile(folder, lookUp(folder, path)); })
        .and_then([&storage](const CloneKey& key) { return installInto(storage, key); });
}

Result<void> placeKeyFile(const Folder& folder, const fs::path& file, bool replace) {
    VX_RETURN_IF_FAILED(openKeyFile(folder, file));
    const fs::path place = placeOf(folder, kCloneKeyFile);
    std::error_code error;
    fs::create_directories(place.parent_path(), error);
    if (!replace && fs::exists(fs::symlink_status(place, error))) {
        return failure(ErrorCode::AlreadyExists,
                       fmt::format("{} has a key file already; with --force it is replaced, and its key is "
                                   "forgotten",
                                   folder.root().string()));
    }
    return readKeyFile(file)
        .and_then([&](const std::string& bytes) {
            return writePrivateFile(place, bytes, replace ? Existing::Replace : Existing::Refuse);
        })
        .and_then([&folder, replace] {
            return replace ? forgetInstalledKey(SecureStorage(folder)) : Result<void>();
        });
}

Credential packageKeyCredential() {
    Credential credential;
    static_assert(kApplication.size() == std::tuple_size_v<decltype(credential.identifier)>);
    std::copy(kApplication.begin(), kApplication.end(), credential.identifier.begin());
    credential.owner = kOwner;
    return credential;
}

Result<std::string> readPackageKey(const std::filesystem::path& file) {
    const auto bytes = readPlainFile(file, kPackageKeySize + 1);
    if (bytes && bytes->size() == kPackageKeySize) {
        return *bytes;
    }
    return failure(
        ErrorCode::NoPackageKey,
        fmt::format("{} is no package key: {}; give a plain file of {} random bytes", file.string(),
                    bytes ? "it has another length" : bytes.error().reason, kPackageKeySize));
}

}  // namespace vxtv
