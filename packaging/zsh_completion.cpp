#include <algorithm>
#include <sstream>

#include "packaging/pages.h"

namespace vxpages {

namespace {

// NAME is replaced by the program's name.
constexpr const char* kAsking =
    R"ZSH(# What the program itself lists, such as the settings of the television that the line names first.
_NAME_ask() {
    local -a found
    local television=${television:-$line[1]}
    found=(${(f)"$(${~program} ${=1} ${~${(Q)television}} --json 2>/dev/null |
        sed -n 's/^ *"'$2'": "\(.*\)",\{0,1\}$/\1/p')"})
    compadd -a found
}

)ZSH";

/// Text inside single quotes, in an argument description, where brackets and colons are special.
std::string quoted(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (character == '\'') {
            result += "'\\''";
        } else {
            result += std::string("[]:\\").find(character) == std::string::npos ? "" : "\\";
            result += character;
        }
    }
    return result;
}

std::string functionName(std::string path) {
    std::replace_if(
        path.begin(), path.end(), [](char character) { return character == ' ' || character == '-'; }, '_');
    return "_" + path;
}

/// The function that offers the values of an option or an operand if one word is not enough.
std::string choosing(const std::string& path, const CliOption& option) {
    return functionName(path + " " + option.longName.substr(option.longName.find_first_not_of('-'))) +
           "_values";
}

bool hasFunction(const CliChoice& choice) {
    return !choice.words.empty() || !choice.asked.empty();
}

void writeChoosing(std::ostream& out, const std::string& program, const std::string& path,
                   const CliOption& option) {
    const CliChoice& choice = option.choice;
    if (!hasFunction(choice)) {
        return;
    }
    out << choosing(path, option) << "() {\n";
    if (choice.several) {
        out << "    _values -s , value"
            << " " + inOneLine(choice.words) << "\n";
    } else if (!choice.words.empty()) {
        out << "    local -a words=("
            << " " + inOneLine(choice.words) << ")\n    compadd -a words\n";
    }
    if (!choice.asked.empty()) {
        out << "    _" << program << "_ask '" << choice.asked << "' " << choice.member << "\n";
    }
    if (choice.files) {
        out << "    _files\n";
    }
    out << "}\n\n";
}

/// The completion of the value.
std::string actionFor(const std::string& path, const CliOption& option) {
    if (hasFunction(option.choice)) {
        return choosing(path, option);
    }
    if (option.choice.command) {
        return "_normal";
    }
    return option.choice.folders ? "_directories" : option.choice.files ? "_files" : " ";
}

std::string specificationOf(const std::string& path, const CliOption& option) {
    // If an option has a value, "=" may stand before it.
    const std::string longName =
        option.longName + (option.value.empty() || option.longName.empty() ? "" : "=");
    std::string names = "'" + option.shortName + longName;
    if (!option.longName.empty() && !option.shortName.empty()) {
        names = "'(" + option.shortName + " " + option.longName + ")'{" + option.shortName + "," + longName +
                "}'";
    }
    const std::string value =
        option.value.empty() ? "" : ":" + quoted(option.value) + ":" + actionFor(path, option);
    return names + "[" + quoted(option.description) + "]" + value + "'";
}

void writeOperands(std::ostream& out, const std::string& path, const CliVerb& verb) {
    for (std::size_t index = 0; index < verb.operands.size(); ++index) {
        const CliOption& operand = verb.operands[index];
        const std::string place =
            operand.choice.command ? "*:::" : std::to_string(index + 1) + (operand.required ? ":" : "::");
        out << " \\\n        '" << place << quoted(operand.longName) << ":" << actionFor(path, operand)
            << "'";
    }
}

/// The verbs stand after the operands. Everything after a verb belongs to it.
void writeVerbs(std::ostream& out, const std::string& path, const CliVerb& verb) {
    const std::size_t place = verb.operands.size() + 1;
    out << " \\\n        '" << place << ":command:->verb' '*:: :->rest'\n    case $state in\n        verb)\n"
        << "            local -a verbs=(\n";
    for (const CliVerb& below : verb.verbs) {
        out << "                '" << quoted(below.name) << ":" << quoted(below.description) << "'\n";
    }
    out << "            )\n            _describe command verbs ;;\n        rest)\n";
    if (!verb.operands.empty()) {
        out << "            local television=$line[1]\n            shift " << verb.operands.size()
            << " words\n            ((CURRENT -= " << verb.operands.size() << "))\n";
    }
    out << "            case $line[" << place << "] in\n";
    for (const CliVerb& below : verb.verbs) {
        out << "                " << below.name << ") " << functionName(path + " " + below.name) << " ;;\n";
    }
    out << "            esac ;;\n    esac\n";
}

/// After a "--" a command has no more options. A command with verbs leaves what follows to these.
std::string parsingOf(const CliVerb& verb) {
    if (verb.verbs.empty()) {
        return " -S";
    }
    return verb.operands.empty() ? " -A '-*'" : "";
}

void writeFunction(std::ostream& out, const std::string& program, const std::string& path,
                   const CliVerb& verb) {
    for (const CliVerb& below : verb.verbs) {
        writeFunction(out, program, path + " " + below.name, below);
    }
    for (const CliOption& option : verb.options) {
        writeChoosing(out, program, path, option);
    }
    for (const CliOption& operand : verb.operands) {
        writeChoosing(out, program, path, operand);
    }
    out << functionName(path) << "() {\n";
    if (path == program) {
        out << "    local program=$words[1] television=\n";
    }
    out << "    local curcontext=$curcontext state line\n    _arguments -C" << parsingOf(verb);
    for (const CliOption& option : verb.options) {
        out << " \\\n        " << specificationOf(path, option);
    }
    writeOperands(out, path, verb);
    if (verb.verbs.empty()) {
        out << "\n";
    } else {
        writeVerbs(out, path, verb);
    }
    out << "}\n\n";
}

}  // namespace

std::string zshCompletion(const CliVerb& program) {
    std::ostringstream out;
    out << "#compdef " << program.name << "\n# zsh completion for " << program.name << "\n\n"
        << withProgramName(kAsking, program.name);
    writeFunction(out, program.name, program.name, program);
    // If zsh autoloads the file, it is the function itself. If it is sourced, it only registers the
    // completion.
    out << "if [[ ${funcstack[1]} == _" << program.name << " ]]; then\n    _" << program.name
        << " \"$@\"\nelse\n    compdef _" << program.name << ' ' << program.name << "\nfi\n";
    return out.str();
}

}  // namespace vxpages
