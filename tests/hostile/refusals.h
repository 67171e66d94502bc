#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/hostile/stage.h"

namespace vxtest {

/// The code of most refusals.
inline constexpr const char* kAltered = "altered";

/// A good package with one kind of damage, and the expected error.
struct Case {
    std::string name;
    /// Damages the package on the stick. False if this machine does not allow it; then the case is left out.
    std::function<bool(const std::filesystem::path& package)> damage;
    std::string_view code;    ///< the error's name in JSON, which decides the exit status
    std::string says = {};    ///< a part of the sentence
    std::string expect = {};  ///< the digest that the installer asks for
};

/// Puts each case on the stick and tries to restore it with vxclone's functions: some cases of a long table,
/// the first one with the program as well; in the long form, each in both ways. Each must be refused with its
/// code, its status and its sentence, before the first change to the television, and nothing outside of the
/// package may be touched. Prints the number of tried cases.
void expectRefusals(const std::vector<Case>& cases);

}  // namespace vxtest
