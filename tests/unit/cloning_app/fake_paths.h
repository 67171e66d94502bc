#pragma once

#include <filesystem>

/// Where the television of these tests keeps its logos and its home menu, behind the platform's own
/// functions. Empty: it says nothing.
struct FakePaths {
    std::filesystem::path bootLogo;
    std::filesystem::path mbrLogo;
    std::filesystem::path homeMenu = {};

    /// The one of the process.
    static FakePaths& instance();
    static void reset() { instance() = {}; }
};
