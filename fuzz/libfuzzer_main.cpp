// The function that the fuzzer's own main function calls. The program has one target.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>

#include "fuzz/target.h"
#include "tests/support/machine/private_filesystem.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    if (const auto problem = vxtest::enterPrivateFilesystem()) {
        std::cerr << "fuzzing needs folders /opt, /tmp and /media of its own: " << *problem << '\n';
        std::exit(EXIT_FAILURE);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vxfuzz::Target::all().front()->run({reinterpret_cast<const char*>(data), size});
    return 0;
}
