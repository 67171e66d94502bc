#pragma once

#include <filesystem>
#include <string>

namespace vxtv {

/// Where a program lies that ships with vxtv and is not for people to start: libexec/vxtv, in one of the
/// folders above this library or program, in a build and in an installation alike. Empty when there is none.
std::filesystem::path shippedProgram(const std::string& name);

/// The folder of what vxtv ships for televisions to be made from: ../share/vxtv, seen from the running
/// program.
std::filesystem::path shippedData();

}  // namespace vxtv
