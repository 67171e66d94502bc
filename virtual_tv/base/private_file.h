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

/// The reason why a file was not read.
struct ReadTrouble {
    enum class Kind {
        Missing,       ///< the path does not exist
        NoPlainFile,   ///< a link, a folder, a pipe or a device
        CannotBeRead,  ///< the system refuses
    };
    Kind kind;
    std::string reason;  ///< for a sentence: "it is a folder", "Permission denied"
};

/// Reads a regular file up to `limit` bytes; of a longer file, the first `limit` bytes. Does not follow a
/// link at the end of the path, and never blocks.
tl::expected<std::string, ReadTrouble> readPlainFile(const std::filesystem::path& file, std::size_t limit);

using vxcommon::Existing;

/// Writes a file that only its owner may read. It is written under another name, flushed, and then renamed,
/// so it exists completely or not at all, even after a crash. If the process dies meanwhile, a hidden file
/// stays beside it. Errors: AlreadyExists, NoSpace, Io; each sentence names the file.
Result<void> writePrivateFile(const std::filesystem::path& file, std::string_view bytes, Existing existing);

/// Flushes the folder, so that new, changed and removed names survive a crash. Errors: NoSpace, Io.
Result<void> flushFolder(const std::filesystem::path& folder);

/// The next step if a file cannot grow to the necessary size.
extern const char* const kRaiseFileSizeLimit;

/// Whether the limit of the file size (RLIMIT_FSIZE) forbids files of more than that size.
bool fileMayNotGrow(std::uintmax_t bytes);

}  // namespace vxtv
