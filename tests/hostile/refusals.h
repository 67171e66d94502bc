#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/hostile/stage.h"

namespace vxtest {

/// The code of most refusals.
inline constexpr const char* kAltered = "altered";

/// A good package damaged in one way, and what must be said of it.
struct Case {
    std::string name;
    /// Damages the package on the stick. False when this machine does not allow that; the case is left out.
    std::function<bool(const std::filesystem::path& package)> damage;
    std::string_view code;    ///< the error's name in JSON, which decides the exit status
    std::string says = {};    ///< a part of the sentence
    std::string expect = {};  ///< the digest that the installer asks for
};

/// Lays a case on the stick and tries to restore it, by the functions: some of a long table, the first by the
/// program as well; in the long form each in both ways. Each must be refused with its code, its status and
/// its sentence, before the first change to the television, and nothing outside of it be touched. Says how
/// many were tried.
void expectRefusals(const std::vector<Case>& cases);

}  // namespace vxtest
