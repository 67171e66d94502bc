#include "tests/mutation/macro_texts.h"

#include <clang/Lex/MacroInfo.h>
#include <clang/Lex/Token.h>

namespace vxmutants {

void MacroTexts::MacroDefined(const clang::Token& name, const clang::MacroDirective* macro) {
    if (!map_.isOurs(name.getLocation())) {
        return;
    }
    for (const clang::Token& token : macro->getMacroInfo()->tokens()) {
        const bool isText = token.is(clang::tok::string_literal);
        auto mutant = map_.over(token.getLocation());
        if (!mutant || !(isText || token.is(clang::tok::numeric_constant))) {
            continue;
        }
        mutant->kind = isText ? "text" : "constant";
        mutant->replacement = isText ? mutant->original + " \"~\"" : "(" + mutant->original + " + 1)";
        mutants_.push_back(*mutant);
    }
}

}  // namespace vxmutants
