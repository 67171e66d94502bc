#pragma once

#include <array>
#include <filesystem>
#include <string_view>
#include <utility>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// Where things lie in a television's folder. The only place that names them.
class Folder {
 public:
    explicit Folder(std::filesystem::path root) : root_(std::move(root)) {}

    const std::filesystem::path& root() const { return root_; }
    /// Everything the services own.
    std::filesystem::path database() const { return root_ / "tv.db"; }
    /// The secure storage: the key that seals its entries, the entries, and the secret that opens key files.
    std::filesystem::path secure() const { return root_ / "secure"; }
    std::filesystem::path deviceKey() const { return secure() / "device.key"; }
    std::filesystem::path secureEntries() const { return secure() / "entries"; }
    std::filesystem::path installationSecret() const { return secure() / "installation.secret"; }
    /// Seen as /opt, /tmp and /media by what runs in the television.
    std::filesystem::path opt() const { return root_ / "opt"; }
    std::filesystem::path tmp() const { return root_ / "tmp"; }
    std::filesystem::path media() const { return root_ / "media"; }
    /// The lines of `__dlog_print`, one a call.
    std::filesystem::path dlog() const { return root_ / "log" / "dlog.txt"; }
    /// The platform calls, one JSON object a line.
    std::filesystem::path calls() const { return root_ / "log" / "calls.jsonl"; }
    /// Locks and sockets of what runs now; empty when nothing does.
    std::filesystem::path run() const { return root_ / "run"; }
    /// Each session holds it with a shared flock(2); who wants the television for itself, exclusively.
    std::filesystem::path sessionLock() const { return run() / "session.lock"; }
    /// The same for the message bus alone: its keeper waits for it exclusively, to know when to end the bus.
    std::filesystem::path busLock() const { return run() / "bus.lock"; }
    /// The address of the message bus; locked while the bus is up.
    std::filesystem::path busAddress() const { return run() / "bus"; }
    /// The same two for the home of the applications.
    std::filesystem::path homeLock() const { return run() / "home.lock"; }
    std::filesystem::path homeAddress() const { return run() / "home"; }

 private:
    std::filesystem::path root_;
};

/// The mark of a secure storage that is up, and the key file of the clone key, as programs in the television
/// see them.
inline constexpr const char* kSecureStorageReady = "/tmp/securestorage-ready";
inline constexpr const char* kCloneKeyFile = "/usr/share/wqd/vx-clone-api-key/00000044.bin";

/// The environment variable that tells the platform libraries which television they run in: its folder's
/// absolute path.
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

/// The data directory of the cloning application; the clone directory itself is the application's to make.
inline constexpr std::string_view kCloningDataPath = "/opt/usr/apps/org.vorta.vxhotel-cloning/data";

/// Where an absolute path, as seen in the television, lies in its folder.
std::filesystem::path placeOf(const Folder& folder, std::string_view pathInTelevision);

/// Where the cloning application keeps the package that it makes or unpacks, for services that are not told.
/// The application makes it.
inline std::filesystem::path cloneDirectory(const Folder& folder) {
    return placeOf(folder, kCloningDataPath) / "Clone";
}

/// Whether each folder that makes a television is a folder of its own and no link. Error: Damaged, with the
/// link's name.
Result<void> checkOwnFolders(const Folder& folder);

}  // namespace vxtv
