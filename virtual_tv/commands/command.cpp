#include "virtual_tv/commands/command.h"

#include <unistd.h>

#include <cstdio>

#include "common/suggestion.h"
#include "common/terminal_table.h"

namespace vxtv {

namespace {

constexpr std::size_t kBelowSentence = 6;  // what goes on stands below the sentence, not below the name

}  // namespace

int complain(const Error& error) {
    // A sentence may hold a name that somebody else chose.
    const std::string sentence = "vxtv: " + vxcommon::printable(error.sentence);
    const vxcommon::Screen screen = vxcommon::screenAt(STDERR_FILENO);
    std::fprintf(stderr, "%s\n", vxcommon::sentenceFor(screen, sentence, kBelowSentence).c_str());
    return kExitFailed;
}

Error asking(Error error, std::string_view typed, const std::vector<std::string>& names) {
    const std::string question = vxcommon::didYouMean(typed, names);
    error.sentence += question.empty() ? "" : "; " + question;
    return error;
}

}  // namespace vxtv
