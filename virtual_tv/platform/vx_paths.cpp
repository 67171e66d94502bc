#include "platform/vx_paths.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/store/folder.h"

using namespace vxtv;

namespace {

std::string pathOf(KnownCall call, const PictureArea& area) {
    return answer(call, {}, std::string(), [&area](Television&) { return area.path; });
}

}  // namespace

std::string vx_get_bootlogo_path() {
    return pathOf("vx_get_bootlogo_path", kBootLogoArea);
}

std::string vx_get_mbrlogo_path() {
    return pathOf("vx_get_mbrlogo_path", kMbrLogoArea);
}

std::string vx_get_homemenu_path() {
    return pathOf("vx_get_homemenu_path", kHomeMenuArea);
}
