#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

#include "common/error.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv {

/// The mode of a file that only its owner may access.
inline constexpr mode_t kOwnFileMode = 0600;

/// Opens a file of the television itself, such as a log or a lock, with the flags of open(2). Follows no link
/// at the end of the path or in place of the folder that holds the file, opens only a regular file, and never
/// blocks. O_TRUNC empties only a regular file.
tl::expected<Descriptor, ReadTrouble> openOwnFile(const std::filesystem::path& file, int flags,
                                                  mode_t mode = kOwnFileMode);

/// The error about a television's own file that could not be opened: "PATH cannot be WHAT: it is a link;
/// remove it".
tl::unexpected<Error> ownFileError(const std::filesystem::path& file, const char* what,
                                   const ReadTrouble& trouble);

/// The first link on the path from the folder to `inside`, which is relative to the folder; empty if there is
/// none.
std::optional<std::filesystem::path> linkOnTheWay(const std::filesystem::path& folder,
                                                  const std::filesystem::path& inside);

}  // namespace vxtv
