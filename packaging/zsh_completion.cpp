#include <algorithm>
#include <sstream>

#include "packaging/pages.h"

namespace vxpages {

namespace {

/// Text within single quotes, in an argument description, where brackets and colons have a meaning.
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

/// What completes a value of that name.
std::string actionFor(const std::string& value, const std::vector<std::string>& words) {
    if (!words.empty()) {
        std::string action = "_values -s , value";
        for (const std::string& word : words) {
            action += " " + word;
        }
        return action;
    }
    if (value.rfind("DIR", 0) == 0) {
        return "_directories";
    }
    return value.rfind("FILE", 0) == 0 ? "_files" : " ";
}

std::string specificationOf(const CliOption& option) {
    std::string names = "'" + option.longName;
    if (option.longName.empty() || option.shortName.empty()) {
        names = "'" + option.shortName + option.longName;
    } else {
        names = "'(" + option.shortName + " " + option.longName + ")'{" + option.shortName + "," +
                option.longName + "}'";
    }
    const std::string value =
        option.value.empty() ? "" : ":" + quoted(option.value) + ":" + actionFor(option.value, option.words);
    return names + "[" + quoted(option.description) + "]" + value + "'";
}

void writeFunction(std::ostream& out, const std::string& path, const CliVerb& verb) {
    for (const CliVerb& below : verb.verbs) {
        writeFunction(out, path + " " + below.name, below);
    }
    out << functionName(path) << "() {\n    local curcontext=$curcontext state line\n    _arguments -C";
    for (const CliOption& option : verb.options) {
        out << " \\\n        " << specificationOf(option);
    }
    for (const CliOption& operand : verb.operands) {
        out << " \\\n        '" << (operand.required ? ":" : "::") << quoted(operand.longName) << ":"
            << actionFor(operand.longName, {}) << "'";
    }
    if (verb.verbs.empty()) {
        out << "\n}\n\n";
        return;
    }
    out << " \\\n        '1:command:->verb' '*:: :->rest'\n    case $state in\n        verb)\n"
        << "            local -a verbs=(\n";
    for (const CliVerb& below : verb.verbs) {
        out << "                '" << quoted(below.name) << ":" << quoted(below.description) << "'\n";
    }
    out << "            )\n            _describe command verbs ;;\n        rest)\n            case $line[1] "
           "in\n";
    for (const CliVerb& below : verb.verbs) {
        out << "                " << below.name << ") " << functionName(path + " " + below.name) << " ;;\n";
    }
    out << "            esac ;;\n    esac\n}\n\n";
}

}  // namespace

std::string zshCompletion(const CliVerb& program) {
    std::ostringstream out;
    out << "#compdef " << program.name << "\n# zsh completion for " << program.name << "\n\n";
    writeFunction(out, program.name, program);
    // Autoloaded, the file is the function; sourced, it only tells what completes the program.
    out << "if [[ ${funcstack[1]} == _" << program.name << " ]]; then\n    _" << program.name
        << " \"$@\"\nelse\n    compdef _" << program.name << ' ' << program.name << "\nfi\n";
    return out.str();
}

}  // namespace vxpages
