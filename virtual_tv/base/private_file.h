#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "common/error.h"
#include "common/file_writing.h"
#include "virtual_tv/base/error.h"

namespace vxtv {

/// Why a file was not read.
struct ReadTrouble {
    enum class Kind {
        Missing,       ///< there is nothing at the path
        NoPlainFile,   ///< a link, a folder, a pipe or a device
        CannotBeRead,  ///< the system says no
    };
    Kind kind;
    std::string reason;  ///< for a sentence: "it is a folder", "Permission denied"
};

/// Reads a plain file up to `limit` bytes; of a longer one it gives the first `limit`. Follows no link at the
/// path's end and waits for no other process, whatever lies there.
tl::expected<std::string, ReadTrouble> readPlainFile(const std::filesystem::path& file, std::size_t limit);

using vxcommon::Existing;

/// Writes a file that its owner alone may read: beside first, flushed, then put in its place, so that it is
/// there whole or not at all, also after a crash. Only the death of this process on the way leaves something,
/// a hidden file beside.
/// Errors: AlreadyExists, NoSpace, Io; each sentence names the file.
Result<void> writePrivateFile(const std::filesystem::path& file, std::string_view bytes, Existing existing);

/// Makes names in the folder outlive a crash: new, changed or removed ones. Errors: NoSpace, Io.
Result<void> flushFolder(const std::filesystem::path& folder);

/// What to do where a file may not grow as large as it has to.
extern const char* const kRaiseFileSizeLimit;

/// Whether the limit of the file size (RLIMIT_FSIZE) lets no file of this process become larger than that.
bool fileMayNotGrow(std::uintmax_t bytes);

}  // namespace vxtv
