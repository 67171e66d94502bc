#include "platform/dlog.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <string>

#include "virtual_tv/platform/process_television.h"

namespace {

constexpr int kNotWritten = -1;

/// The message, of any length.
__attribute__((format(printf, 1, 0))) std::string format(const char* fmt, va_list arguments) {
    std::array<char, 1024> usual{};
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(usual.data(), usual.size(), fmt, arguments);
    std::string text;
    if (length >= 0 && static_cast<std::size_t>(length) < usual.size()) {
        text.assign(usual.data(), static_cast<std::size_t>(length));
    } else if (length >= 0) {
        text.resize(static_cast<std::size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, fmt, again);
    }
    va_end(again);
    return text;
}

__attribute__((format(printf, 3, 0))) int print(int priority, const char* tag, const char* fmt,
                                                va_list arguments) noexcept {
    try {
        vxtv::Television* const television = vxtv::processTelevision();
        if (television == nullptr || fmt == nullptr) {
            return kNotWritten;
        }
        const std::string text = format(fmt, arguments);
        const bool written = television->dlog().append(priority, tag != nullptr ? tag : "", text);
        return written ? static_cast<int>(text.size()) : kNotWritten;
    } catch (const std::exception&) {
        return kNotWritten;
    }
}

}  // namespace

int __dlog_print(int /*log_id*/, int prio, const char* tag, const char* fmt, ...) {
    va_list arguments;
    va_start(arguments, fmt);
    const int result = print(prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}
