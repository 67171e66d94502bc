#pragma once

// Finds the changes that are tried on a source.

#include <string>
#include <vector>

#include "tests/mutation/mutant.h"

namespace vxmutants {

/// The mutants of the sources and of those headers beside them that they include, in the order of their
/// places, each once. `root` is the sources' folder, with a slash at its end; `flags` are the compiler's.
/// Ends the program when a source does not compile.
std::vector<Mutant> findMutants(const std::string& root, const std::vector<std::string>& sources,
                                const std::vector<std::string>& flags);

}  // namespace vxmutants
