#include "tests/support/machine/temporary_directory.h"

#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace vxtest {

TemporaryDirectory::TemporaryDirectory() {
    std::string name = "/tmp/vx-test-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
        std::perror("cannot make a temporary directory in /tmp");
        std::abort();
    }
    path_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace vxtest
