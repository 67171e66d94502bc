#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXClonePaths.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/scripted/scripted_platform.h"

namespace vxtest {

namespace fs = std::filesystem;

/// An engine on a scripted television with an empty clone directory. The paths are the real ones, because the
/// program runs in a private file system.
class EngineTest : public testing::Test {
 protected:
    EngineTest() {
        tv.reset();
        tv.setSetting(kCloneResultKey, std::string("stale"));
        tv.setSetting(kCloneProgressKey, -1);
        tv.setFeature(kNetworkSupportFeature, 1);
        fs::remove_all(kWorkDirectory);
        fs::create_directories(kWorkDirectory);
        fs::remove_all(kCloneDirectory);
        fs::create_directories(kCloneDirectory);
        VXCloneHandler::m_ecloneType = kDirectionBackup;
        VXCloneHandler::m_jscloneParam = Json::Value();
    }

    /// A directory for other files.
    static constexpr const char* kWorkDirectory = "/tmp/area";
    static fs::path work(const std::string& name) { return fs::path(kWorkDirectory) / name; }
    static fs::path clone(const std::string& name) { return fs::path(kCloneDirectory) / name; }

    std::string results() const { return std::get<std::string>(tv.setting(kCloneResultKey)); }

    ScriptedPlatform& tv = ScriptedPlatform::instance();
    VXCloneHandler engine;
};

}  // namespace vxtest
