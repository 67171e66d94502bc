#pragma once

#include <filesystem>
#include <string>

namespace vxtv {

/// The path of an internal program that ships with vxtv: libexec/vxtv in one of the folders above this
/// library or program, both in a build and in an installation. Empty if there is none.
std::filesystem::path shippedProgram(const std::string& name);

/// The folder of the files from which vxtv makes televisions: ../share/vxtv, relative to the running program.
std::filesystem::path shippedData();

}  // namespace vxtv
