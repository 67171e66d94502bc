#pragma once

#include <gtest/gtest.h>

namespace vxtest {

#ifdef __SANITIZE_THREAD__
inline constexpr bool kThreadSanitizer = true;
#else
inline constexpr bool kThreadSanitizer = false;
#endif

}  // namespace vxtest

/// Skips the test under the thread sanitizer, which writes a file of its own before a program's main: for
/// tests of what a program writes, and of limits on it.
#define VX_SKIP_IF_PROGRAMS_WRITE_AT_THEIR_START()                                      \
    do {                                                                                \
        if (vxtest::kThreadSanitizer) {                                                 \
            GTEST_SKIP() << "the thread sanitizer writes a file when a program starts"; \
        }                                                                               \
    } while (false)
