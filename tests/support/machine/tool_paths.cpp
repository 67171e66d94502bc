#include "tests/support/machine/tool_paths.h"

namespace vxtest {

std::filesystem::path vxtvProgram() {
    return toolFolder() / "vxtv";
}
std::filesystem::path vxcloneProgram() {
    return toolFolder() / "vxclone";
}
std::filesystem::path toolFolder() {
    return VX_TOOL_FOLDER;
}
std::filesystem::path libraryFolder() {
    return VX_LIBRARY_FOLDER;
}
std::filesystem::path buildFolder() {
    return VX_BUILD_FOLDER;
}
std::filesystem::path sourceFolder() {
    return VX_SOURCE_FOLDER;
}

}  // namespace vxtest
