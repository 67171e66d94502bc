// The facade after there was not enough memory while the library was loaded. In this program the allocation
// with nothrow fails, so the process's manager has no engine.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "tests/support/scripted/scripted_platform.h"
#include "vx_clone_api.h"

void* operator new(std::size_t, const std::nothrow_t&) noexcept {
    return nullptr;
}

namespace vxtest {
namespace {

using testing::ElementsAre;

class NoEngineTest : public testing::Test {
 protected:
    NoEngineTest() { tv.reset(); }
    ScriptedPlatform& tv = ScriptedPlatform::instance();
};

TEST_F(NoEngineTest, backupIsZeroAfterOneLine) {
    EXPECT_EQ(VXCloneAPI::BackupCloneData(), 0);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 BackupCloneData: Fail to GetCloneInterface!!!!"));
}

TEST_F(NoEngineTest, restoreIsZeroAndLeavesTheListEmpty) {
    std::vector<VXClone> list;
    EXPECT_EQ(VXCloneAPI::RestoreCloneData(list), 0);
    EXPECT_TRUE(list.empty());
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 RestoreCloneData: ",
                                             "E/35 RestoreCloneData: Fail to GetCloneInterface!!!!"));
}

TEST_F(NoEngineTest, writeDataIsZeroAfterOneLine) {
    EXPECT_EQ(VXCloneAPI::WriteDataToFile("/tmp/x"), 0);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 WriteDataToFile: Fail to GetCloneInterface!!!!"));
}

TEST_F(NoEngineTest, checkDataIsMinusOneAfterOneLine) {
    EXPECT_EQ(VXCloneAPI::CheckDataValidity("/tmp"), -1);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 CheckDataValidity: Fail to GetCloneInterface!!!!"));
}

TEST_F(NoEngineTest, checkHashIsZeroAfterOneLine) {
    char path[] = "/tmp/x";
    EXPECT_EQ(VXCloneAPI::CheckHashValidity({}, 0, path), 0);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 CheckHashValidity: Fail to GetCloneInterface!!!!"));
}

TEST_F(NoEngineTest, exportedFunctionsReturnZero) {
    EXPECT_EQ(vx_clone_backup_data(), 0);
    EXPECT_EQ(vx_clone_restore_data(), 0);
}

}  // namespace
}  // namespace vxtest
