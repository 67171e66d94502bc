#pragma once

#include <fmt/format.h>

#include <string>

#include "tests/support/scripted/scripted_platform.h"

namespace vxtest {

inline ScriptedPlatform& platform() {
    return ScriptedPlatform::instance();
}

/// A string as it appears in the record of a call.
inline std::string quoted(const char* text) {
    return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
}
inline std::string quoted(const std::string& text) {
    return quoted(text.c_str());
}

/// Records the call and answers it: with the scripted status, or with what `work` returns.
template <class Work>
auto answered(const char* call, const std::string& arguments, Work work) -> decltype(work()) {
    const ScriptedPlatform::Decision decision = platform().decide(call, arguments);
    if (!decision.forced) {
        return work();
    }
    return static_cast<decltype(work())>(decision.status);
}

/// The same for a call that returns a pointer: every scripted status means null.
template <class Work>
auto answeredPointer(const char* call, const std::string& arguments, Work work) -> decltype(work()) {
    return platform().decide(call, arguments).forced ? nullptr : work();
}

}  // namespace vxtest
