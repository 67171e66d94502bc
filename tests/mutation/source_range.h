#pragma once

// The place of a part of the parsed program in the source files.

#include <clang/Basic/LangOptions.h>
#include <clang/Basic/SourceManager.h>

#include <optional>
#include <string>

#include "tests/mutation/mutant.h"

namespace vxmutants {

/// Maps the compiler's locations to bytes of the sources below one folder.
class SourceMap {
 public:
    SourceMap(const clang::SourceManager& sources, const clang::LangOptions& language, std::string root)
        : sources_(sources), language_(language), root_(std::move(root)) {}

    /// A mutant for the tokens of the range, without its change. Empty if they are not contiguous in one of
    /// our files, for example in the body of a macro.
    std::optional<Mutant> over(clang::SourceRange tokens) const;
    /// The same over the whole use of the macro that the token is an argument of.
    std::optional<Mutant> overMacroAround(clang::SourceLocation token) const;

    /// Whether the location, or the use of the macro that it comes from, is in one of our files.
    bool isOurs(clang::SourceLocation location) const;
    /// Whether the token was written where it is used, as itself or as an argument of a macro.
    bool isWritten(clang::SourceLocation token) const;
    /// The offset in its file of a token that was written where it is used.
    std::size_t offset(clang::SourceLocation token) const;

 private:
    std::optional<Mutant> overCharacters(clang::CharSourceRange range) const;
    bool isInForeignMacro(clang::SourceLocation token) const;

    const clang::SourceManager& sources_;
    const clang::LangOptions& language_;
    std::string root_;
};

}  // namespace vxmutants
