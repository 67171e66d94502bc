#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

#include "common/error.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv {

/// How a file is made that is there for its owner alone.
inline constexpr mode_t kOwnFileMode = 0600;

/// Opens a file that belongs to the television itself, such as a log or a lock, with the flags of open(2).
/// Follows a link neither at the path's end nor in place of the folder that holds the file, opens nothing but
/// a plain file, and waits for no other process. With O_TRUNC only a plain file is emptied.
tl::expected<Descriptor, ReadTrouble> openOwnFile(const std::filesystem::path& file, int flags,
                                                  mode_t mode = kOwnFileMode);

/// The error for an own file that could not be opened: "PATH cannot be WHAT: it is a link; remove it".
tl::unexpected<Error> ownFileError(const std::filesystem::path& file, const char* what,
                                   const ReadTrouble& trouble);

/// The first link on the way from the folder to `inside`, which is relative to it; none where there is none.
std::optional<std::filesystem::path> linkOnTheWay(const std::filesystem::path& folder,
                                                  const std::filesystem::path& inside);

}  // namespace vxtv
