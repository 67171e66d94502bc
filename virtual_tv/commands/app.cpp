#include "virtual_tv/commands/app.h"

#include <unistd.h>

#include <algorithm>
#include <sstream>
#include <string_view>

#include "common/command_line.h"
#include "common/terminal_table.h"

namespace vxtv {

namespace {

using AddCommand = void (*)(CLI::App&, Action&);

// In the order of the help.
constexpr AddCommand kCommands[] = {
    addCreateCommand,   addDestroyCommand,  addRunCommand,    addShellCommand,    addInfoCommand,
    addSettingsCommand, addGetCommand,      addSetCommand,    addServicesCommand, addSourcesCommand,
    addCompareCommand,  addFaultCommand,    addCallsCommand,  addLogCommand,      addKeyfileCommand,
    addAppCommand,      addChannelsCommand, addTimersCommand, addShowCommand,
};

constexpr std::size_t kFewestColumns = 40;  // with less, a word a line would be no help
constexpr std::size_t kWidestName = 24;
constexpr std::size_t kUsageIndent = 4;
constexpr const char* kMargin = "  ";

/// The line, broken between words. Continuation lines have the same indentation, plus `more`.
std::string brokenLine(std::string_view line, std::size_t columns, std::size_t more) {
    const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t width = columns - std::min(blanks + more, columns - 1);
    std::string text;
    for (const std::string& piece : vxcommon::brokenInto(line.substr(blanks), width)) {
        text += std::string(text.empty() ? blanks : blanks + more, ' ') + piece + "\n";
    }
    return text;
}

std::string brokenText(const std::string& text, std::size_t columns, std::size_t more = 0) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        result += brokenLine(line, columns, more);
    }
    return result;
}

/// Help in lines of limited width, broken between words. Behind an option stands only the name of its value;
/// the usage line shows what is required.
class HelpFormatter : public vxcommon::HelpFormatter {
 public:
    explicit HelpFormatter(std::size_t columns);

    std::string make_description(const CLI::App* app) const override;
    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_footer(const CLI::App* app) const override;
    std::string make_subcommand(const CLI::App* verb) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
    std::string make_option_opts(const CLI::Option* option) const override;

 private:
    std::string entry(const std::string& name, const std::string& description) const;

    std::size_t columns_;
    std::size_t nameColumns_;
};

HelpFormatter::HelpFormatter(std::size_t columns)
    : columns_(std::max(columns, kFewestColumns)), nameColumns_(std::min(columns_ / 3, kWidestName)) {}

std::string HelpFormatter::make_description(const CLI::App* app) const {
    return brokenText(app->get_description(), columns_);
}

std::string HelpFormatter::make_usage(const CLI::App* app, std::string name) const {
    return brokenText(vxcommon::HelpFormatter::make_usage(app, std::move(name)), columns_, kUsageIndent);
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
    return brokenText(app->get_footer(), columns_);
}

std::string HelpFormatter::make_subcommand(const CLI::App* verb) const {
    return entry(verb->get_display_name(true), verb->get_description());
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
    return entry(make_option_name(option, isPositional) + make_option_opts(option), make_option_desc(option));
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
    if (!option->get_option_text().empty()) {
        return " " + option->get_option_text();
    }
    const bool named = !option->get_positional() && option->get_type_size() != 0;
    return named ? " " + option->get_type_name() : "";
}

std::string HelpFormatter::entry(const std::string& name, const std::string& description) const {
    std::string text = kMargin + name;
    if (description.empty() || text.size() + 1 > nameColumns_) {
        text = brokenLine(text, columns_, 2);
    } else {
        text.resize(nameColumns_, ' ');
    }
    const std::string margin(nameColumns_, ' ');
    std::istringstream lines(brokenText(description, columns_ - nameColumns_));
    bool isFirst = text.back() != '\n';
    for (std::string line; std::getline(lines, line); isFirst = false) {
        text += (isFirst ? "" : margin) + line + "\n";
    }
    return text;
}

}  // namespace

std::unique_ptr<CLI::App> makeApp(Action& chosen) {
    auto app = std::make_unique<CLI::App>(
        "A virtual television on this machine, to clone hotel televisions without one.", "vxtv");
    app->formatter(std::make_shared<HelpFormatter>(vxcommon::columnsAt(STDOUT_FILENO)));
    app->set_version_flag("--version", "vxtv " VX_VERSION, "Print the version and end");
    app->require_subcommand(0, 1);
    app->footer("A television is a folder. Each command explains itself: vxtv COMMAND --help");
    for (const AddCommand add : kCommands) {
        add(*app, chosen);
    }
    vxcommon::finishCommandLine(*app, "For programs: write JSON, where the command has it");
    return app;
}

}  // namespace vxtv
