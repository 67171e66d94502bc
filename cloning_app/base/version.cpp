#include "cloning_app/base/version.h"

namespace vxclone {

std::string_view version() {
    return VXCLONE_VERSION;
}

}  // namespace vxclone
