#pragma once

// A small change of a source that a good test detects.

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace vxmutants {

/// How a change is compiled together with the original, so that it can be chosen at run time.
enum class Form {
    kExpression,  ///< `(chosen ? changed : original)`
    kStatement,   ///< `if (chosen) {} else original`
    kTextArray,   ///< like an expression, once the array that it fills is a pointer
    kAlone        ///< not at all: the change has to be compiled by itself
};

/// How the declaration of a constant begins, when one holds a mutant.
inline constexpr std::string_view kConstant = "constexpr ";
inline constexpr std::string_view kSharedConstant = "inline constexpr ";

/// The bytes from `begin` to `end` of `file` become `replacement`.
struct Mutant {
    int id = 0;
    std::string file;
    unsigned line = 0;
    unsigned lastLine = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
    Form form = Form::kAlone;
    std::string kind;
    std::string original;
    std::string replacement;
    /// Whether it is an argument of a foreign macro, which may use its text.
    bool inForeignMacro = false;
    /// The start of the declaration of the surrounding constant, and its name; otherwise empty.
    std::size_t constantAt = 0;
    std::string constant;
};

/// A mutant as a JSON object on one line.
std::string asLine(const Mutant& mutant);
std::vector<Mutant> readMutants(const std::string& path);

/// The whole file. Ends the program when it cannot be read or written.
std::string readText(const std::string& path);
void writeText(const std::string& path, const std::string& text);

}  // namespace vxmutants
