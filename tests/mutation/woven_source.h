#pragma once

// Inserts mutants into sources.

#include <string>
#include <vector>

#include "tests/mutation/mutant.h"

namespace vxmutants {

/// The text with one change made.
std::string withChange(std::string text, const Mutant& mutant);

/// The text with all mutants inserted; `vxMutant(ID)` selects one at run time. Line numbers do not change.
/// Before: all mutants are of this file, and none has Form::kAlone.
std::string withAllChanges(const std::string& text, const std::vector<Mutant>& mutants);

}  // namespace vxmutants
