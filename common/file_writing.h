#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/descriptor.h"

namespace vxcommon {

/// Writes all the bytes, however many calls that takes, and waits until the disk has them. Result: 0, or the
/// system's reason (errno).
int writeAndFlush(int file, std::string_view bytes);

/// Whether the reason (errno) for which nothing could be written says that there is no room: the disk is
/// full, or the user's share of it.
bool meansNoRoom(int reason);

/// What becomes of a file or folder that has the final name already.
enum class Existing {
    Refuse,   ///< it stays, and the reason is EEXIST
    Replace,  ///< it is gone afterwards
    Exchange  ///< it has to be there, and gets the other name
};

/// What `Existing::Refuse` does on a file system whose rename may replace in any case (EINVAL).
enum class WithoutRefusal {
    Fail,   ///< the reason is EINVAL
    Link,   ///< links the file under its final name, which refuses as well; folders cannot be linked
    Rename  ///< renames all the same: of a folder that replaces an empty folder, at worst
};

/// How something is given its final name.
struct Placing {
    Existing existing = Existing::Refuse;
    WithoutRefusal without = WithoutRefusal::Fail;
};

/// Gives the file or folder `made` the name `target` on the same file system in one step: whoever looks finds
/// it whole or not at all. Flushes nothing. Result: 0, or the system's reason (errno).
int putInPlace(const std::filesystem::path& made, const std::filesystem::path& target, const Placing& how);

/// A new file or folder under a hidden name beside its target, for its owner alone. It is removed with this
/// object unless it was put in its place; only the death of the process leaves it behind.
class Beside {
 public:
    static Beside file(const std::filesystem::path& target);
    static Beside folder(const std::filesystem::path& target);
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;
    ~Beside();

    /// Why it could not be made (errno); 0 if it was made.
    int refused() const { return refused_; }
    const std::filesystem::path& path() const { return path_; }
    /// Of a file: writes and flushes all the bytes. Result: 0, or the system's reason (errno).
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
