#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/machine/tool_paths.h"
#include "virtual_tv/store/folder.h"

namespace vxtest {

/// Makes a television with `vxtv create`, and the folders above it; a failure fails the test.
void createTelevision(const std::filesystem::path& folder);

/// `vxtv run FOLDER OPTIONS --quiet -- COMMAND`, to be run.
Program inTelevision(const std::filesystem::path& folder, std::vector<std::string> command,
                     std::vector<std::string> options = {});

/// A test with one television.
class SessionTest : public testing::Test {
 protected:
    SessionTest();

    Finished runInside(std::vector<std::string> command, std::vector<std::string> options = {}) const;

    TemporaryDirectory place;
    vxtv::Folder television{place / "tv"};
};

/// The parts of a television that sessions must not change: everything except its own data.
FileTree surroundings(const vxtv::Folder& television);

}  // namespace vxtest
