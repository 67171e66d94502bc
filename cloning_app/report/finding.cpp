#include "cloning_app/report/finding.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "cloning_app/package/layout.h"

namespace vxclone {

namespace {

using vxcommon::Colour;

constexpr std::size_t kMostFilesInASentence = 3;

struct SubjectFacts {
    std::string_view name;
    std::string_view words;
};

constexpr std::array kSubjects = {
    SubjectFacts{"identity", "kind of television"},
    SubjectFacts{"model", "model"},
    SubjectFacts{"product-tag", "product tag"},
    SubjectFacts{"tuner", "tuner type"},
    SubjectFacts{"key", "the television's clone key"},
    SubjectFacts{"package-key", "the television's package key"},
    SubjectFacts{"manifest", "list of the package"},
    SubjectFacts{"file", "in the package"},
    SubjectFacts{"seal", "whole package"},
};
static_assert(kSubjects.size() == static_cast<std::size_t>(Subject::Seal) + 1);

struct FindingFacts {
    std::string_view name;
    std::string_view words;
    Colour colour;
    std::optional<ErrorCode> problem;
};

constexpr std::array kFindings = {
    FindingFacts{"recorded", "recorded", Colour::Good, {}},
    FindingFacts{"sealed", "sealed", Colour::Good, {}},
    FindingFacts{"verified", "verified", Colour::Good, {}},
    FindingFacts{"same", "same", Colour::Good, {}},
    FindingFacts{"unaltered", "unaltered", Colour::Good, {}},
    FindingFacts{"no-manifest", "none: checked by the seal alone, which is weaker", Colour::Doubt, {}},
    FindingFacts{"overridden", "differs, restored all the same", Colour::Bad, {}},
    FindingFacts{"missing", "missing", Colour::Bad, ErrorCode::NotComplete},
    FindingFacts{"none", "none", Colour::Bad, ErrorCode::NoKey},
    FindingFacts{"altered", "altered", Colour::Bad, ErrorCode::Altered},
    FindingFacts{"missing", "missing", Colour::Bad, ErrorCode::Altered},
    FindingFacts{"added", "added", Colour::Bad, ErrorCode::Altered},
    FindingFacts{"differs", "differs", Colour::Bad, ErrorCode::DoesNotFit},
    FindingFacts{"absent", "not told by the package", Colour::Bad, ErrorCode::DoesNotFit},
    FindingFacts{"unknown", "not told by this television", Colour::Bad, ErrorCode::DoesNotFit},
    FindingFacts{"refused", "refused by the clone library", Colour::Bad, ErrorCode::DoesNotFit},
};
static_assert(kFindings.size() == static_cast<std::size_t>(Finding::Refused) + 1);

/// The problems, the most serious first.
constexpr std::array kByGravity = {ErrorCode::NotComplete, ErrorCode::NoKey, ErrorCode::Altered,
                                   ErrorCode::DoesNotFit};

const FindingFacts& factsOf(Finding finding) {
    return kFindings.at(static_cast<std::size_t>(finding));
}

/// Both values if they differ; otherwise the common one.
std::string valuesOf(const Check& check) {
    if (check.television.empty() && check.package.empty()) {
        return {};
    }
    return check.finding == Finding::Same
               ? check.television
               : fmt::format("this television {}, the package {}", check.television, check.package);
}

bool onlyTheModel(const std::vector<Check>& checks) {
    return std::all_of(checks.begin(), checks.end(), [](const Check& check) {
        return !problemOf(check) || (check.subject == Subject::Model && check.finding == Finding::Differs);
    });
}

std::string sentenceFor(ErrorCode problem, const std::string& what, const std::string& path,
                        const std::vector<Check>& checks) {
    switch (problem) {
        case ErrorCode::NotComplete:
            return fmt::format("{} is not complete: it holds no {}; make a new backup", path, what);
        case ErrorCode::NoKey:
            return fmt::format(
                "this television has no {}, so nobody can tell whether {} was altered; restart the "
                "television and try again, and have its keys installed if that does not help",
                what, path);
        case ErrorCode::Altered:
            return fmt::format("{} was altered after it was made{}; make a new backup", path,
                               what.empty() ? "" : " (" + what + ")");
        default:
            return fmt::format(
                "{} does not fit this television: {}; take a package of the same kind of "
                "television{}",
                path, what, onlyTheModel(checks) ? ", or restore with --force-model if you are sure" : "");
    }
}

/// The text of one check for a sentence.
std::string partOfSentence(const Check& check) {
    if (check.finding == Finding::None) {
        return check.subject == Subject::Key ? "clone key" : "package key";
    }
    if (check.subject == Subject::File) {
        return fmt::format("{} {}", check.detail, factsOf(check.finding).words);
    }
    if (problemOf(check) != ErrorCode::DoesNotFit) {
        return check.detail;
    }
    if (check.finding == Finding::Differs) {
        return fmt::format("{} ({})", wordsOf(check.subject), valuesOf(check));
    }
    return fmt::format("{} {}", wordsOf(check.subject), textOf(check));
}

/// The text of all checks with this problem for a sentence. Of many files it names the first ones and the
/// number of the others.
std::string partsFor(ErrorCode problem, const std::vector<Check>& checks) {
    std::string text;
    std::size_t files = 0;
    for (const Check& check : checks) {
        const bool counts = problemOf(check) == problem;
        files += counts && check.subject == Subject::File ? 1U : 0U;
        const std::string part = counts ? partOfSentence(check) : std::string();
        if (!part.empty() && (check.subject != Subject::File || files <= kMostFilesInASentence)) {
            text += (text.empty() ? "" : ", ") + part;
        }
    }
    return files > kMostFilesInASentence ? text + fmt::format(" and {} more", files - kMostFilesInASentence)
                                         : text;
}

}  // namespace

std::string_view nameOf(Subject subject) {
    return kSubjects.at(static_cast<std::size_t>(subject)).name;
}

std::string_view nameOf(Finding finding) {
    return factsOf(finding).name;
}

std::string_view wordsOf(Subject subject) {
    return kSubjects.at(static_cast<std::size_t>(subject)).words;
}

std::string textOf(const Check& check) {
    std::string text(factsOf(check.finding).words);
    for (const std::string& more : {valuesOf(check), check.detail}) {
        text += more.empty() ? "" : ": " + more;
    }
    return vxcommon::printable(text);
}

Colour colourOf(const Check& check) {
    return factsOf(check.finding).colour;
}

std::optional<ErrorCode> problemOf(const Check& check) {
    return factsOf(check.finding).problem;
}

std::optional<ErrorCode> problemOf(const std::vector<Check>& checks) {
    for (const ErrorCode problem : kByGravity) {
        if (std::any_of(checks.begin(), checks.end(),
                        [problem](const Check& check) { return problemOf(check) == problem; })) {
            return problem;
        }
    }
    return std::nullopt;
}

std::vector<std::string> problemSentences(const std::vector<Check>& checks, const std::string& path) {
    std::vector<std::string> sentences;
    for (const ErrorCode problem : kByGravity) {
        const bool found = std::any_of(checks.begin(), checks.end(),
                                       [problem](const Check& check) { return problemOf(check) == problem; });
        if (found) {
            sentences.push_back(sentenceFor(problem, vxcommon::printable(partsFor(problem, checks)),
                                            vxcommon::printable(path), checks));
        }
    }
    return sentences;
}

}  // namespace vxclone
