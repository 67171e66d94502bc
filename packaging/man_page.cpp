#include <cctype>
#include <sstream>

#include "packaging/pages.h"

namespace vxpages {

namespace {

/// The date of the last complete revision, because a manual page needs a date.
constexpr const char* kDate = "2026-11-21";

/// Text for troff in which nothing is a request or an escape.
std::string plain(const std::string& text) {
    std::string result;
    for (const char character : text) {
        const bool lineBegins = result.empty() || result.back() == '\n';
        if (lineBegins && (character == '.' || character == '\'')) {
            result += "\\&";
        }
        result += character == '\\' ? "\\e" : character == '-' ? "\\-" : std::string(1, character);
    }
    return result;
}

std::string bold(const std::string& text) {
    return "\\fB" + plain(text) + "\\fR";
}
std::string italic(const std::string& text) {
    return "\\fI" + plain(text) + "\\fR";
}

std::string upper(std::string text) {
    for (char& character : text) {
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    return text;
}

std::string namesOf(const CliOption& option) {
    const std::string gap = option.shortName.empty() || option.longName.empty() ? "" : ", ";
    const std::string value = option.value.empty() ? "" : " " + italic(option.value);
    return bold(option.shortName) + gap + bold(option.longName) + value;
}

std::string inBrackets(const std::string& text, bool optional) {
    return optional ? "[" + text + "]" : text;
}

std::string withOperands(std::string command, const CliVerb& verb) {
    for (const CliOption& operand : verb.operands) {
        command += " " + operand.longName;
    }
    return command;
}

/// The position of the options among the operands: before a command that has options of its own.
std::size_t operandsBeforeOptions(const CliVerb& verb) {
    return verb.operands.size() - (verb.runsAnother ? 1 : 0);
}

void writeOptions(std::ostream& out, const CliVerb& verb) {
    for (const CliOption& option : verb.options) {
        const std::string name = option.longName.empty() ? option.shortName : option.longName;
        const std::string value = option.value.empty() ? "" : " " + italic(option.value);
        if (name != "--help") {
            out << ' ' << inBrackets(bold(name) + value, !option.required);
        }
    }
}

/// A line for each command. `begin` is the start of the section.
void writeSynopsis(std::ostream& out, std::ostream::pos_type begin, const std::string& command,
                   const CliVerb& verb) {
    for (const CliVerb& below : verb.verbs) {
        writeSynopsis(out, begin, withOperands(command, verb) + " " + below.name, below);
    }
    if (!verb.verbs.empty()) {
        return;
    }
    if (out.tellp() != begin) {
        out << ".br\n";
    }
    out << bold(command);
    for (std::size_t index = 0; index < operandsBeforeOptions(verb); ++index) {
        const CliOption& operand = verb.operands[index];
        out << ' ' << inBrackets(italic(operand.longName), !operand.required);
    }
    writeOptions(out, verb);
    if (verb.runsAnother) {
        out << ' ' << bold("--") << ' ' << italic(verb.operands.back().longName) << " ...";
    }
    out << '\n';
}

void writeItem(std::ostream& out, const std::string& term, const std::string& text) {
    out << ".TP\n" << term << '\n' << (text.empty() ? "\\&" : plain(text)) << '\n';
}

void writeExamples(std::ostream& out, const std::string& footer) {
    if (!footer.empty()) {
        out << ".PP\n.nf\n" << plain(footer) << (footer.back() == '\n' ? "" : "\n") << ".fi\n";
    }
}

void writeVerb(std::ostream& out, const std::string& command, const CliVerb& verb) {
    out << ".SS " << plain(command) << '\n' << plain(verb.description) << ".\n";
    for (const CliOption& operand : verb.operands) {
        writeItem(out, italic(operand.longName), operand.description);
    }
    for (const CliOption& option : verb.options) {
        writeItem(out, namesOf(option), option.description);
    }
    writeExamples(out, verb.footer);
    for (const CliVerb& below : verb.verbs) {
        writeVerb(out, withOperands(command, verb) + " " + below.name, below);
    }
}

void writeAbout(std::ostream& out, const std::string& about) {
    std::istringstream lines(about);
    for (std::string line; std::getline(lines, line);) {
        out << (line.empty() ? ".PP" : plain(line)) << '\n';
    }
}

}  // namespace

std::string manPage(const Manual& manual) {
    const CliVerb& program = manual.program;
    std::ostringstream out;
    out << ".TH " << upper(program.name) << " 1 \"" << kDate << "\" \"" << program.name << ' '
        << manual.version << "\" \"User Commands\"\n.SH NAME\n"
        << program.name << " \\- " << plain(program.description) << "\n.SH SYNOPSIS\n";
    writeSynopsis(out, out.tellp(), program.name, program);
    out << ".SH DESCRIPTION\n";
    writeAbout(out, manual.about);
    out << ".SH OPTIONS\n";
    for (const CliOption& option : program.options) {
        writeItem(out, namesOf(option), option.description);
    }
    out << ".SH COMMANDS\n";
    for (const CliVerb& verb : program.verbs) {
        writeVerb(out, program.name + " " + verb.name, verb);
    }
    for (const Section& section : manual.sections) {
        out << ".SH \"" << upper(section.heading) << "\"\n";
        for (const auto& [term, text] : section.items) {
            writeItem(out, bold(term), text);
        }
    }
    out << ".SH SEE ALSO\n" << bold(manual.seeAlso) << "(1)\n";
    return out.str();
}

}  // namespace vxpages
