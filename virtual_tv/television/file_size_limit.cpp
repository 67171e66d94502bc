#include "virtual_tv/television/file_size_limit.h"

#include <sys/resource.h>

namespace vxtv {

const char* const kRaiseFileSizeLimit = "raise the limit of the file size (ulimit -f) and try again";

bool fileMayNotGrow(std::uintmax_t bytes) {
    rlimit limit{};
    return getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && bytes >= limit.rlim_cur;
}

}  // namespace vxtv
