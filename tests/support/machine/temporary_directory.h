#pragma once

#include <filesystem>
#include <string>

namespace vxtest {

/// A new, empty directory below /tmp. The destructor removes it with its content. Ends the program if it
/// cannot be created, because there is no test without it.
class TemporaryDirectory {
 public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& inside) const { return path_ / inside; }

 private:
    std::filesystem::path path_;
};

}  // namespace vxtest
