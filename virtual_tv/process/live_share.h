#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"

namespace vxtv {

/// A running service for all sessions of a television.
struct StartedService {
    std::string address;
    pid_t keeper = -1;  ///< a child of the caller, which must collect it
};

/// The arguments for starting such a service.
struct ServiceStart {
    Descriptor lock;  ///< the service's lock, opened separately; the keeper waits for it to know when to end
    int life = -1;    ///< stays open as long as the service or its keeper runs
};

/// A session's share in a service. The service runs as long as any process holds a share. The kernel releases
/// a share when the last process that inherited it has ended, for any reason.
class LiveShare {
 public:
    struct Files {
        std::filesystem::path folder;   ///< the folder of the others
        std::filesystem::path lock;     ///< each share holds it shared
        std::filesystem::path address;  ///< locked while the service runs
        const char* name;               ///< of the service, in a sentence
    };
    using Start = std::function<Result<StartedService>(ServiceStart)>;

    /// Holds no share yet.
    explicit LiveShare(Files files) : files_(std::move(files)) {}

    /// Takes a share in the running service, or starts one. When it returns, programs can connect. Sessions
    /// that start at the same time get the same service. On failure the error of `start`, or Io (the
    /// television's folder), and there is no share.
    Result<void> take(const Start& start);

    /// Takes a share in the running service. Without a running service there is no share afterwards.
    void join();

    /// Whether it holds a share.
    explicit operator bool() const { return static_cast<bool>(lock_); }

    /// Releases the share, waits for the end of the service and removes its files. Before: nobody else has a
    /// share or takes one meanwhile.
    void end();

 private:
    Result<void> startNew(const Start& start);
    tl::unexpected<Error> cannotUse(const std::filesystem::path& file) const;

    Files files_;
    Descriptor lock_;
    pid_t keeper_ = -1;  ///< if we started the service
};

}  // namespace vxtv
