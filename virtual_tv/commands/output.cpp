#include "virtual_tv/commands/output.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>

#include "common/character_width.h"
#include "virtual_tv/commands/command.h"

namespace vxtv {

namespace {

/// The length of the colour code at the start of the text (ESC [ digits and semicolons m), or 0.
std::size_t colourCodeLength(std::string_view text) {
    if (text.substr(0, 2) != "\x1b[") {
        return 0;
    }
    const std::size_t end = text.find_first_not_of("0123456789;", 2);
    return end != std::string_view::npos && text[end] == 'm' ? end + 1 : 0;
}

/// The system's reason (errno) of the first write on standard output that failed; 0: none did.
int failedFor = 0;

std::string textOf(const nlohmann::ordered_json& document, int indent) {
    return vxcommon::printableJson(
        document.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

}  // namespace

nlohmann::ordered_json toJson(const SettingValue& value) {
    return std::visit([](const auto& alternative) { return nlohmann::ordered_json(alternative); }, value);
}

vxcommon::Screen outputScreen() {
    const vxcommon::Screen screen = vxcommon::screenAt(STDOUT_FILENO);
    return screen.terminal ? screen : vxcommon::Screen{std::numeric_limits<std::size_t>::max(), false, false};
}

void print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && failedFor == 0) {
        failedFor = errno;
    }
}

void say(std::string_view sentence) {
    print(vxcommon::printable(sentence) + "\n");
}

void printJson(const nlohmann::ordered_json& document) {
    constexpr int kIndent = 2;
    print(textOf(document, kIndent) + "\n");
}

void printJsonLine(const nlohmann::ordered_json& document) {
    constexpr int kNoIndent = -1;
    print(textOf(document, kNoIndent) + "\n");
}

std::string forTerminal(std::string_view text, bool keepColours) {
    std::string result;
    while (!text.empty()) {
        const std::size_t code = colourCodeLength(text);
        const std::size_t length = code == 0 ? vxcommon::characterAt(text, 0).bytes : code;
        const std::string_view piece = text.substr(0, length);
        if (code == 0) {
            result += piece == "\n" ? std::string(piece) : vxcommon::printable(piece);
        } else if (keepColours) {
            result += piece;
        }
        text.remove_prefix(length);
    }
    return result;
}

bool flushOutput() {
    if (std::fflush(stdout) != 0 && failedFor == 0) {
        failedFor = errno;
    }
    return failedFor == 0;
}

int finishOutput() {
    // Who closes a pipe has read enough.
    if (flushOutput() || failedFor == EPIPE) {
        return kExitOk;
    }
    return complain(
        {ErrorCode::Io, fmt::format("cannot write the output: {}; send it elsewhere and try again",
                                    std::strerror(failedFor))});
}

}  // namespace vxtv
