#include "cloning_app/version.h"

namespace vxclone {

std::string_view version() {
    return VXCLONE_VERSION;
}

}  // namespace vxclone
