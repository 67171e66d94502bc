// A restore is killed, or stopped, at each of its system calls that changes something.

#include <algorithm>

#include "tests/sweeps/undo/undo_sweep.h"

namespace vxtest {
namespace {

constexpr const char* kChanging =
    "write,writev,pwrite64,fsync,fdatasync,syncfs,rename,renameat,renameat2,mkdir,mkdirat,rmdir,unlink,"
    "unlinkat,chmod,fchmod,fchmodat,truncate,ftruncate,fallocate,copy_file_range";

class BrokenRestoreTest : public UndoSweep {
 protected:
    BrokenRestoreTest() : UndoSweep(true) {}

    void SetUp() override {
        UndoSweep::SetUp();
        const BrokenRun whole = newBench().broken(restore_, {"count", "getrandom", {}});
        if (whole.finished.errors.find("does not let a program be traced") != std::string::npos) {
            GTEST_SKIP() << whole.finished.errors;
        }
    }

    /// Breaks the restore at so many of its calls; `most` in the long form.
    void sweep(const std::string& how, std::size_t shortPoints, std::size_t most) {
        SweepPoints tried("undo, " + how);
        const std::vector<std::size_t> points = spread(changes(), std::min(mostPoints(shortPoints), most));
        std::atomic<int> hit = 0;
        inParallel(points.size(), [&](std::size_t index) {
            const Bench bench = newBench();
            const BreakPoint point{how, kChanging, filesThatMatter(bench), points[index]};
            const BrokenRun broken = bench.broken(restore_, point);
            SCOPED_TRACE(point.text() + (broken.calls.empty() ? "" : ": " + broken.calls[0].paths));
            if (broken.calls.empty()) {
                return;  // the run had fewer calls this time
            }
            ++hit;
            EXPECT_FALSE(broken.finished.timedOut);
            const Finished status = bench.vxclone({"status"});
            expectWayBack(bench, broken.finished.output + broken.finished.errors + status.output);
        });
        for (int count = 0; count < hit; ++count) {
            tried.tried();
        }
        tried.note(counts_.text());
        EXPECT_GT(hit * 2, static_cast<int>(points.size()));
        EXPECT_GT(counts_.undone, 0);
    }

 private:
    std::size_t changes() const {
        const Bench bench = newBench();
        const BrokenRun whole = bench.broken(restore_, {"count", kChanging, filesThatMatter(bench)});
        EXPECT_EQ(whole.finished.status, 0) << whole.finished.output << whole.finished.errors;
        return whole.calls.size();
    }
};

constexpr std::size_t kAll = 1'000'000;
constexpr std::size_t kStops = 100;

TEST_F(BrokenRestoreTest, restoreKilledAtEachChangeIsUndone) {
    sweep("kill", 6, kAll);
}

TEST_F(BrokenRestoreTest, restoreStoppedAtAChangeIsUndone) {
    sweep("interrupt", 3, kStops);
}

}  // namespace
}  // namespace vxtest
