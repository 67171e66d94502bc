#pragma once

#include <optional>
#include <string>

/// The identity of the television of these tests, behind the platform's own functions. Without a value it
/// cannot be read.
struct FakeSystemInfo {
    std::optional<std::string> model = "VX55R1";
    std::optional<std::string> productTag = "VX-R1-EU";
    std::optional<int> tuner = 3;
    std::optional<bool> regionalTuner = false;

    /// The instance of the process.
    static FakeSystemInfo& instance();
    static void reset() { instance() = {}; }
};
