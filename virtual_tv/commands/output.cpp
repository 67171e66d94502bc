#include "virtual_tv/commands/output.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <limits>

#include "virtual_tv/commands/command.h"

namespace vxtv {

nlohmann::ordered_json toJson(const SettingValue& value) {
    return std::visit([](const auto& alternative) { return nlohmann::ordered_json(alternative); }, value);
}

vxcommon::Screen outputScreen() {
    const vxcommon::Screen screen = vxcommon::screenAt(STDOUT_FILENO);
    return screen.terminal ? screen : vxcommon::Screen{std::numeric_limits<std::size_t>::max(), false, false};
}

void print(vxcommon::PrintableView text) {
    vxcommon::standardOutput().write(text);
}

void say(std::string_view sentence) {
    vxcommon::standardOutput().line(vxcommon::printable(sentence));
}

void printJson(const nlohmann::ordered_json& document) {
    constexpr int kIndent = 2;
    vxcommon::standardOutput().line(vxcommon::JsonText(document, kIndent));
}

void printJsonLine(const nlohmann::ordered_json& document) {
    vxcommon::standardOutput().line(vxcommon::JsonText(document));
}

bool flushOutput() {
    return vxcommon::finishStandardOutput() == 0;
}

int finishOutput() {
    // A reader that closes the pipe has read enough.
    const int reason = vxcommon::finishStandardOutput();
    if (reason == 0 || reason == EPIPE) {
        return kExitOk;
    }
    return complain(
        {ErrorCode::Io,
         fmt::format("cannot write the output: {}; send it elsewhere and try again", std::strerror(reason))});
}

}  // namespace vxtv
