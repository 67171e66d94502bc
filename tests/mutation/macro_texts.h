#pragma once

// Literals in the bodies of macros, which the program's tree shows only where they are used.

#include <clang/Lex/PPCallbacks.h>

#include <vector>

#include "tests/mutation/source_range.h"

namespace vxmutants {

class MacroTexts : public clang::PPCallbacks {
 public:
    MacroTexts(SourceMap map, std::vector<Mutant>& mutants) : map_(std::move(map)), mutants_(mutants) {}

    void MacroDefined(const clang::Token& name, const clang::MacroDirective* macro) override;

 private:
    SourceMap map_;
    std::vector<Mutant>& mutants_;
};

}  // namespace vxmutants
