#pragma once

#include <filesystem>

namespace vxtest {

/// The programs of this build.
std::filesystem::path vxtvProgram();
std::filesystem::path vxcloneProgram();

/// The folder of the build's programs and libraries, the build folder, and the source folder.
std::filesystem::path toolFolder();
std::filesystem::path libraryFolder();
std::filesystem::path buildFolder();
std::filesystem::path sourceFolder();

}  // namespace vxtest
