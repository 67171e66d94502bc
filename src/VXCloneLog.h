#pragma once

// The library's log lines. Each names its source, function and line, the thread and the moment:
//
//     VX_LOG(Error, "Parse error");
//     VX_LOGF(Debug, "Server URL is : %s", url.c_str());
//
// The kind fixes priority and colour. Nearly every line is an Error, traces included.

#include <array>

#include "platform/dlog.h"

/// The tag of one log line: "tID:", the calling thread's id as the standard library prints it, "|TICK:", and
/// the monotonic clock in whole milliseconds. Allocates nothing once the thread has made one before.
class VXCloneLogTag {
 public:
    VXCloneLogTag();
    const char* c_str() const { return m_text.data(); }

 private:
    std::array<char, 64> m_text{};
};

/// The part of the path behind the last slash.
constexpr const char* VXCloneBaseName(const char* path) {
    const char* name = path;
    for (const char* at = path; *at != '\0'; ++at) {
        if (*at == '/') {
            name = at + 1;
        }
    }
    return name;
}

#define VX_LOG_PRIORITY_Error DLOG_ERROR
#define VX_LOG_PRIORITY_Debug DLOG_DEBUG
#define VX_LOG_PRIORITY_Info DLOG_INFO
#define VX_LOG_PRIORITY_Fatal DLOG_FATAL

#define VX_LOG_COLOUR_Error "\x1b[0;35m"
#define VX_LOG_COLOUR_Debug "\x1b[0;33m"
#define VX_LOG_COLOUR_Info "\x1b[0;32m"
#define VX_LOG_COLOUR_Fatal "\x1b[0;31m"

#define VX_LOG_FORMAT(kind, message) "%s: %s(%d) > " VX_LOG_COLOUR_##kind "[%s] > " message "\x1b[0;m"

#define VX_LOG_SITE(function) VXCloneBaseName(__FILE__), function, __LINE__, VXCloneLogTag().c_str()

/// One line whose message has no arguments of its own. The second form is for a line that carries the name
/// of another function than the one it stands in.
#define VX_LOG(kind, message) VX_LOG_AS(__func__, kind, message)
#define VX_LOG_AS(function, kind, message) VX_LOG_PRINT(kind, message, VX_LOG_SITE(function))

/// One line whose message is a format with arguments.
#define VX_LOGF(kind, message, ...) VX_LOGF_AS(__func__, kind, message, __VA_ARGS__)
#define VX_LOGF_AS(function, kind, message, ...) \
    VX_LOG_PRINT(kind, message, VX_LOG_SITE(function), __VA_ARGS__)

#define VX_LOG_PRINT(kind, message, ...)                                            \
    static_cast<void>(__dlog_print(LOG_ID_MAIN, VX_LOG_PRIORITY_##kind, "cloneapi", \
                                   VX_LOG_FORMAT(kind, message), __VA_ARGS__))

/// The entry trace of an operation: a line with an empty message.
#define VX_TRACE() VX_LOG(Error, "")

// Messages that more than one operation logs.
#define VX_TEXT_SYMBOLIC_LINK "%s is symbolic link"
#define VX_TEXT_NETWORK_SKIPPED "Home data and was api will be skipped..."
#define VX_TEXT_NO_TIMERS "failed to init tvtimer api"
