// Every system call of vxclone fails in turn, in each way in which it can fail.

#include <gmock/gmock.h>

#include <atomic>
#include <map>

#include "tests/support/machine/file_tree.h"
#include "tests/sweeps/sweep.h"
#include "tests/sweeps/system/system_sweep.h"

namespace vxtest {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;
using Ways = std::vector<std::string>;

/// The possible failures of each call. Calls that are not listed cannot fail because of a disk, a stick or a
/// table of files.
const std::map<std::string, Ways> kWays = {
    {"open", {"EIO", "EMFILE"}},
    {"openat", {"EIO", "EMFILE", "ENOSPC"}},
    {"read", {"EIO", "short", "EINTR"}},
    {"pread64", {"EIO", "short", "EINTR"}},
    {"write", {"ENOSPC", "short", "EIO", "EINTR"}},
    {"writev", {"ENOSPC", "EIO"}},
    {"pwrite64", {"ENOSPC", "short", "EIO", "EINTR"}},
    {"close", {"EIO"}},
    {"fsync", {"EIO", "ENOSPC"}},
    {"fdatasync", {"EIO", "ENOSPC"}},
    {"syncfs", {"EIO", "ENOSPC"}},
    {"rename", {"EIO", "ENOSPC", "EROFS"}},
    {"renameat", {"EIO", "ENOSPC", "EROFS"}},
    {"renameat2", {"EIO", "ENOSPC", "EROFS"}},
    {"mkdir", {"ENOSPC", "EIO", "EROFS"}},
    {"mkdirat", {"ENOSPC", "EIO", "EROFS"}},
    {"rmdir", {"EIO", "EROFS"}},
    {"unlink", {"EIO", "EROFS"}},
    {"unlinkat", {"EIO", "EROFS"}},
    {"newfstatat", {"EIO", "EACCES"}},
    {"statx", {"EIO", "EACCES"}},
    {"fstatfs", {"EIO"}},
    {"statfs", {"EIO"}},
    {"access", {"EIO", "EACCES"}},
    {"faccessat2", {"EIO", "EACCES"}},
    {"readlink", {"EIO", "EACCES"}},
    {"getdents64", {"EIO"}},
    {"fchmod", {"EIO", "EPERM"}},
    {"fchmodat", {"EIO", "EPERM"}},
    {"ftruncate", {"EIO", "ENOSPC"}},
    {"fallocate", {"ENOSPC", "EIO"}},
    {"copy_file_range", {"EIO", "ENOSPC", "short"}},
    {"flock", {"EINTR", "ENOLCK"}},
    {"fcntl", {"EINTR", "ENOLCK"}},
    {"lseek", {"EIO"}},
    {"mmap", {"ENOMEM"}},
    {"socket", {"EMFILE"}},
    {"connect", {"EACCES"}},
    {"sendmsg", {"EPIPE", "EINTR"}},
    {"recvmsg", {"EIO", "EINTR"}},
    {"getrandom", {"EINTR"}},
    {"pipe2", {"EMFILE"}},
};

/// Calls that check whether something exists. A failure must not be treated as "no".
const std::map<std::string, Ways> kQuestions = {
    {"access", {"EIO"}}, {"faccessat2", {"EIO"}}, {"getdents64", {"EIO"}}};

class SystemErrorSweep : public SystemSweep {
 protected:
    static constexpr std::size_t kQuestionsTried = 4;

    static Among amongFiles() { return isLongForm() ? Among::AllFiles : Among::FilesThatMatter; }

    /// The nth call of each kind fails. A short sweep takes `shortForm` points of each kind, among those on
    /// files that matter.
    std::vector<BreakPoint> pointsOf(const Subject& subject, const std::map<std::string, Ways>& kinds,
                                     std::size_t shortForm) const {
        std::map<std::string, std::size_t> counts;
        for (const CountedCall& call : count(subject, "", amongFiles())) {
            ++counts[call.name];
        }
        std::vector<BreakPoint> points;
        for (const auto& [name, ways] : kinds) {
            const auto numbers = spread(counts[name], mostPoints(shortForm));
            for (std::size_t index = 0; index < numbers.size(); ++index) {
                points.push_back({ways[index % ways.size()], name, {}, numbers[index]});
            }
        }
        return points;
    }

    template <typename Visit>
    void sweep(const char* name, const Subject& subject, const std::vector<BreakPoint>& points,
               const Visit& visit) {
        SweepPoints tried(name);
        std::atomic<int> reached = 0;
        std::atomic<int> succeeded = 0;
        inParallel(points.size(), [&](std::size_t index) {
            const Bench bench = benchOf(subject);
            BreakPoint point = points[index];
            if (amongFiles() == Among::FilesThatMatter) {
                point.below = filesThatMatter(bench);
            }
            const BrokenRun run = bench.broken(subject.command, point);
            SCOPED_TRACE(point.text() + (run.calls.empty() ? " (not reached)" : ": " + run.calls[0].paths));
            reached += run.calls.empty() ? 0 : 1;
            succeeded += run.finished.status == 0 ? 1 : 0;
            expectTold(run.finished);
            visit(bench, run.finished);
        });
        for (std::size_t count = 0; count < points.size(); ++count) {
            tried.tried();
        }
        tried.note(std::to_string(reached) + " reached, " + std::to_string(succeeded) + " ended well");
        // Runs differ in how many calls they make: the last points are beyond the end of some.
        EXPECT_GT(reached * 2, static_cast<int>(points.size()));
    }

    void expectPackages(const char* name, const Subject& subject, const std::vector<BreakPoint>& points) {
        const FileTree before = snapshot(stick());
        sweep(name, subject, points, [&](const Bench& bench, const Finished& finished) {
            if (finished.status == 0) {
                EXPECT_NE(snapshot(bench.stick()), before) << "it said that it made a backup";
                expectPackageGood(bench);
            } else {
                // The package itself says that it is not complete.
                expectStickWhole(bench, finished.status == 1 ? 1 : 0);
            }
        });
    }

    void expectTruth(const char* name, const Subject& subject, const std::vector<BreakPoint>& points) {
        std::atomic<int> failed = 0;
        sweep(name, subject, points, [&](const Bench& bench, const Finished& finished) {
            if (finished.status == 0) {
                EXPECT_EQ(bench.differenceTo(subject.end), "");
                return;
            }
            if (++failed % 2 == 0) {
                expectWayBack(bench, subject);
            }
            expectConverges(bench, subject);
        });
    }
};

TEST_F(SystemErrorSweep, backupWithAFailingCallLeavesAWholePackage) {
    const Subject subject = backup();
    expectPackages("system-errors backup", subject, pointsOf(subject, kWays, 1));
}

TEST_F(SystemErrorSweep, backupThatCannotTellWhatIsThereLeavesAWholePackage) {
    const Subject subject = backup();
    expectPackages("system-errors backup, questions", subject,
                   pointsOf(subject, kQuestions, kQuestionsTried));
}

TEST_F(SystemErrorSweep, restoreWithAFailingCallIsTrueUndoneOrConverges) {
    const Subject subject = restore();
    expectTruth("system-errors restore", subject, pointsOf(subject, kWays, 1));
}

TEST_F(SystemErrorSweep, restoreThatCannotTellWhatIsThereIsTrueUndoneOrConverges) {
    const Subject subject = restore();
    expectTruth("system-errors restore, questions", subject, pointsOf(subject, kQuestions, kQuestionsTried));
}

TEST_F(SystemErrorSweep, undoThatCannotTellWhatIsThereIsDoneOrDoneAgain) {
    const Subject subject = undo();
    sweep("system-errors undo, questions", subject, pointsOf(subject, kQuestions, kQuestionsTried),
          [&](const Bench& bench, const Finished& finished) {
              if (finished.status != 0) {
                  expectConverges(bench, subject);
              }
              EXPECT_EQ(bench.differenceTo(subject.end), "");
          });
}

TEST_F(SystemErrorSweep, diffWithAFailingCallIsNeverUntrueAndLeavesNoTrace) {
    const Subject subject = diff();
    sweep("system-errors diff", subject, pointsOf(subject, kWays, 1),
          [&](const Bench& bench, const Finished& finished) {
              const bool same = finished.output.find("\nNo difference.\n") != std::string::npos;
              EXPECT_EQ(finished.status == 0, same) << finished.output << finished.errors;
              if (finished.status == 0) {
                  EXPECT_THAT(finished.output, Not(AnyOf(HasSubstr(" differ.\n"), HasSubstr("Not compared"),
                                                         HasSubstr("No difference in"))));
              }
              expectNoTrace(bench, subject);
          });
}

}  // namespace
}  // namespace vxtest
