#pragma once

#include <cstdint>

namespace vxtv {

/// What to do where a file may not grow as large as it has to.
extern const char* const kRaiseFileSizeLimit;

/// Whether the limit of the file size (RLIMIT_FSIZE) lets no file of this process become larger than that.
bool fileMayNotGrow(std::uintmax_t bytes);

}  // namespace vxtv
