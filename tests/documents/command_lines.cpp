#include "tests/documents/command_lines.h"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>
#include <string_view>

namespace vxtest {

namespace {

using vxpages::CliOption;
using vxpages::CliVerb;

/// Texts that look like a command line of the two programs but are none.
constexpr std::array<std::string_view, 3> kOthers = {
    "vxclone 1.0.0",                     // what a package says of its maker
    "vxclone package manifest VERSION",  // what is authenticated in front of a manifest
    "--misbehave",                       // of the hotel's application
};

bool hasOption(const CliVerb& verb, const std::string& name) {
    return std::any_of(verb.options.begin(), verb.options.end(), [&](const CliOption& option) {
        return option.longName == name || option.shortName == name;
    });
}

bool anyVerbHasOption(const CliVerb& verb, const std::string& name) {
    return hasOption(verb, name) ||
           std::any_of(verb.verbs.begin(), verb.verbs.end(),
                       [&](const CliVerb& below) { return anyVerbHasOption(below, name); });
}

const CliVerb* named(const std::vector<CliVerb>& verbs, const std::string& name) {
    const auto found =
        std::find_if(verbs.begin(), verbs.end(), [&](const CliVerb& verb) { return verb.name == name; });
    return found == verbs.end() ? nullptr : &*found;
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

/// "--only" of "--only=av".
std::string optionName(const std::string& word) {
    return word.substr(0, word.find('='));
}

/// The options in a line of a synopsis, without the brackets and "|" around them.
std::set<std::string> optionsIn(std::string line) {
    std::replace_if(
        line.begin(), line.end(),
        [](char character) { return std::string_view("[]|").find(character) != std::string_view::npos; },
        ' ');
    std::set<std::string> options;
    for (const std::string& word : wordsOf(line)) {
        if (word.starts_with("--")) options.insert(word);
    }
    return options;
}

/// The mistake in the words of a command line after the program's name; empty if there is none.
std::string problemOf(const CliVerb& program, const std::vector<std::string>& words,
                      const std::vector<CliVerb>& programs) {
    std::vector<const CliVerb*> path = {&program};
    for (std::size_t at = 1; at < words.size(); ++at) {
        const std::string& word = words[at];
        if (word == "--") {
            const std::vector<std::string> inside(words.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                                                  words.end());
            const CliVerb* const started = inside.empty() ? nullptr : named(programs, inside.front());
            return started == nullptr ? "" : problemOf(*started, inside, programs);
        }
        if (word.starts_with("--")) {
            const bool known = std::any_of(path.begin(), path.end(), [&](const CliVerb* verb) {
                return hasOption(*verb, optionName(word));
            });
            if (!known) return "\"" + path.back()->name + "\" has no option " + optionName(word);
        } else if (const CliVerb* const below = named(path.back()->verbs, word)) {
            path.push_back(below);
        } else if (path.size() == 1) {
            return "\"" + program.name + "\" has no command " + word;
        }
    }
    return "";
}

std::string problemOf(const std::string& text, const std::vector<CliVerb>& programs) {
    const std::vector<std::string> words = wordsOf(text);
    if (words.empty() || std::find(kOthers.begin(), kOthers.end(), text) != kOthers.end()) return "";
    if (words.front().starts_with("--") && words.front() != "--") {
        const std::string name = optionName(words.front());
        const bool known = std::any_of(programs.begin(), programs.end(), [&](const CliVerb& program) {
            return anyVerbHasOption(program, name);
        });
        return known ? "" : "no program has an option " + name;
    }
    const CliVerb* const program = named(programs, words.front());
    return program == nullptr ? "" : problemOf(*program, words, programs);
}

}  // namespace

std::vector<std::string> unknownCommandLines(const Markdown& document, const std::vector<CliVerb>& programs) {
    std::vector<std::string> problems;
    for (const Span& span : document.spans) {
        const std::string problem = problemOf(span.text, programs);
        if (!problem.empty()) problems.push_back(at(document.name, span.line, problem));
    }
    return problems;
}

std::vector<std::string> synopsisDifferences(const std::string& document, const Block& block,
                                             const CliVerb& program) {
    std::vector<std::string> problems;
    std::set<std::string> seen;
    for (std::size_t line = 0; line < block.lines.size();) {
        const int place = block.line + 1 + static_cast<int>(line);
        std::string text = block.lines[line];
        for (++line; line < block.lines.size() && block.lines[line].starts_with(' '); ++line)
            text += block.lines[line];
        const std::vector<std::string> words = wordsOf(text);
        if (words.size() < 2 || words[0] != program.name) {
            problems.push_back(at(document, place, "this is no command line of \"" + program.name + "\""));
            continue;
        }
        const bool isVerb = !words[1].starts_with('-');
        const CliVerb* const verb = isVerb ? named(program.verbs, words[1]) : &program;
        if (verb == nullptr || !seen.insert(verb->name).second) {
            problems.push_back(
                at(document, place,
                   "\"" + words[1] + "\" is " + (verb == nullptr ? "no command" : "here twice")));
            continue;
        }
        std::set<std::string> shown = optionsIn(text);
        for (const CliOption& option : verb->options) {
            const bool isThere = shown.erase(option.longName) > 0;
            if (!isThere && option.longName != "--help") {
                problems.push_back(
                    at(document, place, "\"" + verb->name + "\" has " + option.longName + ", too"));
            }
        }
        for (const std::string& option : shown) {
            problems.push_back(at(document, place, "\"" + verb->name + "\" has no option " + option));
        }
    }
    for (const CliVerb& verb : program.verbs) {
        if (!seen.contains(verb.name))
            problems.push_back(at(document, block.line, "\"" + verb.name + "\" is missing"));
    }
    return problems;
}

}  // namespace vxtest
