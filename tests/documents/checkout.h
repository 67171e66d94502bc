#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <string>

#include "tests/support/machine/temporary_directory.h"

namespace vxtest {

/// A folder that is to the commands of a document what a checkout in which everything was built is to a
/// reader: a copy of the sources, with the programs of this build in their places. What `scripts/demo` would
/// install and build is taken for done; the rest of it runs. Removed at the end of the object's life.
class Checkout {
 public:
    Checkout();

    const std::filesystem::path& folder() const { return folder_; }
    /// Where the programs of this build come first.
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
