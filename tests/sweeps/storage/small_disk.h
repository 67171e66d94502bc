#pragma once

#include <filesystem>
#include <string>

namespace vxtest {

/// A file system in memory at a folder, with a limited size. The destructor removes it with its content.
/// Throws std::system_error if it cannot be mounted.
class SmallDisk {
 public:
    /// `options` are those of the file system: "size=64k", "nr_inodes=10". The folder must exist.
    SmallDisk(std::filesystem::path folder, const std::string& options);
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk();

    const std::filesystem::path& path() const { return folder_; }
    /// Limits the disk so that only `room` units of `unit` bytes ("size=") or files ("nr_inodes=") are free.
    void leave(const std::string& option, int unit, int room) const;

 private:
    std::filesystem::path folder_;
};

}  // namespace vxtest
