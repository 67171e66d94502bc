#include "tests/documents/plan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

#include "tests/documents/quotation.h"

namespace vxtest {

namespace {

constexpr std::string_view kPrompt = "$ ";

/// The first words of the commands in our documents. A block without a mark that begins in another way is not
/// a command.
constexpr std::array<std::string_view, 14> kPrograms = {"build/", "cat",          "cd",      "chmod", "cp",
                                                        "ctest",  "export",       "g++",     "head",  "ls",
                                                        "mkdir",  "scripts/demo", "vxclone", "vxtv"};

bool isRunnable(std::string_view command) {
    const std::string_view word = command.substr(0, command.find(' '));
    return std::any_of(kPrograms.begin(), kPrograms.end(), [&](std::string_view program) {
        return program.ends_with('/') ? word.starts_with(program) : word == program;
    });
}

/// The rest of the text after the word, if the text begins with it.
std::optional<std::string> after(const std::string& text, std::string_view word) {
    if (!text.starts_with(word)) return std::nullopt;
    return text.substr(word.size());
}

/// The commands of a block, each of which may have "$ " before it and its output after it.
std::vector<Command> commandsOf(const Block& block) {
    const bool withOutput = !block.lines.empty() && block.lines.front().starts_with(kPrompt);
    std::vector<Command> commands;
    int line = block.line;
    bool goesOn = false;
    for (const std::string& shown : block.lines) {
        ++line;
        if (goesOn) {
            commands.back().text += '\n' + shown;
        } else if (withOutput && !shown.starts_with(kPrompt)) {
            commands.back().quotations.front().lines.push_back(shown);
            continue;
        } else if (withOutput) {
            commands.push_back({line, shown.substr(kPrompt.size()), 0, false, {{line + 1, {}}}});
        } else if (!shown.empty() && !shown.starts_with('#')) {
            commands.push_back({line, shown, 0, false, {}});
        } else {
            continue;
        }
        goesOn = shown.ends_with('\\');
    }
    return commands;
}

/// A command of a block, and the effect of its marks.
struct Marked {
    Command command;
    std::optional<std::string> whyNotRun;
};

class Planner {
 public:
    explicit Planner(const Markdown& document) {
        plan_.name = document.name;
        plan_.problems = document.problems;
    }

    void take(const Block& block) {
        if (block.marks.size() == 1 && takeWhole(block, block.marks.front())) return;
        if (!block.language.empty() && block.language != "sh" && block.language != "console") {
            complain(block.line, "how is a block of \"" + block.language + "\" run? Mark it");
            return;
        }
        std::vector<Marked> commands;
        for (Command& command : commandsOf(block)) commands.push_back({std::move(command), std::nullopt});
        if (commands.empty()) complain(block.line, "this block holds no command");
        for (const Mark& mark : block.marks) takeMark(mark, commands);
        for (Marked& marked : commands) {
            if (!takeCommand(marked)) break;
        }
    }

    Plan end() { return std::move(plan_); }

 private:
    /// Applies a mark that says that the block is not a block of commands. False if the mark is another one.
    bool takeWhole(const Block& block, const Mark& mark) {
        if (const auto reason = after(mark.text, "not run: ")) {
            plan_.leftOut.push_back(at(plan_.name, block.line, "a block is not run: " + *reason));
        } else if (const auto path = after(mark.text, "file ")) {
            std::string content;
            for (const std::string& line : block.lines) content += line + '\n';
            plan_.steps.emplace_back(SavedFile{block.line, *path, content});
        } else if (mark.text == "output") {
            takeOutput(block, "");
        } else if (const auto begin = after(mark.text, "output of ")) {
            takeOutput(block, *begin);
        } else {
            return false;
        }
        return true;
    }

    /// The quoted output is that of the last command with this beginning.
    void takeOutput(const Block& block, const std::string& begin) {
        if (!saysSomething(block.lines)) {
            complain(block.line, "this output fits whatever is printed");
            return;
        }
        for (auto step = plan_.steps.rbegin(); step != plan_.steps.rend(); ++step) {
            Command* const command = std::get_if<Command>(&*step);
            if (command != nullptr && command->text.starts_with(begin)) {
                command->quotations.push_back({block.line + 1, block.lines});
                return;
            }
        }
        complain(block.line, "no command that is run before it prints this");
    }

    void takeMark(const Mark& mark, std::vector<Marked>& commands) {
        if (const auto named = after(mark.text, "not run ")) {
            const std::size_t colon = named->find(": ");
            if (colon == std::string::npos) return complain(mark.line, "this mark gives no reason");
            if (Marked* const marked = commandOf(mark, named->substr(0, colon), commands)) {
                marked->whyNotRun = named->substr(colon + 2);
            }
        } else if (const auto begin = after(mark.text, "stopped ")) {
            if (Marked* const marked = commandOf(mark, *begin, commands)) marked->command.stopped = true;
        } else if (const auto status = after(mark.text, "status ")) {
            takeStatus(mark, *status, commands);
        } else {
            complain(mark.line, "there is no mark \"" + mark.text + "\" for a block of commands");
        }
    }

    /// "1 vxtv compare": the command of the block with this beginning has this status.
    void takeStatus(const Mark& mark, const std::string& text, std::vector<Marked>& commands) {
        int status = 0;
        const char* const end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, status);
        if (error != std::errc() || rest == end || *rest != ' ' || status < 1 || status > 255) {
            return complain(mark.line, "a status is a number from 1 to 255 and the begin of a command");
        }
        if (Marked* const marked = commandOf(mark, {rest + 1, end}, commands)) {
            marked->command.status = status;
        }
    }

    Marked* commandOf(const Mark& mark, const std::string& begin, std::vector<Marked>& commands) {
        std::vector<Marked*> found;
        for (Marked& marked : commands) {
            if (marked.command.text.starts_with(begin)) found.push_back(&marked);
        }
        if (found.size() == 1) return found.front();
        complain(mark.line, std::string(found.empty() ? "no command" : "more than one command") +
                                " of this block begins with \"" + begin + "\"");
        return nullptr;
    }

    /// False if it is not a command; then the lines after it are not commands either.
    bool takeCommand(Marked& marked) {
        Command& command = marked.command;
        if (marked.whyNotRun) {
            plan_.leftOut.push_back(
                at(plan_.name, command.line, "\"" + command.text + "\" is not run: " + *marked.whyNotRun));
        } else if (isRunnable(command.text)) {
            std::erase_if(command.quotations, [](const Quotation& quotation) {
                return !quotation.lines.empty() && !saysSomething(quotation.lines);
            });
            plan_.steps.emplace_back(std::move(command));
        } else {
            complain(command.line, "how is \"" + command.text + "\" run? Mark it");
            return false;
        }
        return true;
    }

    void complain(int line, const std::string& text) { plan_.problems.push_back(at(plan_.name, line, text)); }

    Plan plan_;
};

}  // namespace

Plan planOf(const Markdown& document) {
    Planner planner(document);
    for (const Block& block : document.blocks) planner.take(block);
    return planner.end();
}

}  // namespace vxtest
