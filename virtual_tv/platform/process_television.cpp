#include "virtual_tv/platform/process_television.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>

namespace vxtv {

namespace {

std::unique_ptr<Television> openNamed() noexcept {
    const char* path = std::getenv(kTelevisionVariable);
    if (path == nullptr || *path == '\0') {
        std::fprintf(stderr,
                     "vx-virtual-tv: no television: %s is not set, so every platform call fails; start the "
                     "program with: vxtv run DIR -- PROGRAM\n",
                     kTelevisionVariable);
        return nullptr;
    }
    try {
        Result<Television> television = Television::open(path);
        if (television) {
            return std::make_unique<Television>(std::move(*television));
        }
        std::fprintf(stderr, "vx-virtual-tv: no television, so every platform call fails: %s\n",
                     television.error().sentence.c_str());
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "vx-virtual-tv: no television, so every platform call fails: %s\n",
                     exception.what());
    }
    return nullptr;
}

}  // namespace

Television* processTelevision() noexcept {
    // Never closed: threads and static objects of the program may make calls while the process ends.
    static Television* const television = openNamed().release();
    return television;
}

}  // namespace vxtv
