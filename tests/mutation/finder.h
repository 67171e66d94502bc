#pragma once

// Finds the possible mutants of a source.

#include <string>
#include <vector>

#include "tests/mutation/mutant.h"

namespace vxmutants {

/// The mutants of the sources and of their own headers, in the order of their places, each once. `root` is
/// the folder of the sources, with a slash at its end; `flags` are the compiler's. Ends the program if a
/// source does not compile.
std::vector<Mutant> findMutants(const std::string& root, const std::vector<std::string>& sources,
                                const std::vector<std::string>& flags);

}  // namespace vxmutants
