#include "packaging/cli_tree.h"

#include <cctype>
#include <sstream>

namespace vxpages {

namespace {

/// The words of "auto|root|user". The name of a placeholder, such as "NAME|FILE", is in capitals.
std::vector<std::string> wordsIn(const std::string& value) {
    std::vector<std::string> words;
    const bool listed = value.find('|') != std::string::npos;
    if (listed && std::islower(static_cast<unsigned char>(value.front())) != 0) {
        std::istringstream text(value);
        for (std::string word; std::getline(text, word, '|');) {
            words.push_back(word);
        }
    }
    return words;
}

CliChoice choiceOf(const std::string& name, const std::string& value, const Choices& choices) {
    if (const auto found = choices.find(name); found != choices.end()) {
        return found->second;
    }
    CliChoice choice;
    choice.words = wordsIn(value);
    const auto names = [&value](const char* kind) { return value.find(kind) != std::string::npos; };
    choice.folders = names("DIR") || names("FOLDER");
    choice.files = names("FILE");
    return choice;
}

/// The text after the option in the help.
std::string valueOf(const CLI::Option& option) {
    if (option.get_expected_max() == 0) {
        return "";
    }
    return option.get_option_text().empty() ? option.get_type_name() : option.get_option_text();
}

CliOption optionOf(const CLI::Option& option, const Choices& choices) {
    CliOption result;
    result.description = option.get_description();
    result.required = option.get_required();
    if (option.get_positional()) {
        result.longName = option.get_name(true, false);
        result.choice = choiceOf(result.longName, result.longName, choices);
        return result;
    }
    result.value = valueOf(option);
    if (!option.get_snames().empty()) {
        result.shortName = "-" + option.get_snames().front();
    }
    if (!option.get_lnames().empty()) {
        result.longName = "--" + option.get_lnames().front();
    }
    result.choice = choiceOf(result.longName, result.value, choices);
    return result;
}

}  // namespace

CliVerb treeOf(const CLI::App& app, const Choices& choices) {
    CliVerb verb{app.get_name(),          app.get_description(), app.get_footer(), {}, {}, {},
                 app.get_prefix_command()};
    for (const CLI::Option* const option : app.get_options()) {
        auto& list = option->get_positional() ? verb.operands : verb.options;
        list.push_back(optionOf(*option, choices));
    }
    if (verb.runsAnother) {
        verb.operands.back().choice = {};
        verb.operands.back().choice.command = true;
    }
    for (const CLI::App* const below : app.get_subcommands([](const CLI::App*) { return true; })) {
        verb.verbs.push_back(treeOf(*below, choices));
    }
    return verb;
}

}  // namespace vxpages
