#pragma once

#include <filesystem>
#include <utility>

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

}  // namespace vxtv
