// The output of vxtv and vxclone fits the terminal, or eighty columns if there is none.

#include <sstream>

#include "common/terminal_table.h"
#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/terminal.h"
#include "virtual_tv/commands/app.h"

namespace vxtest {
namespace {

using testing::HasSubstr;

constexpr unsigned short kWidths[] = {60, 80, 120};
constexpr std::size_t kWithoutTerminal = 80;

/// The lines, and each state of a live line, without colours and line ends.
std::vector<std::string> linesOf(const std::string& text) {
    constexpr std::string_view kBackAtTheStart = "\r\x1b[K";
    std::vector<std::string> lines(1);
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text.compare(at, kBackAtTheStart.size(), kBackAtTheStart) == 0) {
            lines.emplace_back();
            at += kBackAtTheStart.size() - 1;
        } else if (text[at] == '\n') {
            lines.emplace_back();
        } else if (text[at] == '\x1b') {
            at = text.find('m', at);
        } else if (text[at] != '\r') {
            lines.back() += text[at];
        }
    }
    return lines;
}

void expectFits(const std::string& text, std::size_t columns) {
    for (const std::string& line : linesOf(text)) {
        EXPECT_LE(vxcommon::displayWidth(line), columns) << line;
        EXPECT_FALSE(line.ends_with(' ')) << line;
    }
}

/// All words, separated by one blank: the same for every wrapping, unless a word was broken.
std::string wordsOf(const std::string& text) {
    std::string words;
    for (const std::string& line : linesOf(text)) {
        std::istringstream stream(line);
        for (std::string word; stream >> word;) {
            words += word + " ";
        }
    }
    return words;
}

/// The command line of each command's help, with a word for each argument before a command.
void addHelps(const CLI::App& app, const std::vector<std::string>& words,
              std::vector<std::vector<std::string>>& helps) {
    helps.push_back(words);
    helps.back().emplace_back("--help");
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        std::vector<std::string> longer = words;
        for (const CLI::Option* option : app.get_options()) {
            if (option->get_positional()) {
                longer.emplace_back("x");
            }
        }
        longer.push_back(command->get_name());
        addHelps(*command, longer, helps);
    }
}

class WidthTest : public CloneTest {
 protected:
    static std::string atTerminal(std::vector<std::string> arguments, unsigned short columns) {
        arguments.insert(arguments.begin(), vxtvProgram().string());
        Program program;
        program.command = std::move(arguments);
        program.environment = {{"TERM", "xterm"}};
        Terminal terminal(program, columns);
        EXPECT_THAT(terminal.wait(), testing::AnyOf(0, 1)) << terminal.text();
        return terminal.text();
    }
};

TEST_F(WidthTest, helpOfEachCommandFitsAndBreaksNoWord) {
    vxtv::Action chosen;
    std::vector<std::vector<std::string>> helps;
    addHelps(*vxtv::makeApp(chosen), {}, helps);
    ASSERT_GT(helps.size(), 25U);
    for (const std::vector<std::string>& help : helps) {
        const std::string piped = WidthTest::vxtv(help).output;
        SCOPED_TRACE(piped.substr(0, 200));
        expectFits(piped, kWithoutTerminal);
        for (const unsigned short columns : kWidths) {
            const std::string shown = atTerminal(help, columns);
            expectFits(shown, columns);
            EXPECT_EQ(wordsOf(shown), wordsOf(piped));
        }
    }
}

TEST_F(WidthTest, callsFitAndKeepKeysWhole) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    for (const unsigned short columns : kWidths) {
        expectFits(atTerminal({"calls", first}, columns), columns);
    }
    const std::string piped = vxtv({"calls", first}).output;
    expectFits(piped, kWithoutTerminal);
    EXPECT_THAT(piped, HasSubstr(kWelcome));
    EXPECT_THAT(piped, HasSubstr("message_port_send_message_with_local_port"));
}

TEST_F(WidthTest, tablesFitTheTerminalAndAreOneLineARowWithoutOne) {
    const std::vector<std::vector<std::string>> tables = {
        {"settings", first}, {"compare", first, second}, {"channels", first},    {"services", first, "av"},
        {"sources", first},  {"timers", first},          {"app", "list", first}, {"info", first},
        {"show", first}};
    for (const std::vector<std::string>& table : tables) {
        SCOPED_TRACE(table.front());
        for (const unsigned short columns : kWidths) {
            expectFits(atTerminal(table, columns), columns);
        }
    }
    EXPECT_THAT(vxtv({"settings", first}).output,
                testing::ContainsRegex(std::string("\n") + kWelcome + " +string "));
}

/// The output of a program in a television, at a terminal.
std::string shownBy(const std::string& television, const std::string& stick,
                    const std::vector<std::string>& arguments, unsigned short columns) {
    Program program;
    program.command = {vxtvProgram().string(),   "run", television, "--quiet", "--stick", stick, "--",
                       vxcloneProgram().string()};
    program.command.insert(program.command.end(), arguments.begin(), arguments.end());
    program.environment = {{"TERM", "xterm"}};
    Terminal terminal(program, columns);
    EXPECT_THAT(terminal.wait(), testing::AnyOf(0, 1)) << terminal.text();
    return terminal.text();
}

TEST_F(WidthTest, everyCommandOfVxcloneFitsTheTerminal) {
    vxtv({"fault", first, "add", "vconf_get_str", "--key", kWelcome, "--status", "-1", "--from-then-on"});
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/lacking"}).status, 1);
    vxtv({"fault", first, "clear"});
    const std::vector<std::pair<std::string, std::vector<std::string>>> commands = {
        {first, {"backup", "/media/usb/clone", "--name", "The suite on the third floor, facing the harbour"}},
        {second, {"list", "/media/usb"}},
        {second, {"inspect", "/media/usb/lacking", "--files"}},
        {second, {"verify", "/media/usb/lacking"}},
        {second, {"diff", "/media/usb/clone"}},
        {second, {"restore", "/media/usb/clone", "--dry-run"}},
        {second, {"restore", "/media/usb/lacking", "--only", "settings-keys,channels"}},
        {second, {"status"}},
        {second, {"undo"}}};
    for (const auto& [television, arguments] : commands) {
        SCOPED_TRACE(arguments.front());
        for (const unsigned short columns : kWidths) {
            for (const std::string& line : linesOf(shownBy(television, stick, arguments, columns))) {
                EXPECT_LE(vxcommon::displayWidth(line), columns) << line;
            }
        }
    }
}

}  // namespace
}  // namespace vxtest
