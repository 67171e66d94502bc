#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/session/entry_record.h"
#include "virtual_tv/session/stick.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// A television on the machine's own paths, for machines that allow no namespace. For every entry at the top
/// of its opt and media folders there is a symbolic link of that name in /opt and /media. A stick is a link
/// in the media folder itself. /tmp stays the machine's.
///
/// Only one is possible at a time: /opt of the machine is locked. The destructor removes the links. Links of
/// a killed session are recognised because they lead into a television, and are replaced.
class RealPaths {
 public:
    /// On failure nothing stays behind: Busy if a television already uses the paths, AlreadyExists if
    /// something else is there, otherwise Io. The sentence names the path.
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
