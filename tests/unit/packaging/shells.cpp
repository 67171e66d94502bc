#include "tests/unit/packaging/shells.h"

#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/machine/terminal.h"
#include "tests/support/machine/tool_paths.h"

namespace vxpages {

namespace {

constexpr const char* kPrompt = "READY>";
constexpr const char* kComplete = "\x07";
constexpr const char* kTell = "\x18";
// Wide enough that no line is wrapped.
constexpr unsigned short kColumns = 4000;

// The start files of the shells.
constexpr const char* kBashStart = R"(PS1=$PROMPT
source "$SHARE/bash-completion/completions/vxclone"
source "$SHARE/bash-completion/completions/vxtv"
COMP_WORDBREAKS=${BREAKS:-$COMP_WORDBREAKS}
bind 'set bell-style none'
bind '"\C-g": insert-completions'
bind -x '"\C-x": printf "\n[[%s]]\n" "$READLINE_LINE"'
)";

// zsh passes completions to `compadd`. A call with -O, -A or -D asks for matches and offers nothing.
constexpr const char* kZshStart = R"(PS1=$PROMPT
fpath=("$SHARE/zsh/site-functions" $fpath)
autoload -Uz compinit
compinit -u -D
compadd() {
    if [[ ${@[1,(i)(-|--)]} != *-(O|A|D)\ * ]]; then
        local -a hits
        builtin compadd -O hits "$@"
        print -rl -- $hits >>$OFFERS
    fi
    builtin compadd "$@"
}
complete-it() { zle expand-or-complete 2>>$ERRORS }
tell() { print -r -- "[[told]]" }
zle -N complete-it
zle -N tell
bindkey '^G' complete-it
bindkey '^X' tell
)";

std::map<std::string, std::string> environmentFor(const std::filesystem::path& share) {
    return {{"TERM", "dumb"},
            {"PROMPT", kPrompt},
            {"PATH", vxtest::toolFolder().string() + ":" + std::getenv("PATH")},
            {"SHARE", share.string()}};
}

/// Types the line and two keys at the prompt: one for the completion, and one that prints the result between
/// "[[" and "]]". Result: this text, or all text of the terminal if it does not appear.
std::string answerTo(const vxtest::Program& shell, const std::string& line) {
    vxtest::Terminal terminal(shell, kColumns);
    if (!terminal.waitFor(kPrompt)) {
        return "no prompt: " + terminal.text();
    }
    terminal.type(line + kComplete + kTell);
    if (!terminal.waitFor("]]")) {
        return "no answer: " + terminal.text();
    }
    const std::string text = terminal.text();
    const std::size_t begin = text.rfind("[[") + 2;
    return text.substr(begin, text.find("]]", begin) - begin);
}

std::string readIfThere(const std::filesystem::path& file) {
    return std::filesystem::exists(file) ? vxtest::readFile(file) : "";
}

}  // namespace

bool isInstalled(const std::string& tool) {
    return vxtest::run({{"sh", "-c", "command -v " + tool}, {}, {}, {}}).status == 0;
}

std::string completedByBash(const std::filesystem::path& share, const std::string& line,
                            const std::string& breaks) {
    const vxtest::TemporaryDirectory place;
    vxtest::writeFile(place / "start", kBashStart);
    vxtest::Program shell;
    shell.command = {"bash", "--noprofile", "--rcfile", (place / "start").string(), "-i"};
    shell.environment = environmentFor(share);
    shell.environment["BREAKS"] = breaks;
    std::string completed = answerTo(shell, line);
    completed.erase(completed.find_last_not_of(' ') + 1);
    return completed;
}

std::string offeredByZsh(const std::filesystem::path& share, const std::string& line) {
    const vxtest::TemporaryDirectory place;
    const std::string offers = (place / "offers").string();
    const std::string errors = (place / "errors").string();
    vxtest::writeFile(place / ".zshrc", kZshStart);
    vxtest::Program shell;
    shell.command = {"zsh", "-d", "-i"};
    shell.environment = environmentFor(share);
    shell.environment.insert({{"ZDOTDIR", place.path().string()}, {"OFFERS", offers}, {"ERRORS", errors}});
    if (const std::string answer = answerTo(shell, line); answer != "told") {
        return answer;
    }
    if (const std::string said = readIfThere(errors); !said.empty()) {
        return said;
    }
    std::set<std::string> sorted;
    std::istringstream words(readIfThere(offers));
    for (std::string word; words >> word;) {
        sorted.insert(word);
    }
    std::string text;
    for (const std::string& word : sorted) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

}  // namespace vxpages
