// kill -9 before every system call that changes a file, and before a sample of the others.

#include <gmock/gmock.h>

#include <atomic>

#include "tests/sweeps/sweep.h"
#include "tests/sweeps/system/system_sweep.h"

namespace vxtest {
namespace {

using testing::HasSubstr;

constexpr const char* kChanging =
    "write,writev,pwrite64,fsync,fdatasync,syncfs,rename,renameat,renameat2,mkdir,mkdirat,rmdir,unlink,"
    "unlinkat,"
    "chmod,fchmod,fchmodat,truncate,ftruncate,fallocate,copy_file_range";
constexpr int kKilled = 137;
/// The number of other calls that the long form tries.
constexpr std::size_t kOthers = 200;

class KillSweep : public SystemSweep {
 protected:
    /// The points of a recorded command. `visit` gets the bench on which it was killed.
    template <typename Visit>
    void sweep(const char* name, const Subject& subject, std::size_t shortPoints, const Visit& visit) {
        std::atomic<int> killed = 0;
        std::atomic<int> unfinished = 0;
        killAtEach(name, subject, shortPoints, [&](const Bench& bench, std::size_t index) {
            ++killed;
            unfinished += expectNamed(bench) ? 1 : 0;
            visit(bench, index);
        });
        EXPECT_GT(unfinished * 2, killed);
    }

    /// The points of any command.
    template <typename Visit>
    void killAtEach(const char* name, const Subject& subject, std::size_t shortPoints, const Visit& visit) {
        std::vector<BreakPoint> points = pointsOf(subject, kChanging, mostPoints(shortPoints));
        if (isLongForm()) {
            const auto others = pointsOf(subject, "", kOthers);
            points.insert(points.end(), others.begin(), others.end());
        }
        SweepPoints tried(name);
        std::atomic<int> reached = 0;
        inParallel(points.size(), [&](std::size_t index) {
            const Bench bench = benchOf(subject);
            BreakPoint point = points[index];
            point.below = filesThatMatter(bench);
            const BrokenRun killed = bench.broken(subject.command, point);
            const auto where = point.text() + (killed.calls.empty() ? "" : ": " + killed.calls[0].paths);
            SCOPED_TRACE(where);
            if (killed.calls.empty()) {
                return;  // the run had fewer calls this time
            }
            EXPECT_EQ(killed.finished.status, kKilled);
            ++reached;
            visit(bench, index);
        });
        for (std::size_t count = 0; count < points.size(); ++count) {
            tried.tried();
        }
        tried.note(std::to_string(reached) + " killed");
        // Runs differ in how many calls they make: the last points are beyond the end of some.
        EXPECT_GT(reached * 2, static_cast<int>(points.size()));
    }

 private:
    std::vector<BreakPoint> pointsOf(const Subject& subject, const char* calls, std::size_t most) const {
        std::vector<BreakPoint> points;
        for (const std::size_t nth : spread(count(subject, calls, Among::FilesThatMatter).size(), most)) {
            points.push_back({"kill", calls, {}, nth});
        }
        return points;
    }

    /// Expects that the next command names a run that died. Result: whether there was one.
    static bool expectNamed(const Bench& bench) {
        const std::string phase = bench.recordedPhase();
        const bool died = !phase.empty() && phase != "done";
        const Finished status = bench.vxclone({"status"});
        EXPECT_EQ(status.status, died ? 1 : 0) << status.output << status.errors;
        if (died) {
            EXPECT_THAT(status.output, HasSubstr("UNFINISHED"));
        }
        return died;
    }
};

TEST_F(KillSweep, backupKilledAtEachChangeLeavesAWholePackage) {
    sweep("kill backup", backup(), 8, [](const Bench& bench, std::size_t) { expectStickWhole(bench); });
}

TEST_F(KillSweep, restoreKilledAtEachChangeIsUndoneOrConverges) {
    const Subject subject = restore();
    sweep("kill restore", subject, 10, [&](const Bench& bench, std::size_t index) {
        if (index % 2 == 0) {
            expectWayBack(bench, subject);
        }
        expectConverges(bench, subject);
    });
}

TEST_F(KillSweep, undoKilledAtEachChangeIsDoneAgain) {
    const Subject subject = undo();
    sweep("kill undo", subject, 6, [&](const Bench& bench, std::size_t) { expectConverges(bench, subject); });
}

TEST_F(KillSweep, diffKilledAtEachChangeLeavesNoTraceAfterTheNextLook) {
    const Subject subject = diff();
    killAtEach("kill diff", subject, 10,
               [&](const Bench& bench, std::size_t) { expectNoTrace(bench, subject); });
}

}  // namespace
}  // namespace vxtest
