#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/session/entry_record.h"
#include "virtual_tv/session/stick.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// A television on the machine's own paths, where no namespace is allowed: for everything at the top of its
/// opt and media folders a symbolic link of that name in /opt and /media. A stick is a link in the media
/// folder itself. /tmp stays the machine's.
///
/// There can be one at a time: /opt of the machine is held locked. Links are removed with the object; those
/// that a killed session left are known by leading into a television, and are replaced.
class RealPaths {
 public:
    /// On failure nothing of what was made is left: Busy when a television has the paths already,
    /// AlreadyExists when something else is there, Io otherwise; the sentence names the path.
    static Result<RealPaths> take(const Folder& folder, const std::vector<Stick>& sticks,
                                  const EntryRecord& record);
    RealPaths(RealPaths&&) = default;
    RealPaths& operator=(RealPaths&&) = delete;
    ~RealPaths();

 private:
    RealPaths() = default;
    Result<void> lock();
    Result<void> makeRoot(const std::filesystem::path& root);
    Result<void> linkAll(const std::filesystem::path& inFolder, const std::filesystem::path& root);

    Descriptor lock_;
    std::vector<std::filesystem::path> links_;
    std::vector<std::filesystem::path> madeRoots_;
};

}  // namespace vxtv
