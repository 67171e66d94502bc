#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "tests/support/machine/private_filesystem.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests)) {
        if (const auto problem = vxtest::enterPrivateFilesystem()) {
            std::cerr << "these tests need folders /opt, /tmp and /media of their own: " << *problem << '\n';
            return EXIT_FAILURE;
        }
    }
    return RUN_ALL_TESTS();
}
