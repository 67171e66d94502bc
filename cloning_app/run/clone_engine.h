#pragma once

#include <functional>
#include <vector>

#include "cloning_app/errors.h"
#include "include/vx_clone_api.h"

namespace vxclone {

/// What runs a clone: the library, or a stand-in. A run works in the calling thread and returns when it has
/// ended, whatever its categories reported. Errors: `Internal`, the run did not take place or broke off.
class CloneEngine {
 public:
    virtual ~CloneEngine() = default;
    virtual Result<void> backUp() = 0;
    virtual Result<void> restore(const std::vector<VXClone>& list) = 0;
};

/// Makes one call of the library, which returns 0 on failure, and turns what it may throw into an error. A
/// restore without VXCLONE_VXHOTEL_FIRSTSCREEN_DATA does all its work and then throws, by its contract:
/// `endsByThrowing` says that the call is such a one.
Result<void> callLibrary(const std::function<int()>& call, bool endsByThrowing);

}  // namespace vxclone
