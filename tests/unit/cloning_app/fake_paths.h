#pragma once

#include <filesystem>

/// Where the television of these tests keeps its logos, behind the platform's own functions. Empty: it says
/// nothing.
struct FakePaths {
    std::filesystem::path bootLogo;
    std::filesystem::path mbrLogo;

    /// The one of the process.
    static FakePaths& instance();
    static void reset() { instance() = {}; }
};
