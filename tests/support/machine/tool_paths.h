#pragma once

#include <filesystem>

namespace vxtest {

/// The programs of this build.
std::filesystem::path vxtvProgram();
std::filesystem::path vxcloneProgram();

/// Where the build puts programs and libraries, and where it and its sources lie.
std::filesystem::path toolFolder();
std::filesystem::path libraryFolder();
std::filesystem::path buildFolder();
std::filesystem::path sourceFolder();

}  // namespace vxtest
