#pragma once

#include "virtual_tv/process/live_share.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// A session's share in the television's message bus.
class BusShare {
 public:
    /// Holds no share yet.
    explicit BusShare(const Folder& folder);

    /// As LiveShare::take. On failure CannotRun (the daemon) or Io (the television's folder).
    Result<void> take();

    /// As LiveShare::end.
    void endBus() { share_.end(); }

 private:
    LiveShare share_;
};

}  // namespace vxtv
