#pragma once

#include <filesystem>

/// The folders of logos and home menu, behind the platform's own functions. By default there are none. An
/// empty path means that the platform does not name the folder.
struct FakePaths {
    std::filesystem::path bootLogo = "/not-there/boot-logo";
    std::filesystem::path mbrLogo = "/not-there/mbr-logo";
    std::filesystem::path homeMenu = "/not-there/home-menu";

    /// The instance of the process.
    static FakePaths& instance();
    static void reset() { instance() = {}; }
};
