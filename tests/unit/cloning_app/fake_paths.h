#pragma once

#include <filesystem>

/// Where the television of these tests keeps its logos and its home menu, behind the platform's own
/// functions: nowhere, until a test says otherwise. An empty path: the platform names none.
struct FakePaths {
    std::filesystem::path bootLogo = "/not-there/boot-logo";
    std::filesystem::path mbrLogo = "/not-there/mbr-logo";
    std::filesystem::path homeMenu = "/not-there/home-menu";

    /// The one of the process.
    static FakePaths& instance();
    static void reset() { instance() = {}; }
};
