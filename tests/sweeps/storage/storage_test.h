#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/sweeps/sweep.h"

namespace vxtest {

using Variables = std::map<std::string, std::string>;

/// Televisions of one model with different settings, and a folder for a stick.
class StorageTest : public testing::Test {
 protected:
    StorageTest();

    /// `vxtv` with the arguments; a failure fails the test.
    Finished vxtv(const std::vector<std::string>& arguments) const;

    /// `vxclone` in a session of the television. Only it gets the variables.
    Program program(const std::string& television, const std::vector<std::string>& arguments,
                    const Variables& variables = {}) const;
    Finished vxclone(const std::string& television, const std::vector<std::string>& arguments,
                     const Variables& variables = {}) const;

    /// The variables with which vxclone records its changes of the stick in the television's tmp/journal. The
    /// stick must be a disk of its own.
    static Variables journalling();

    /// A backup of the television that has to succeed.
    void backUp(const std::string& television) const;
    /// What is on the stick below the package's folder.
    FileTree package() const;
    FileTree onStick() const { return snapshot(stick); }
    /// The package's folder and nothing beside it, or nothing at all.
    bool stickIsTidy() const;
    /// Whether the package exists, is unaltered, and holds everything in `complete`, and `verify` ends with
    /// one of the statuses: 1 if it says that something is lacking.
    testing::AssertionResult packageIsGood(const FileTree& complete = {},
                                           const std::vector<int>& statuses = {0}) const;
    /// The television's settings without those that report a run.
    std::string settingsOf(const std::string& television) const;

    TemporaryDirectory place;
    const std::string first = (place / "first").string();
    const std::string second = (place / "second").string();
    /// A third television, which only checks packages.
    const std::string judge = (place / "judge").string();
    const std::string stick = (place / "stick").string();
};

inline constexpr const char* kPackage = "/media/usb/clone";
inline constexpr const char* kWelcome = "db/vxhotel/hotelmenu/welcomemessage";
inline constexpr const char* kApplicationData = "opt/usr/apps/org.vorta.vxhotel-cloning/data";

/// What is below a folder of a tree; nothing where the folder is not there.
FileTree below(const FileTree& tree, const std::string& folder);

/// A library of this build for preloading.
std::string interposer(const std::string& name);

}  // namespace vxtest
