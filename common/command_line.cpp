#include "common/command_line.h"

#include <algorithm>
#include <optional>
#include <sstream>

#include "common/suggestion.h"
#include "common/writer.h"

namespace vxcommon {

namespace {

using Words = std::vector<std::string>;
using Options = std::vector<const CLI::Option*>;

constexpr std::string_view kEndOfOptions = "--";

bool looksLikeOption(const std::string& word) {
    return word.size() > 1 && word.front() == '-';
}

Options operandsOf(const CLI::App& command) {
    return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

Options namedOptionsOf(const CLI::App& command) {
    return command.get_options([](const CLI::Option* option) { return !option->get_positional(); });
}

std::vector<const CLI::App*> commandsOf(const CLI::App& command) {
    return command.get_subcommands([](const CLI::App*) { return true; });
}

std::string nameOf(const CLI::Option& option) {
    return option.get_name(option.get_positional(), false);
}

/// An option with its value as the usage line shows it: "--profile NAME|FILE".
std::string withValue(const CLI::Option& option) {
    const std::string& text = option.get_option_text();
    return nameOf(option) + " " + (text.empty() ? option.get_type_name() : text);
}

/// The command as one types it, with the arguments of the commands above it: "vxtv fault DIR add".
std::string pathOf(const CLI::App& command) {
    const CLI::App* const above = command.get_parent();
    if (above == nullptr) {
        return command.get_name();
    }
    std::string path = pathOf(*above);
    for (const CLI::Option* const operand : operandsOf(*above)) {
        path += " " + nameOf(*operand);
    }
    return path + " " + command.get_name();
}

/// The command as messages name it: "fault add". Empty for the program itself.
std::string spoken(const CLI::App& command) {
    const CLI::App* const above = command.get_parent();
    if (above == nullptr) {
        return "";
    }
    const std::string before = spoken(*above);
    return before + (before.empty() ? "" : " ") + command.get_name();
}

/// The beginning of a sentence about something that does not exist: "fault has", or "there is" for the
/// program.
std::string whoHas(const CLI::App& command) {
    return command.get_parent() == nullptr ? "there is" : spoken(command) + " has";
}

std::string helpOf(const CLI::App& command) {
    return "; see " + pathOf(command) + " --help";
}

/// The program and the typed commands, each one below the previous one.
std::vector<const CLI::App*> typedCommands(const CLI::App& program) {
    std::vector<const CLI::App*> typed = {&program};
    while (!typed.back()->get_subcommands().empty()) {
        typed.push_back(typed.back()->get_subcommands().front());
    }
    return typed;
}

Words namesOf(const std::vector<const CLI::App*>& commands) {
    Words names;
    for (const CLI::App* const command : commands) {
        names.push_back(command->get_name());
    }
    return names;
}

std::string orHelp(const std::string& question, const CLI::App& command) {
    return question.empty() ? helpOf(command) : "; " + question;
}

std::string unknownCommand(const CLI::App& above, const std::string& word) {
    return whoHas(above) + " no command \"" + printable(word) + "\"" +
           orHelp(didYouMean(word, namesOf(commandsOf(above))), above);
}

std::string unknownOption(const CLI::App& command, const std::string& word) {
    const std::string name = word.substr(0, word.find('='));
    return whoHas(command) + " no option " + printable(name) +
           orHelp(didYouMean(name, optionNames(command)), command);
}

/// The first word that stands in the place of a command and is none. Empty if the command line asks for help.
std::optional<std::string> unknownFirstWord(const CLI::App& program, const Words& words) {
    const Words known = namesOf(commandsOf(program));
    for (const std::string& word : words) {
        if (word == "--help" || word == "-h" || word == "--version") {
            return std::nullopt;
        }
        if (!looksLikeOption(word)) {
            const bool there = std::find(known.begin(), known.end(), word) != known.end();
            return there ? std::nullopt : std::optional(unknownCommand(program, word));
        }
    }
    return std::nullopt;
}

/// A word that the parser could not assign, and the command before it.
struct LeftOver {
    const CLI::App* command = nullptr;
    std::size_t place = 0;
    std::string word;
};

/// All unassigned words, in the order of the command line.
std::vector<LeftOver> leftOversOf(const CLI::App& program, const Words& words) {
    std::vector<LeftOver> all;
    for (const CLI::App* const command : typedCommands(program)) {
        for (const std::string& word : command->remaining()) {
            const auto place = std::find(words.begin(), words.end(), word) - words.begin();
            if (!command->get_allow_extras() && word != kEndOfOptions) {
                all.push_back({command, static_cast<std::size_t>(place), word});
            }
        }
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const LeftOver& one, const LeftOver& other) { return one.place < other.place; });
    return all;
}

/// Leaves out words that belong to another command which this one runs: they stand behind a "--".
std::vector<LeftOver> withoutOtherCommand(std::vector<LeftOver> leftOvers, const Words& words) {
    const auto end =
        static_cast<std::size_t>(std::find(words.begin(), words.end(), kEndOfOptions) - words.begin());
    leftOvers.erase(std::remove_if(leftOvers.begin(), leftOvers.end(),
                                   [end](const LeftOver& leftOver) {
                                       return leftOver.command->get_prefix_command() && leftOver.place > end;
                                   }),
                    leftOvers.end());
    return leftOvers;
}

std::string unexpected(const CLI::App& program, const std::vector<LeftOver>& leftOvers) {
    const LeftOver& first = leftOvers.front();
    if (looksLikeOption(first.word)) {
        return unknownOption(*first.command, first.word);
    }
    const CLI::App& last = *typedCommands(program).back();
    if (first.command == &last && !commandsOf(last).empty()) {
        return unknownCommand(last, first.word);
    }
    std::string text;
    for (const LeftOver& leftOver : leftOvers) {
        text += " " + printable(leftOver.word);
    }
    return (leftOvers.size() == 1 ? "the following argument was not expected:"
                                  : "the following arguments were not expected:") +
           text + helpOf(last);
}

/// Recognises a command name that stands in the place of a missing argument: `vxtv fault list`.
std::optional<std::string> argumentLeftOutBefore(const CLI::App& program) {
    const CLI::App& last = *typedCommands(program).back();
    const Words below = namesOf(commandsOf(last));
    for (const CLI::Option* const operand : operandsOf(last)) {
        const Words& typed = operand->results();
        if (!typed.empty() && std::find(below.begin(), below.end(), typed.front()) != below.end()) {
            return nameOf(*operand) + " is required before " + typed.front() + helpOf(last);
        }
    }
    return std::nullopt;
}

/// The first missing argument, in the order of the command line.
std::optional<std::string> missingArgument(const CLI::App& program) {
    const auto isMissing = [](const CLI::Option* option) {
        return option->get_required() && option->count() == 0;
    };
    for (const CLI::App* const command : typedCommands(program)) {
        const Options operands = operandsOf(*command);
        const Options options = namedOptionsOf(*command);
        if (const auto found = std::find_if(operands.begin(), operands.end(), isMissing);
            found != operands.end()) {
            return nameOf(**found) + " is required" + helpOf(*command);
        }
        if (const auto found = std::find_if(options.begin(), options.end(), isMissing);
            found != options.end()) {
            return withValue(**found) + " is required" + helpOf(*command);
        }
    }
    return std::nullopt;
}

std::string missingCommand(const CLI::App& above) {
    std::string text;
    const Words names = namesOf(commandsOf(above));
    for (std::size_t index = 0; index < names.size(); ++index) {
        text += (index == 0 ? "" : index + 1 == names.size() ? " or " : ", ") + names[index];
    }
    return "a command is missing after " + spoken(above) + ": " + text + helpOf(above);
}

bool begins(const std::string& text, const std::string& with) {
    return text.rfind(with, 0) == 0;
}

/// The part of the parser's message that describes the option's value; empty if the message is about another
/// option.
std::optional<std::string> badValueOf(const CLI::Option& option, const std::string& what) {
    const std::string name = nameOf(option);
    const std::string conversion = "Could not convert: " + name + " = ";
    const bool flag = option.get_expected_max() == 0;
    if (begins(what, conversion)) {
        return flag ? name + " takes no value"
                    : "\"" + printable(what.substr(conversion.size())) + "\" does not fit " +
                          withValue(option);
    }
    if (begins(what, name + ": 1 required")) {
        return name + " needs a value: " + withValue(option);
    }
    return begins(what, name + ": At Most") ? std::optional(name + " is given more than once") : std::nullopt;
}

/// The message about an option whose value is missing, given twice or invalid.
std::optional<std::string> badValue(const CLI::App& program, const std::string& what) {
    const std::vector<const CLI::App*> typed = typedCommands(program);
    for (auto command = typed.rbegin(); command != typed.rend(); ++command) {
        for (const CLI::Option* const option : (*command)->get_options()) {
            if (const auto bad = badValueOf(*option, what)) {
                return *bad + helpOf(**command);
            }
        }
    }
    return std::nullopt;
}

std::string sentenceOf(const CLI::App& program, const CLI::ParseError& error, const Words& words) {
    if (const auto leftOut = argumentLeftOutBefore(program)) {
        return *leftOut;
    }
    const std::vector<LeftOver> leftOvers = leftOversOf(program, words);
    if (const auto ours = withoutOtherCommand(leftOvers, words); !ours.empty()) {
        return unexpected(program, ours);
    }
    const std::string what = error.what();
    if (const auto bad = badValue(program, what)) {
        return *bad;
    }
    const CLI::App& last = *typedCommands(program).back();
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::RequiredError)) {
        const auto missing = missingArgument(program);
        return missing ? *missing : missingCommand(last);
    }
    return printable(what) + helpOf(last);
}

const CLI::Option* jsonOf(const CLI::App& command) {
    return command.get_option_no_throw(kJsonOption);
}

bool knowsJson(const CLI::App& command) {
    const std::vector<const CLI::App*> below = commandsOf(command);
    return jsonOf(command) != nullptr ||
           std::any_of(below.begin(), below.end(), [](const CLI::App* each) { return knowsJson(*each); });
}

/// Gives the command a flag that stood before it, as if it stood after it.
void takeJsonFrom(CLI::App& command, const Options& above) {
    CLI::Option* const own = command.get_option_no_throw(kJsonOption);
    if (own != nullptr) {
        command.preparse_callback([own, above](std::size_t) {
            if (std::any_of(above.begin(), above.end(),
                            [](const auto* flag) { return flag->count() != 0; })) {
                own->add_result("true");
            }
        });
    }
}

void acceptJson(CLI::App& command, const std::string& description, Options above) {
    const std::vector<CLI::App*> below = command.get_subcommands([](CLI::App*) { return true; });
    if (below.empty()) {
        takeJsonFrom(command, above);
    } else if (knowsJson(command)) {
        above.push_back(command.add_flag(kJsonOption, description));
        for (CLI::App* const each : below) {
            acceptJson(*each, description, above);
        }
    }
}

void nameGroups(CLI::App& command) {
    for (CLI::App* const each : command.get_subcommands([](CLI::App*) { return true; })) {
        each->group("Commands");
        nameGroups(*each);
    }
}

/// The message about a flag before a command that does not have this flag.
std::optional<std::string> jsonWithoutUse(const CLI::App& program) {
    const std::vector<const CLI::App*> typed = typedCommands(program);
    const bool asked = std::any_of(typed.begin(), typed.end(), [](const CLI::App* command) {
        return jsonOf(*command) != nullptr && jsonOf(*command)->count() != 0;
    });
    return asked && jsonOf(*typed.back()) == nullptr
               ? std::optional(unknownOption(*typed.back(), kJsonOption))
               : std::nullopt;
}

/// The part of the usage line after the command: its arguments, options and commands.
std::string argumentsOf(const CLI::App& command) {
    std::string text;
    std::string another;
    for (const CLI::Option* const operand : operandsOf(command)) {
        const std::string name = nameOf(*operand);
        text += operand->get_required() ? " " + name : " [" + name + "]";
    }
    if (command.get_prefix_command()) {
        // The last one is the command that `vxtv` runs. All words after it belong to that command.
        const std::size_t last = text.rfind(' ');
        another = " --" + text.substr(last) + " ...";
        text.erase(last);
    }
    bool choice = false;
    for (const CLI::Option* const option : namedOptionsOf(command)) {
        text += option->get_required() ? " " + withValue(*option) : "";
        choice = choice || (!option->get_required() && option != command.get_help_ptr());
    }
    const std::string below = commandsOf(command).empty() ? "" : " COMMAND";
    return text + (choice ? " [OPTIONS]" : "") + below + another;
}

}  // namespace

HelpFormatter::HelpFormatter() {
    label("Positionals", "Arguments");
}

std::string HelpFormatter::make_usage(const CLI::App* command, std::string /*name*/) const {
    return "Usage: " + pathOf(*command) + argumentsOf(*command) + "\n";
}

std::vector<std::string> optionNames(const CLI::App& command) {
    Words names;
    for (const CLI::Option* const option : namedOptionsOf(command)) {
        names.push_back(nameOf(*option));
    }
    return names;
}

void finishCommandLine(CLI::App& program, const std::string& json) {
    acceptJson(program, json, {});
    nameGroups(program);
}

std::vector<std::string> wordsOf(int count, char** arguments) {
    return count > 1 ? Words(arguments + 1, arguments + count) : Words();
}

bool asksForJson(const std::vector<std::string>& words) {
    const auto end = std::find(words.begin(), words.end(), kEndOfOptions);
    return std::find(words.begin(), end, kJsonOption) != end;
}

tl::expected<bool, std::string> parseCommandLine(CLI::App& program, const std::vector<std::string>& words) {
    if (const auto unknown = unknownFirstWord(program, words)) {
        return tl::make_unexpected(*unknown);
    }
    try {
        program.parse(Words(words.rbegin(), words.rend()));
    } catch (const CLI::Success& wanted) {
        std::ostringstream text;
        program.exit(wanted, text, text);
        standardOutput().write(printableLines(text.str()));
        return false;
    } catch (const CLI::ParseError& error) {
        return tl::make_unexpected(sentenceOf(program, error, words));
    }
    if (const auto useless = jsonWithoutUse(program)) {
        return tl::make_unexpected(*useless);
    }
    return true;
}

}  // namespace vxcommon
