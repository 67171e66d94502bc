#include "virtual_tv/commands/command.h"

#include <cstdio>

#include "common/terminal_table.h"

namespace vxtv {

int complain(const Error& error) {
    // A sentence may hold a name that somebody else chose.
    std::fprintf(stderr, "vxtv: %s\n", vxcommon::printable(error.sentence).c_str());
    return kExitFailed;
}

}  // namespace vxtv
