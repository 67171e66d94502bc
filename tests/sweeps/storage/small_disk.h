#pragma once

#include <filesystem>
#include <string>

namespace vxtest {

/// A disk of its own at a folder, in memory, of the size that is wanted; gone, with all that is on it, at the
/// end of the object's life. Throws std::system_error where it cannot be mounted.
class SmallDisk {
 public:
    /// `options` are those of the file system: "size=64k", "nr_inodes=10". The folder exists.
    SmallDisk(std::filesystem::path folder, const std::string& options);
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk();

    const std::filesystem::path& path() const { return folder_; }
    /// Lets the disk be full but for so many units of `unit` bytes ("size=") or files ("nr_inodes=").
    void leave(const std::string& option, int unit, int room) const;

 private:
    std::filesystem::path folder_;
};

}  // namespace vxtest
