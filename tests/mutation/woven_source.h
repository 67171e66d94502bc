#pragma once

// Sources with changes in them.

#include <string>
#include <vector>

#include "tests/mutation/mutant.h"

namespace vxmutants {

/// The text with one change made.
std::string withChange(std::string text, const Mutant& mutant);

/// The text with all changes woven in: `vxMutant(ID)` chooses one when the program runs. No line moves. The
/// mutants are of this one file and none has Form::kAlone.
std::string withAllChanges(const std::string& text, const std::vector<Mutant>& mutants);

}  // namespace vxmutants
