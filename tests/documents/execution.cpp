#include "tests/documents/execution.h"

#include <filesystem>
#include <sstream>

#include "tests/documents/quotation.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {

namespace fs = std::filesystem;

namespace {

/// The exit status of `timeout` when it had to stop the command, and when it had to kill it.
constexpr int kStopped = 124;
constexpr int kKilled = 137;

/// Runs each command from a file of its own, and writes its output and status to files beside it. A command
/// may end the shell, and may change the folder and the variables for later commands.
constexpr const char* kShell = R"sh(
vx_folder=$1
for vx_command in "$vx_folder"/*.command; do
    eval "$(<"$vx_command")" </dev/null >"${vx_command%.command}.output" 2>&1
    echo $? >"${vx_command%.command}.status"
done
)sh";

std::string inQuotes(const std::string& text) {
    std::string word = "'";
    for (const char character : text) {
        if (character == '\'') {
            word += "'\\''";
        } else {
            word += character;
        }
    }
    return word + "'";
}

/// A file of one step. The names sort in the order of the steps.
fs::path stepFile(const fs::path& folder, std::size_t step, const char* kind) {
    return folder / (std::to_string(10000 + step) + kind);
}

std::string shown(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += "    " + line + '\n';
    return text.empty() ? "    (nothing)\n" : text;
}

std::string shown(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return shown(lines);
}

class Execution {
 public:
    Execution(const Plan& plan, const Workplace& workplace) : plan_(plan), workplace_(workplace) {}

    std::vector<std::string> run() {
        for (std::size_t step = 0; step < plan_.steps.size(); ++step) {
            std::visit([&](const auto& what) { prepare(step, what); }, plan_.steps[step]);
        }
        Program shell;
        // Also kills the processes that the commands started.
        const std::string limit = std::to_string(workplace_.timeLimit.count());
        shell.command = {"timeout", "--signal=KILL", limit, "bash", "-c", kShell, "document", files_.path()};
        shell.environment = {{"LC_ALL", "C.UTF-8"}, {"PATH", workplace_.searchPath}};
        shell.workingDirectory = workplace_.folder;
        shell.timeLimit = workplace_.timeLimit + std::chrono::seconds(10);
        ended_ = vxtest::run(shell);
        for (std::size_t step = 0; step < plan_.steps.size(); ++step) {
            if (!judge(step)) break;
        }
        return std::move(problems_);
    }

 private:
    void prepare(std::size_t step, const Command& command) const {
        const std::string text =
            command.stopped ? "timeout --signal=INT 0.5 bash -c " + inQuotes(command.text) : command.text;
        writeFile(stepFile(files_.path(), step, ".command"), text);
    }

    void prepare(std::size_t step, const SavedFile& file) const {
        const fs::path content = stepFile(files_.path(), step, ".content");
        writeFile(content, file.content);
        const std::string path = inQuotes(file.path);
        writeFile(stepFile(files_.path(), step, ".command"),
                  "mkdir -p -- \"$(dirname " + path + ")\" && cp -- " + inQuotes(content) + " " + path);
    }

    /// False if the shell did not reach this step.
    bool judge(std::size_t step) {
        const fs::path statusFile = stepFile(files_.path(), step, ".status");
        const fs::path outputFile = stepFile(files_.path(), step, ".output");
        const std::string output = fs::exists(outputFile) ? readFile(outputFile) : "";
        const bool ended = fs::exists(statusFile);
        const int status = ended ? std::stoi(readFile(statusFile)) : 0;
        if (const auto* const file = std::get_if<SavedFile>(&plan_.steps[step])) {
            if (status != 0)
                complain(file->line, "\"" + file->path + "\" cannot be saved:\n" + shown(output));
            return ended;
        }
        const Command& command = std::get<Command>(plan_.steps[step]);
        const std::string name = "\"" + command.text + "\" ";
        if (!ended) {
            complain(command.line,
                     name +
                         (ended_.status == kKilled ? "was still running when the time was over"
                                                   : "ended the shell, and no command after it was run") +
                         ". It printed:\n" + shown(output));
            return false;
        }
        judgeStatus(command, name, status, output);
        for (const Quotation& quotation : command.quotations) {
            if (quotes(quotation.lines, output)) continue;
            complain(quotation.line, name + "prints something else. The document says:\n" +
                                         shown(quotation.lines) + "It printed:\n" + shown(output));
        }
        return true;
    }

    void judgeStatus(const Command& command, const std::string& name, int status, const std::string& output) {
        if (command.stopped) {
            if (status == kStopped) return;
            complain(command.line,
                     name + "did not go on until it was stopped. It printed:\n" + shown(output));
        } else if (status != command.status) {
            complain(command.line, name + "ended with " + std::to_string(status) + " and not with " +
                                       std::to_string(command.status) + ". It printed:\n" + shown(output));
        }
    }

    void complain(int line, const std::string& text) { problems_.push_back(at(plan_.name, line, text)); }

    const Plan& plan_;
    const Workplace& workplace_;
    TemporaryDirectory files_;
    Finished ended_;
    std::vector<std::string> problems_;
};

}  // namespace

std::vector<std::string> problemsOf(const Plan& plan, const Workplace& workplace) {
    if (!plan.problems.empty()) return plan.problems;
    return Execution(plan, workplace).run();
}

}  // namespace vxtest
