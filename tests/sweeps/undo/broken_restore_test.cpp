// A restore is killed or stopped at each of its system calls that changes something.

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

    /// Breaks the restore at `shortPoints` of its calls, or at `most` in the long form.
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

    std::size_t changes() const {
        const Bench bench = newBench();
        const BrokenRun whole = bench.broken(restore_, {"count", kChanging, filesThatMatter(bench)});
        EXPECT_EQ(whole.finished.status, 0) << whole.finished.output << whole.finished.errors;
        return whole.calls.size();
    }
};

/// A restore died while it loaded. Later runs are completed, and the last one is killed.
class LaterRunTest : public BrokenRestoreTest {
 protected:
    using Command = std::vector<std::string>;

    void SetUp() override {
        BrokenRestoreTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        const std::size_t all = changes();
        for (std::size_t at = all / 2; at < all && deadly_ == 0; at += all / 20 + 1) {
            const Bench bench = newBench();
            bench.broken(restore_, deathAt(bench, at));
            deadly_ = bench.recordedPhase() == "restoring" ? at : 0;
        }
        ASSERT_NE(deadly_, 0U);
    }

    /// The restore that dies, and the later runs.
    void runBefore(const Bench& bench, const std::vector<Command>& runs) const {
        bench.broken(restore_, deathAt(bench, deadly_));
        for (const Command& run : runs) {
            const Finished finished = bench.vxclone(run);
            EXPECT_EQ(finished.status, 0) << finished.output << finished.errors;
        }
    }

    void sweepLater(const std::string& name, const std::vector<Command>& before, const Command& last) {
        SweepPoints tried("undo, later run: " + name);
        const Bench counted = newBench();
        runBefore(counted, before);
        const BrokenRun whole = counted.broken(last, {"count", kChanging, filesThatMatter(counted)});
        ASSERT_EQ(whole.finished.status, 0) << whole.finished.output << whole.finished.errors;
        const std::vector<std::size_t> points = spread(whole.calls.size(), mostPoints(3));
        std::atomic<int> hit = 0;
        inParallel(points.size(), [&](std::size_t index) {
            const Bench bench = newBench();
            runBefore(bench, before);
            const BrokenRun broken = bench.broken(last, deathAt(bench, points[index]));
            SCOPED_TRACE(name + ", call " + std::to_string(points[index]));
            hit += broken.calls.empty() ? 0 : 1;
            expectWayBack(bench, broken.finished.output + broken.finished.errors);
        });
        for (int count = 0; count < hit; ++count) {
            tried.tried();
        }
        tried.note(counts_.text());
        EXPECT_GT(hit * 2, static_cast<int>(points.size()));
        EXPECT_EQ(counts_.undone, static_cast<int>(points.size()));
    }

    const Command part_ = {"restore", "/media/usb/clone", "--only", "boot-logo"};

 private:
    static BreakPoint deathAt(const Bench& bench, std::size_t nth) {
        return {"kill", kChanging, filesThatMatter(bench), nth};
    }

    std::size_t deadly_ = 0;
};

TEST_F(LaterRunTest, partKilledAfterARestoreThatDiedIsUndoneToTheFirstState) {
    sweepLater("a part", {}, part_);
}

TEST_F(LaterRunTest, restoreKilledAfterARestoreThatDiedIsUndoneToTheFirstState) {
    sweepLater("a restore", {}, restore_);
}

TEST_F(LaterRunTest, restoreKilledAfterAPartIsUndoneToTheFirstState) {
    sweepLater("a restore after a part", {part_}, restore_);
}

TEST_F(LaterRunTest, backupKilledAfterARestoreThatDiedTakesNothingOfTheWayBack) {
    sweepLater("a backup", {}, {"backup", "/media/usb/other", "--without", "apps"});
}

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
