#include "tests/mutation/woven_source.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace vxmutants {
namespace {

/// Text to insert at places of a file, or to replace parts of it.
struct Insertions {
    std::map<std::size_t, std::string> before;                           // in front of what starts here
    std::map<std::size_t, std::string> after;                            // behind what ends here
    std::map<std::size_t, std::pair<std::size_t, std::string>> instead;  // up to an end
};

std::string inserted(const std::string& text, const Insertions& insertions) {
    const auto at = [](const auto& texts, std::size_t place) {
        const auto found = texts.find(place);
        return found == texts.end() ? std::string() : found->second;
    };
    std::string woven;
    std::size_t skipTo = 0;
    for (std::size_t place = 0; place <= text.size(); ++place) {
        woven += at(insertions.after, place);
        const auto replaced = insertions.instead.find(place);
        if (replaced != insertions.instead.end()) {
            skipTo = replaced->second.first;
            woven += replaced->second.second;
        }
        woven += at(insertions.before, place);
        if (place < text.size() && place >= skipTo) {
            woven += text[place];
        }
    }
    return woven;
}

/// The changed copy is on the line of the original, before it, so that line numbers do not change.
std::string onOneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

void weave(const Mutant& mutant, Insertions& insertions) {
    const std::string chosen = "::vxMutant(" + std::to_string(mutant.id) + ")";
    if (mutant.form == Form::kStatement) {
        insertions.before[mutant.begin] += "if (" + chosen + ") {} else ";
        return;
    }
    insertions.before[mutant.begin] += "(" + chosen + " ? " + onOneLine(mutant.replacement) + " : ";
    insertions.after[mutant.end] += ")";
}

/// A value that is chosen at run time is not a constant for the compiler. A constant of a header becomes
/// local to each source, so that it is not confused with the one that the tests were compiled with.
void unfix(const std::string& text, const Mutant& mutant, Insertions& insertions) {
    if (mutant.constant.empty()) {
        return;
    }
    const bool shared = text.compare(mutant.constantAt, kSharedConstant.size(), kSharedConstant) == 0;
    const std::string linkage = shared ? "static " : "";
    insertions.instead[mutant.constantAt] =
        mutant.form == Form::kTextArray
            ? std::pair(mutant.begin, linkage + "const char* const " + mutant.constant + " = ")
            : std::pair(mutant.constantAt + (shared ? kSharedConstant : kConstant).size(),
                        linkage + "const ");
}

}  // namespace

std::string withChange(std::string text, const Mutant& mutant) {
    return text.replace(mutant.begin, mutant.end - mutant.begin, mutant.replacement);
}

std::string withAllChanges(const std::string& text, const std::vector<Mutant>& mutants) {
    std::vector<Mutant> outermostFirst = mutants;
    std::sort(outermostFirst.begin(), outermostFirst.end(), [](const Mutant& a, const Mutant& b) {
        // If both cover the same bytes, the statement must enclose the expression.
        return std::tuple(a.end - a.begin, a.form == Form::kStatement) >
               std::tuple(b.end - b.begin, b.form == Form::kStatement);
    });
    Insertions insertions;
    for (const Mutant& mutant : outermostFirst) {
        weave(mutant, insertions);
        unfix(text, mutant, insertions);
    }
    return "#include \"vx_mutant.h\"\n#line 1\n" + inserted(text, insertions);
}

}  // namespace vxmutants
