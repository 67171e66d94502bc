// vxclone cannot start a thread: each one in turn, or all from one on.

#include "tests/sweeps/storage/failing_points_test.h"

namespace vxtest {
namespace {

constexpr const char* kCall = "pthread_create";

class ThreadsTest : public FailingPointsTest {
 protected:
    /// Each one in turn. In the long form also all from that one on.
    static std::vector<Variables> points(unsigned long calls) {
        std::vector<Variables> all;
        for (unsigned long nth = 1; nth <= calls; nth += isLongForm() ? 1U : 3U) {
            all.push_back(refusing(kCall, nth, false));
            if (isLongForm()) {
                all.push_back(refusing(kCall, nth, true));
            }
        }
        return all;
    }
};

TEST_F(ThreadsTest, backupSaysWhatItCouldNotDo) {
    SweepPoints sweep("threads, backup");
    const unsigned long calls = callsOf(kCall, first, {"backup", kPackage});
    kept = package();
    for (const Variables& point : points(calls)) {
        SCOPED_TRACE(point.at("VX_REFUSE_NTH"));
        expectWholeBackup(point);
        sweep.tried();
    }
    EXPECT_GE(sweep.count(), 2);
    expectNextBackupIsGood();
}

TEST_F(ThreadsTest, restoreIsAppliedOrNamedAsNotApplied) {
    SweepPoints sweep("threads, restore");
    for (const Variables& point : points(callsOf(kCall, second, {"restore", kPackage}))) {
        SCOPED_TRACE(point.at("VX_REFUSE_NTH"));
        vxtv({"set", second, kWelcome, "before " + point.at("VX_REFUSE_NTH")});
        expectHonestRestore(point);
        sweep.tried();
    }
    EXPECT_GE(sweep.count(), 2);
    expectNextRestoreIsGood();
}

}  // namespace
}  // namespace vxtest
