#include "virtual_tv/commands/command.h"

#include <unistd.h>

#include "common/suggestion.h"
#include "common/terminal_table.h"
#include "common/writer.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

constexpr std::size_t kBelowSentence = 6;  // what goes on stands below the sentence, not below the name

}  // namespace

int complain(const Error& error) {
    const vxcommon::Screen screen = vxcommon::screenAt(STDERR_FILENO);
    vxcommon::standardError().line(vxcommon::sentenceFor(screen, "vxtv: " + error.sentence, kBelowSentence));
    return kExitFailed;
}

Error asking(Error error, std::string_view typed, const std::vector<std::string>& names) {
    const std::string question = vxcommon::didYouMean(typed, names);
    error.sentence += question.empty() ? "" : "; " + question;
    return error;
}

Result<Setting> lookUpSetting(const Television& television, const std::string& key) {
    Result<Setting> found = television.settings().get(key);
    if (found || found.error().code != ErrorCode::UnknownKey) {
        return found;
    }
    std::vector<std::string> keys;
    for (const Setting& setting : television.settings().list().value_or(std::vector<Setting>())) {
        keys.push_back(setting.key);
    }
    return tl::make_unexpected(asking(found.error(), key, keys));
}

}  // namespace vxtv
