#include "virtual_tv/television/file_size_limit.h"

#include <sys/resource.h>

namespace vxtv {

bool fileMayNotGrow(std::uintmax_t bytes) {
    rlimit limit{};
    return getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && bytes >= limit.rlim_cur;
}

}  // namespace vxtv
