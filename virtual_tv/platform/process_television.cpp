#include "virtual_tv/platform/process_television.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>

#include "common/plain_reason.h"
#include "common/printable.h"

namespace vxtv {

namespace {

void complain(const std::string& sentence) {
    std::fprintf(stderr, "vx-virtual-tv: no television, so every platform call fails: %s\n",
                 vxcommon::printable(sentence).c_str());
}

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
        complain(television.error().sentence);
    } catch (const std::exception& exception) {
        complain(std::string(path) + ": " + vxcommon::plainReason(exception) +
                 "; see whether the television is whole with: vxtv info DIR");
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
