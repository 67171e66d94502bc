#pragma once

#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// The paths in a television's folder. No other code names them.
class Folder {
 public:
    explicit Folder(std::filesystem::path root) : root_(std::move(root)) {}

    const std::filesystem::path& root() const { return root_; }
    /// The data of all services.
    std::filesystem::path database() const { return root_ / "tv.db"; }
    /// The secure storage: the key that seals its entries, the entries, and the secret that opens key files.
    std::filesystem::path secure() const { return root_ / "secure"; }
    std::filesystem::path deviceKey() const { return secure() / "device.key"; }
    std::filesystem::path secureEntries() const { return secure() / "entries"; }
    std::filesystem::path installationSecret() const { return secure() / "installation.secret"; }
    /// Programs in the television see them as /opt, /tmp and /media.
    std::filesystem::path opt() const { return root_ / "opt"; }
    std::filesystem::path tmp() const { return root_ / "tmp"; }
    std::filesystem::path media() const { return root_ / "media"; }
    /// The log, one line for each call of `__dlog_print`.
    std::filesystem::path dlog() const { return root_ / "log" / "dlog.txt"; }
    /// The platform calls, one JSON object for each line.
    std::filesystem::path calls() const { return root_ / "log" / "calls.jsonl"; }
    /// Locks and sockets of running processes; empty if nothing runs.
    std::filesystem::path run() const { return root_ / "run"; }
    /// Each session holds a shared flock(2) on it. For exclusive use of the television, it is locked
    /// exclusively.
    std::filesystem::path sessionLock() const { return run() / "session.lock"; }
    /// The same for the message bus: its keeper waits for the exclusive lock and then ends the bus.
    std::filesystem::path busLock() const { return run() / "bus.lock"; }
    /// The address of the message bus. The file is locked while the bus runs.
    std::filesystem::path busAddress() const { return run() / "bus"; }
    /// The same two files for the home of the applications.
    std::filesystem::path homeLock() const { return run() / "home.lock"; }
    std::filesystem::path homeAddress() const { return run() / "home"; }

 private:
    std::filesystem::path root_;
};

/// The mark that the secure storage is ready, and the key file with the clone key, as programs in the
/// television see them.
inline constexpr const char* kSecureStorageReady = "/tmp/securestorage-ready";
inline constexpr const char* kCloneKeyFile = "/usr/share/wqd/vx-clone-api-key/00000044.bin";

/// The environment variable with the absolute path of the television's folder, for the platform libraries.
inline constexpr const char* kTelevisionVariable = "VXTV_TELEVISION";

/// A directory of pictures in the television.
struct PictureArea {
    std::string_view name;  ///< in profiles and comparisons
    std::string_view path;  ///< as programs in the television see it, without a trailing slash
};

inline constexpr PictureArea kBootLogoArea = {"boot-logo", "/opt/usr/data/hotel/bootlogo"};
inline constexpr PictureArea kHomeMenuArea = {"home-menu", "/opt/usr/data/hotel/homemenu"};
inline constexpr PictureArea kMbrLogoArea = {"mbr-logo", "/opt/usr/data/hotel/mbrlogo"};
inline constexpr std::array kPictureAreas = {kBootLogoArea, kHomeMenuArea, kMbrLogoArea};

/// The data directory of the cloning application. The application itself creates the clone directory in it.
inline constexpr std::string_view kCloningDataPath = "/opt/usr/apps/org.vorta.vxhotel-cloning/data";

/// The place in the television's folder of an absolute path as programs in the television see it.
std::filesystem::path placeOf(const Folder& folder, std::string_view pathInTelevision);

/// The directory in which the cloning application makes or unpacks a package, for services that do not get it
/// as an argument. The application creates it.
inline std::filesystem::path cloneDirectory(const Folder& folder) {
    return placeOf(folder, kCloningDataPath) / "Clone";
}

/// Requires that each folder of a television is a real folder and not a link. Error: Damaged, with the link's
/// name.
Result<void> checkOwnFolders(const Folder& folder);

}  // namespace vxtv
