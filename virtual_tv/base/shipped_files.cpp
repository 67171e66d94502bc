#include "virtual_tv/base/shipped_files.h"

#include <dlfcn.h>
#include <unistd.h>

#include <system_error>

namespace vxtv {

namespace fs = std::filesystem;

namespace {

/// The file that contains this function: the platform's library, or the program that it is linked into.
fs::path ownFile() {
    static const char anchor = 0;
    Dl_info place{};
    std::error_code error;
    if (dladdr(&anchor, &place) != 0 && place.dli_fname != nullptr && place.dli_fname[0] == '/') {
        const fs::path file = fs::canonical(place.dli_fname, error);
        if (!error) {
            return file;
        }
    }
    return fs::read_symlink("/proc/self/exe", error);
}

}  // namespace

fs::path shippedProgram(const std::string& name) {
    // PREFIX/bin, PREFIX/lib, PREFIX/lib/ARCHITECTURE and PREFIX/libexec/vxtv.
    constexpr int kHighest = 3;
    fs::path above = ownFile().parent_path();
    for (int level = 0; level < kHighest; ++level) {
        above = above.parent_path();
        const fs::path program = above / "libexec" / "vxtv" / name;
        if (access(program.c_str(), X_OK) == 0) {
            return program;
        }
    }
    return {};
}

fs::path shippedData() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path().parent_path() / "share" / "vxtv";
}

}  // namespace vxtv
