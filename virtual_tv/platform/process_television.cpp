#include "virtual_tv/platform/process_television.h"

#include <cstdlib>
#include <exception>
#include <memory>
#include <new>

#include "common/plain_reason.h"
#include "common/writer.h"

namespace vxtv {

namespace {

/// Allocates no memory, because there may be none.
void sayThatThereIsNone(vxcommon::PrintableView why) {
    vxcommon::Writer errors = vxcommon::standardError();
    errors.write("vx-virtual-tv: no television, so every platform call fails: ");
    errors.write(why);
    errors.write("\n");
}

std::unique_ptr<Television> openNamed() noexcept {
    const char* path = std::getenv(kTelevisionVariable);
    try {
        if (path == nullptr || *path == '\0') {
            vxcommon::standardError().line(
                "vx-virtual-tv: no television: " + vxcommon::printable(kTelevisionVariable) +
                " is not set, so every platform call fails; start the program "
                "with: vxtv run DIR -- PROGRAM");
            return nullptr;
        }
        Result<Television> television = Television::open(path);
        if (television) {
            return std::make_unique<Television>(std::move(*television));
        }
        sayThatThereIsNone(vxcommon::printable(television.error().sentence));
    } catch (const std::bad_alloc&) {
        sayThatThereIsNone("memory is too short");
    } catch (const std::exception& exception) {
        sayThatThereIsNone(vxcommon::printable(path) + ": " + vxcommon::plainReason(exception) +
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
