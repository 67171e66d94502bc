#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/descriptor.h"

namespace vxcommon {

/// Writes all bytes, with as many calls as necessary, and waits until they are on the disk. Result: 0, or the
/// system's reason (errno).
int writeAndFlush(int file, std::string_view bytes);

/// Whether a write failed with this reason (errno) because there is no room: the disk or the user's quota is
/// full.
bool meansNoRoom(int reason);

/// What happens to a file or folder that already has the final name.
enum class Existing {
    Refuse,   ///< the existing one stays, and the reason is EEXIST
    Replace,  ///< the existing one is removed
    Exchange  ///< it must exist, and gets the other name
};

/// The fallback for `Existing::Refuse` on a file system whose rename always replaces (EINVAL).
enum class WithoutRefusal {
    Fail,   ///< the reason is EINVAL
    Link,   ///< creates a hard link with the final name, which also refuses; not for folders
    Rename  ///< renames anyway; a folder can replace at most an empty folder
};

/// How a file or folder gets its final name.
struct Placing {
    Existing existing = Existing::Refuse;
    WithoutRefusal without = WithoutRefusal::Fail;
};

/// Renames the file or folder `made` to `target` on the same file system in one step: other processes see it
/// completely or not at all. Flushes nothing. Result: 0, or the system's reason (errno).
int putInPlace(const std::filesystem::path& made, const std::filesystem::path& target, const Placing& how);

/// A new file or folder under a hidden name beside its target, accessible only for its owner. The destructor
/// removes it unless it was put in place. It stays only if the process dies.
class Beside {
 public:
    static Beside file(const std::filesystem::path& target);
    static Beside folder(const std::filesystem::path& target);
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;
    ~Beside();

    /// The reason why it could not be made (errno), or 0.
    int refused() const { return refused_; }
    const std::filesystem::path& path() const { return path_; }
    /// For a file: writes and flushes all bytes. Result: 0, or the system's reason (errno).
    int write(std::string_view bytes) const;
    /// Result: 0, or the system's reason (errno).
    int putInPlace(const Placing& how);

 private:
    Beside(const std::filesystem::path& target, bool isFile);

    std::filesystem::path target_;
    std::filesystem::path path_;
    Descriptor file_;
    int refused_ = 0;
    bool isThere_ = false;
};

}  // namespace vxcommon
