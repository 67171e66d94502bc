#pragma once

#include <optional>
#include <string>

/// What the television of these tests says it is, behind the platform's own functions. None: it cannot be
/// read.
struct FakeSystemInfo {
    std::optional<std::string> model = "VX55R1";
    std::optional<std::string> productTag = "VX-R1-EU";
    std::optional<int> tuner = 3;
    std::optional<bool> regionalTuner = false;

    /// The one of the process.
    static FakeSystemInfo& instance();
    static void reset() { instance() = {}; }
};
