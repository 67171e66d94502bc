#include <sstream>

#include "packaging/pages.h"

namespace vxpages {

namespace {

constexpr const char* kHead =
    R"(    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local index prefix= verbs= options= operand=
    COMPREPLY=()
    for ((index = 1; index < COMP_CWORD; index++)); do
        case "$path ${COMP_WORDS[index]}" in
)";

constexpr const char* kTail = R"(    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -n $verbs ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$verbs" -- "$current")
    elif [[ $operand == DIR* ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
    elif [[ -n $operand ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}
)";

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

/// The verbs with their paths, "vxtv fault add", the program first.
void collect(const CliVerb& verb, const std::string& path,
             std::vector<std::pair<std::string, const CliVerb*>>& all) {
    all.emplace_back(path, &verb);
    for (const CliVerb& below : verb.verbs) {
        collect(below, path + " " + below.name, all);
    }
}

void writeValues(std::ostream& out, const std::string& path, const CliOption& option) {
    if (option.value.empty()) {
        return;
    }
    out << "        \"" << path << ' ' << option.longName << "\")\n";
    if (!option.words.empty()) {
        out << "            [[ $current != *,* ]] || prefix=${current%,*},\n"
            << "            mapfile -t COMPREPLY < <(compgen -P \"$prefix\" -W '" << joined(option.words)
            << "' -- \"${current##*,}\")\n";
    } else if (option.value == "DIR" || option.value == "FILE") {
        out << "            compopt -o filenames 2>/dev/null\n"
            << "            mapfile -t COMPREPLY < <(compgen -" << (option.value == "DIR" ? 'd' : 'f')
            << " -- \"$current\")\n";
    }
    out << "            return ;;\n";
}

void writeWords(std::ostream& out, const std::string& path, const CliVerb& verb) {
    std::vector<std::string> verbs;
    std::vector<std::string> options;
    for (const CliVerb& below : verb.verbs) {
        verbs.push_back(below.name);
    }
    for (const CliOption& option : verb.options) {
        options.push_back(option.longName.empty() ? option.shortName : option.longName);
    }
    out << "        \"" << path << "\")\n            verbs='" << joined(verbs) << "'\n            options='"
        << joined(options) << "'\n            operand='"
        << (verb.operands.empty() ? "" : verb.operands.front().longName) << "' ;;\n";
}

}  // namespace

std::string bashCompletion(const CliVerb& program) {
    std::vector<std::pair<std::string, const CliVerb*>> all;
    collect(program, program.name, all);
    std::ostringstream out;
    out << "# bash completion for " << program.name << "\n_" << program.name << "() {\n    local path='"
        << program.name << "'\n"
        << kHead;
    for (const auto& [path, verb] : all) {
        if (verb != &program) {
            out << "            \"" << path << "\") path+=\" ${COMP_WORDS[index]}\" ;;\n";
        }
    }
    out << "        esac\n    done\n    case \"$path $previous\" in\n";
    for (const auto& [path, verb] : all) {
        for (const CliOption& option : verb->options) {
            writeValues(out, path, option);
        }
    }
    out << "    esac\n    case \"$path\" in\n";
    for (const auto& [path, verb] : all) {
        writeWords(out, path, *verb);
    }
    out << kTail << "complete -F _" << program.name << ' ' << program.name << '\n';
    return out.str();
}

}  // namespace vxpages
