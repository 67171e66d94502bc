#include "platform/wqd.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

int wqd_install_from_file(const char* path, int target, int option) {
    return absent("wqd_install_from_file",
                  {named("path", path), number("target", target), number("option", option)}, kFailed);
}
