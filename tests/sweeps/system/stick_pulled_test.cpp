// The stick is pulled out: from one call on, all calls on its files fail.

#include <gmock/gmock.h>

#include <atomic>

#include "tests/support/machine/file_tree.h"
#include "tests/sweeps/sweep.h"
#include "tests/sweeps/system/system_sweep.h"

namespace vxtest {
namespace {

using testing::AnyOf;
using testing::HasSubstr;

constexpr const char* kStick = "/media/usb";
/// All calls that access the stick. Closing a file of a missing stick works.
constexpr const char* kOnStick =
    "open,openat,read,pread64,write,writev,pwrite64,fsync,fdatasync,syncfs,rename,renameat,renameat2,mkdir,"
    "mkdirat,"
    "rmdir,unlink,unlinkat,stat,lstat,fstat,newfstatat,statx,statfs,fstatfs,access,faccessat2,readlink,"
    "getdents64,"
    "ftruncate,fallocate,copy_file_range";
constexpr int kUnreadable = 3;
constexpr int kStickGone = 6;

class StickPulledSweep : public SystemSweep {
 protected:
    template <typename Visit>
    void sweep(const char* name, const Subject& subject, std::size_t shortPoints, const Visit& visit) {
        const auto calls = benchOf(subject).broken(subject.command, {"count", kOnStick, {kStick}}).calls;
        ASSERT_GT(calls.size(), shortPoints);
        const auto numbers = spread(calls.size() - 1, mostPoints(shortPoints));
        SweepPoints tried(name);
        std::atomic<int> failed = 0;
        inParallel(numbers.size(), [&](std::size_t index) {
            const Bench bench = benchOf(subject);
            const BreakPoint point{"EIO", kOnStick, {kStick}, numbers[index], true};
            const Finished finished = bench.broken(subject.command, point).finished;
            SCOPED_TRACE(point.text());
            expectTold(finished);
            if (finished.status != 0) {
                ++failed;
                expectStickNamed(finished);
            }
            visit(bench, finished.status);
        });
        for (std::size_t count = 0; count < numbers.size(); ++count) {
            tried.tried();
        }
        tried.note(std::to_string(failed) + " runs ended with an error");
        EXPECT_GT(failed * 2, static_cast<int>(numbers.size()));
    }

 private:
    static void expectStickNamed(const Finished& finished) {
        EXPECT_THAT(finished.status, AnyOf(kStickGone, kUnreadable)) << finished.output << finished.errors;
        EXPECT_THAT(finished.errors, HasSubstr(kStick));
        EXPECT_THAT(finished.errors,
                    AnyOf(HasSubstr("; try again"), HasSubstr("; put it in"), HasSubstr("; is the stick"),
                          HasSubstr("; run vxclone backup again")));
    }
};

TEST_F(StickPulledSweep, backupToAPulledStickLeavesAWholePackage) {
    sweep("stick-pulled backup", backup(), 8, [](const Bench& bench, int) { expectStickWhole(bench); });
}

TEST_F(StickPulledSweep, restoreFromAPulledStickChangesAllOrNothing) {
    const Subject subject = restore();
    sweep("stick-pulled restore", subject, 8, [&](const Bench& bench, int status) {
        EXPECT_EQ(bench.differenceTo(status == 0 ? subject.end : subject.begin), "");
        if (status != 0) {
            expectConverges(bench, subject);
        }
    });
}

TEST_F(StickPulledSweep, verifyOfAPulledStickSaysSo) {
    const Subject verify{{"verify", kPackage}, target(), target()};
    sweep("stick-pulled verify", verify, 6, [&](const Bench& bench, int) {
        EXPECT_EQ(bench.vxclone(verify.command).status, 0);
        EXPECT_EQ(bench.differenceTo(target()), "");
    });
}

}  // namespace
}  // namespace vxtest
