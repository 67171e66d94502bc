#include "tests/mutation/source_range.h"

#include <clang/Lex/Lexer.h>

namespace vxmutants {

std::optional<Mutant> SourceMap::overCharacters(clang::CharSourceRange range) const {
    if (range.isInvalid() || !isOurs(range.getBegin())) {
        return std::nullopt;
    }
    Mutant mutant;
    mutant.file = sources_.getFilename(range.getBegin()).substr(root_.size()).str();
    mutant.begin = sources_.getFileOffset(range.getBegin());
    mutant.end = sources_.getFileOffset(range.getEnd());
    mutant.line = sources_.getSpellingLineNumber(range.getBegin());
    mutant.lastLine = sources_.getSpellingLineNumber(range.getEnd());
    mutant.original = clang::Lexer::getSourceText(range, sources_, language_).str();
    return mutant;
}

std::optional<Mutant> SourceMap::over(clang::SourceRange tokens) const {
    auto mutant = overCharacters(
        clang::Lexer::makeFileCharRange(clang::CharSourceRange::getTokenRange(tokens), sources_, language_));
    if (mutant) {
        mutant->inForeignMacro = isInForeignMacro(tokens.getBegin());
    }
    return mutant;
}

bool SourceMap::isInForeignMacro(clang::SourceLocation token) const {
    if (!sources_.isMacroArgExpansion(token)) {
        return false;
    }
    const clang::SourceLocation inBody = sources_.getImmediateExpansionRange(token).getBegin();
    return !sources_.getFilename(sources_.getSpellingLoc(inBody)).starts_with(root_);
}

std::optional<Mutant> SourceMap::overMacroAround(clang::SourceLocation token) const {
    return overCharacters(
        clang::Lexer::makeFileCharRange(sources_.getExpansionRange(token), sources_, language_));
}

bool SourceMap::isOurs(clang::SourceLocation location) const {
    const llvm::StringRef file = sources_.getFilename(sources_.getExpansionLoc(location));
    // The platform's declarations are one folder below and are not mutated.
    return file.starts_with(root_) && !file.substr(root_.size()).contains('/');
}

bool SourceMap::isWritten(clang::SourceLocation token) const {
    return isOurs(token) && sources_.getFileLoc(token) == sources_.getSpellingLoc(token);
}

std::size_t SourceMap::offset(clang::SourceLocation token) const {
    return sources_.getFileOffset(sources_.getFileLoc(token));
}

}  // namespace vxmutants
