#include "cloning_app/report/result_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace vxclone {

namespace {

using vxcommon::Colour;

/// The number of changed files that are named; the others are only counted.
constexpr std::size_t kMostFilesShown = 20;

struct VerdictFacts {
    std::string_view name;
    std::string_view words;
    Colour colour;
};

constexpr std::array kVerdicts = {
    VerdictFacts{"success", "done", Colour::Good},
    VerdictFacts{"failed", "failed", Colour::Bad},
    VerdictFacts{"differs", "differs", Colour::Bad},
    VerdictFacts{"not-applied", "not applied", Colour::Bad},
    VerdictFacts{"lacking", "lacking", Colour::Bad},
    VerdictFacts{"planned", "would be loaded", Colour::Plain},
    VerdictFacts{"not-evaluated", "not evaluated", Colour::Doubt},
    VerdictFacts{"not-reported", "not reported", Colour::Doubt},
    VerdictFacts{"not-there", "not there", Colour::Dim},
    VerdictFacts{"not-in-backup", "not part of a backup", Colour::Dim},
    VerdictFacts{"not-chosen", "not chosen", Colour::Dim},
    VerdictFacts{"not-possible", "not possible", Colour::Dim},
};

static_assert(kVerdicts.size() == static_cast<std::size_t>(Verdict::NotPossible) + 1);

struct ReadBackFacts {
    std::string_view name;
    std::string_view words;
};

constexpr std::array kReadBacks = {
    ReadBackFacts{"", ""},
    ReadBackFacts{"same", "read back: same"},
    ReadBackFacts{"differs", "read back: differs"},
    ReadBackFacts{"unknown", "cannot be read back"},
};
static_assert(kReadBacks.size() == static_cast<std::size_t>(ReadBack::Unknown) + 1);

const VerdictFacts& factsOf(Verdict verdict) {
    return kVerdicts.at(static_cast<std::size_t>(verdict));
}

Verdict verdictWithoutReport(Handling handling) {
    switch (handling) {
        case Handling::NotInBackup:
            return Verdict::NotInBackup;
        case Handling::NotPossible:
            return Verdict::NotPossible;
        default:
            return Verdict::NotReported;
    }
}

void appendReported(std::vector<Row>& rows, VXClone category, Direction direction,
                    const std::vector<Outcome>& outcomes) {
    const std::size_t before = rows.size();
    for (const Outcome& outcome : outcomes) {
        if (outcome.category == category) {
            rows.push_back(rowOf(outcome, direction));
        }
    }
    if (rows.size() == before) {
        rows.push_back({category, verdictWithoutReport(handlingOf(categoryOf(category), direction))});
    }
}

/// A category that was left out for a stated reason is shown in the table.
bool isJustNotChosen(const Row& row) {
    return row.verdict == Verdict::NotChosen && row.detail.empty();
}

/// First the bad ones, then the others, each group in its order.
template <class Each, class IsBad>
std::vector<Each> worstFirst(std::vector<Each> all, IsBad isBad) {
    std::stable_partition(all.begin(), all.end(), isBad);
    return all;
}

void addCheck(vxcommon::TerminalTable& table, const Check& check, const std::string& text) {
    table.addRow({{std::string(nameOf(check.subject))},
                  {std::string(wordsOf(check.subject)), Colour::Dim},
                  {text, colourOf(check)}});
}

}  // namespace

std::string_view nameOf(Verdict verdict) {
    return factsOf(verdict).name;
}
std::size_t verdictCount() {
    return kVerdicts.size();
}
std::optional<Verdict> verdictNamed(std::string_view name) {
    for (std::size_t index = 0; index < kVerdicts.size(); ++index) {
        if (kVerdicts.at(index).name == name) {
            return static_cast<Verdict>(index);
        }
    }
    return std::nullopt;
}
std::string_view wordsOf(Verdict verdict) {
    return factsOf(verdict).words;
}
Colour colourOf(const Row& row) {
    const Colour colour = factsOf(row.verdict).colour;
    if (row.verdict == Verdict::NotReported && categoryOf(row.category).holding == Holding::Nothing) {
        // Nothing could be wrong here.
        return Colour::Dim;
    }
    return row.readBack == ReadBack::Unknown && colour == Colour::Good ? Colour::Doubt : colour;
}

std::string_view nameOf(ReadBack readBack) {
    return kReadBacks.at(static_cast<std::size_t>(readBack)).name;
}
std::string_view wordsOf(ReadBack readBack) {
    return kReadBacks.at(static_cast<std::size_t>(readBack)).words;
}
std::optional<ReadBack> readBackNamed(std::string_view name) {
    for (std::size_t index = 0; index < kReadBacks.size(); ++index) {
        if (kReadBacks.at(index).name == name) {
            return static_cast<ReadBack>(index);
        }
    }
    return std::nullopt;
}

std::string textOf(const Row& row) {
    std::string text(wordsOf(row.verdict));
    const bool said = row.verdict == Verdict::Differs || row.verdict == Verdict::NotApplied;
    if (row.readBack != ReadBack::None && !said) {
        text += ", " + std::string(wordsOf(row.readBack));
    }
    return row.detail.empty() ? text : text + ": " + row.detail;
}

void addDetail(Row& row, const std::string& detail) {
    row.detail += (row.detail.empty() ? "" : "; ") + detail;
}

Row rowOf(const Outcome& outcome, Direction direction) {
    if (handlingOf(categoryOf(outcome.category), direction) == Handling::NotEvaluated) {
        return {outcome.category, Verdict::NotEvaluated};
    }
    return {outcome.category, outcome.success ? Verdict::Done : Verdict::Failed};
}

std::vector<Row> tableRows(Direction direction, const std::vector<VXClone>& chosen,
                           const std::vector<Outcome>& outcomes, const std::vector<Row>& own) {
    std::vector<Row> rows;
    for (const Category& category : categories()) {
        const auto found = std::find_if(
            own.begin(), own.end(), [&category](const Row& row) { return row.category == category.value; });
        if (found != own.end()) {
            rows.push_back(*found);
        } else if (std::find(chosen.begin(), chosen.end(), category.value) == chosen.end()) {
            rows.push_back({category.value, Verdict::NotChosen});
        } else {
            appendReported(rows, category.value, direction, outcomes);
        }
    }
    return rows;
}

bool isFailure(Verdict verdict) {
    return verdict == Verdict::Failed || verdict == Verdict::Differs || verdict == Verdict::NotApplied ||
           verdict == Verdict::Lacking;
}

bool anyFailed(const std::vector<Row>& rows) {
    return std::any_of(rows.begin(), rows.end(), [](const Row& row) { return isFailure(row.verdict); });
}

vxcommon::TerminalTable tableOf(const std::vector<Row>& rows, const std::vector<Check>& checks,
                                const std::string& title) {
    vxcommon::TerminalTable table({rows.empty() ? "check" : "category", "", title});
    for (const Row& row : worstFirst(rows, [](const Row& each) { return isFailure(each.verdict); })) {
        if (!isJustNotChosen(row)) {
            const Category& category = categoryOf(row.category);
            table.addRow({{std::string(category.name)},
                          {row.subject.empty() ? std::string(category.words) : row.subject, Colour::Dim},
                          {textOf(row), colourOf(row)}});
        }
    }
    const auto all = static_cast<std::size_t>(std::count_if(
        checks.begin(), checks.end(), [](const Check& each) { return each.subject == Subject::File; }));
    std::size_t files = 0;
    for (const Check& check :
         worstFirst(checks, [](const Check& each) { return problemOf(each).has_value(); })) {
        files += check.subject == Subject::File ? 1U : 0U;
        if (check.subject != Subject::File || files <= kMostFilesShown) {
            addCheck(table, check, textOf(check));
        }
        if (check.subject == Subject::File && files == all && all > kMostFilesShown) {
            addCheck(table, check, fmt::format("and {} more; --json names all", all - kMostFilesShown));
        }
    }
    return table;
}

std::string notChosen(const std::vector<Row>& rows) {
    std::string text;
    for (const Row& row : rows) {
        if (isJustNotChosen(row)) {
            text += (text.empty() ? std::string(wordsOf(Verdict::NotChosen)) + ": " : ", ") +
                    std::string(categoryOf(row.category).name);
        }
    }
    return text;
}

std::string failedNames(const std::vector<Row>& rows) {
    std::vector<std::string_view> names;
    for (const Row& row : rows) {
        const std::string_view name = categoryOf(row.category).name;
        if (isFailure(row.verdict) && (names.empty() || names.back() != name)) {
            names.push_back(name);
        }
    }
    std::string text;
    for (const std::string_view name : names) {
        text += (text.empty() ? "" : ", ") + std::string(name);
    }
    return text;
}

int exitStatusFor(const std::vector<Row>& rows, const ResultList& results) {
    const bool failed = anyFailed(rows) || !results.unknownLines().empty();
    return failed ? exitStatusOf(ErrorCode::CategoryFailed) : kExitOk;
}

std::vector<std::string> unknownLineSentences(const ResultList& results) {
    std::vector<std::string> sentences;
    for (const std::string& line : results.unknownLines()) {
        sentences.push_back("The library reported something unknown: " + vxcommon::printable(line));
    }
    return sentences;
}

}  // namespace vxclone
