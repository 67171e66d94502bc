#pragma once

#include <sys/types.h>

#include "virtual_tv/session/descriptor.h"
#include "virtual_tv/television/error.h"
#include "virtual_tv/television/folder.h"

namespace vxtv {

/// A session's share in the television's message bus. The bus is there as long as any process holds one; the
/// kernel gives a share back with the last process that was forked with it, however that ends.
class BusShare {
 public:
    /// Has none yet.
    explicit BusShare(const Folder& folder) : folder_(folder) {}

    /// Takes a share in the bus that is up, or starts one. When it returns, programs may connect. Sessions
    /// that begin together get the same bus.
    /// On failure CannotRun (the daemon) or Io (the television's folder), and there is no share.
    Result<void> take();

    /// Gives the share back if there is one, waits for the end of the bus and removes its files.
    /// Before: nobody else has a share, or takes one meanwhile.
    void endBus();

 private:
    Result<void> start();

    Folder folder_;
    Descriptor lock_;
    pid_t keeper_ = -1;  ///< if we started the bus
};

}  // namespace vxtv
