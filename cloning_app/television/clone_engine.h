#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cloning_app/base/errors.h"
#include "include/vx_clone_api.h"

namespace vxclone {

/// What runs a clone: the library, or a stand-in. A run works in the calling thread and returns when it has
/// ended, whatever its categories reported. Errors of every operation: `Internal`, it did not take place or
/// broke off.
class CloneEngine {
 public:
    virtual ~CloneEngine() = default;
    virtual Result<void> backUp() = 0;
    virtual Result<void> restore(const std::vector<VXClone>& list) = 0;

    /// Whether the package in the folder (no slash at its end) fits this television. Result: 0 when it does,
    /// else the library's code for why not.
    virtual Result<int> checkIdentity(const std::string& folder) = 0;
    /// Whether the television has the key that seals are made with.
    virtual Result<bool> hasKey() = 0;
    /// Seals the files in the file `seal`, which must not be the one of that name in the clone folder.
    /// Result: whether that was done.
    virtual Result<bool> seal(const std::vector<std::string>& files, const std::string& seal) = 0;
    /// Result: whether the files are those that were sealed.
    virtual Result<bool> checkSeal(const std::vector<std::string>& files, const std::string& seal) = 0;
};

/// Makes one call of the library. Result: what it returned. What it throws becomes an error.
Result<int> askLibrary(const std::function<int()>& call);

/// Makes one call of the library, which returns 0 on failure, and turns what it may throw into an error. A
/// restore without VXCLONE_VXHOTEL_FIRSTSCREEN_DATA does all its work and then throws, by its contract:
/// `endsByThrowing` says that the call is such a one.
Result<void> callLibrary(const std::function<int()>& call, bool endsByThrowing);

}  // namespace vxclone
