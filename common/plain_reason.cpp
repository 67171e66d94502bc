#include "common/plain_reason.h"

#include <cerrno>
#include <charconv>
#include <new>
#include <string_view>
#include <system_error>

namespace vxcommon {

namespace {

/// The mark with which libraries put a reason of the system into their messages.
constexpr std::string_view kSystemMark = "[system:";

}  // namespace

std::optional<int> systemReason(const std::exception& error) {
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
        return ENOMEM;
    }
    if (const auto* const system = dynamic_cast<const std::system_error*>(&error)) {
        const bool known = system->code().category() == std::system_category() ||
                           system->code().category() == std::generic_category();
        return known ? std::optional(system->code().value()) : std::nullopt;
    }
    const std::string_view text = error.what();
    const std::size_t mark = text.find(kSystemMark);
    if (mark == std::string_view::npos) {
        return std::nullopt;
    }
    int reason = 0;
    const std::string_view digits = text.substr(mark + kSystemMark.size());
    const bool read = std::from_chars(digits.data(), digits.data() + digits.size(), reason).ec == std::errc();
    return read && reason > 0 ? std::optional(reason) : std::nullopt;
}

Printable plainReason(const std::exception& error) {
    if (const auto reason = systemReason(error)) {
        return printable(std::generic_category().message(*reason));
    }
    const std::string_view text = error.what();
    if (text.empty() || text.front() == '[' || text.find("::") != std::string_view::npos) {
        return {"a fault in a program's library"};
    }
    return printable(text);
}

}  // namespace vxcommon
