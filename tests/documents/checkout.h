#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <string>

#include "tests/support/machine/temporary_directory.h"

namespace vxtest {

/// A folder in which the commands of a document run. It is like a reader's checkout in which everything was
/// built: a copy of the sources, with the programs of this build in their places. `scripts/demo` skips
/// installing and building there; the rest of it runs. The destructor removes the folder.
class Checkout {
 public:
    Checkout();

    const std::filesystem::path& folder() const { return folder_; }
    /// A search path with the programs of this build first.
    std::string searchPath() const;

 private:
    void copySources() const;
    void linkBuild() const;
    void addTools() const;

    TemporaryDirectory place_;
    std::filesystem::path folder_ = place_ / "checkout";
    std::filesystem::path tools_ = place_ / "tools";
};

}  // namespace vxtest
