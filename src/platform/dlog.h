#pragma once

// The television's logger.

/// Priorities of a log line.
enum : int { DLOG_DEBUG = 3, DLOG_INFO = 4, DLOG_ERROR = 6, DLOG_FATAL = 7 };

/// Log buffers.
enum : int { LOG_ID_MAIN = 0 };

extern "C" {

/// Writes one line to the log buffer `log_id`: one call is one line, whatever line ends the text holds.
///
/// Result: not negative on success, negative when the line could not be written; the library does not look.
/// Ownership: all strings stay the caller's and are read before the call returns.
/// Threads: may be called from any thread at any time, lines of two threads do not mix.
/// Before: `fmt` and its arguments agree, as for printf.
int __dlog_print(int log_id, int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 4, 5)));
}
