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

 private:
    std::filesystem::path root_;
};

/// The environment variable that tells the platform libraries which television they run in: its folder's
/// absolute path.
inline constexpr const char* kTelevisionVariable = "VXTV_TELEVISION";

}  // namespace vxtv
