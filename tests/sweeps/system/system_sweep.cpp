#include "tests/sweeps/system/system_sweep.h"

#include <gmock/gmock.h>

#include "tests/support/machine/database_rows.h"
#include "tests/support/machine/exit_status.h"
#include "tests/support/machine/tool_paths.h"

namespace vxtest {

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

void make(const fs::path& television, const char* profile) {
    const Finished made = run({{vxtvProgram(), "create", television, "--profile", profile}, {}, {}, {}});
    ASSERT_EQ(made.status, 0) << made.errors;
}

std::string all(const Finished& finished) {
    return "status " + std::to_string(finished.status) + "\n" + finished.output + finished.errors;
}

}  // namespace

SystemSweep::SystemSweep() {
    make(source(), "room-101");
    make(target(), "room-102");
    fs::create_directory(stick());
}

void SystemSweep::keepAs(const Bench& bench, const fs::path& folder) const {
    fs::copy(bench.television(), folder, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
}

void SystemSweep::SetUp() {
    const Bench first(source(), stick());
    const Finished saved = first.vxclone({"backup", kPackage});
    ASSERT_EQ(saved.status, 0) << all(saved);
    fs::copy(first.stick(), stick(), fs::copy_options::recursive);
    keepAs(first, backedUp());

    const Bench second(target(), stick());
    const BrokenRun loaded = second.broken({"restore", kPackage}, {"count", "getrandom", {}});
    if (loaded.finished.errors.find("does not let a program be traced") != std::string::npos) {
        GTEST_SKIP() << loaded.finished.errors;
    }
    ASSERT_EQ(loaded.finished.status, 0) << all(loaded.finished);
    keepAs(second, restored());
    namesOfData_ = second.namesOfData();
}

std::vector<CountedCall> SystemSweep::count(const Subject& subject, const std::string& calls,
                                            Among among) const {
    const auto ofOneRun = [&] {
        const Bench bench = benchOf(subject);
        BreakPoint counting{"count", calls, {}};
        if (among == Among::FilesThatMatter) {
            counting.below = filesThatMatter(bench);
        }
        BrokenRun whole = bench.broken(subject.command, counting);
        EXPECT_EQ(whole.finished.status, 0) << all(whole.finished);
        return std::move(whole.calls);
    };
    // A run that saves a category twice, because its outcome was lost, has more calls than the others.
    auto one = ofOneRun();
    auto other = ofOneRun();
    return one.size() < other.size() ? one : other;
}

void SystemSweep::expectTold(const Finished& finished) {
    EXPECT_FALSE(finished.timedOut) << "it hangs";
    EXPECT_LE(finished.status, ended::kHighest) << all(finished);
    if (finished.status > 1) {
        EXPECT_THAT(finished.errors, HasSubstr("; ")) << all(finished);
    } else if (finished.status == 1) {
        EXPECT_NE(finished.output + finished.errors, "");
    }
}

void SystemSweep::expectPackageGood(const Bench& bench) {
    const Finished verified = bench.vxclone({"verify", kPackage});
    EXPECT_EQ(verified.status, 0) << all(verified);
    EXPECT_EQ(bench.namesOnStick(), std::vector<std::string>{"clone"});
}

void SystemSweep::expectStickWhole(const Bench& bench, int verifyStatus) {
    const Finished verified = bench.vxclone({"verify", kPackage});
    EXPECT_EQ(verified.status, verifyStatus) << all(verified);
    const Finished next = bench.vxclone({"backup", kPackage});
    EXPECT_EQ(next.status, 0) << all(next);
    EXPECT_EQ(bench.namesOnStick(), std::vector<std::string>{"clone"});
    EXPECT_EQ(bench.namesOfData(), std::vector<std::string>({"Clone", "run.json", "run.lock"}));
}

void SystemSweep::expectWayBack(const Bench& bench, const Subject& subject) {
    const bool changed = !bench.differenceTo(subject.begin).empty();
    const Finished undone = bench.vxclone({"undo"});
    EXPECT_TRUE(undone.status == 0 || (!changed && undone.status == ended::kNoPackage)) << all(undone);
    EXPECT_EQ(bench.differenceTo(subject.begin), "");
}

void SystemSweep::expectNoTrace(const Bench& bench, const Subject& subject) {
    const Finished verified = bench.vxclone({"verify", kPackage});
    EXPECT_EQ(verified.status, 0) << all(verified);
    EXPECT_EQ(snapshot(bench.television() / "opt"), snapshot(subject.begin / "opt"));
    EXPECT_EQ(databaseRows(bench.television()), databaseRows(subject.begin));
}

void SystemSweep::expectConverges(const Bench& bench, const Subject& subject) const {
    const Finished again = bench.vxclone(subject.command);
    EXPECT_EQ(again.status, 0) << all(again);
    EXPECT_EQ(bench.differenceTo(subject.end), "");
    EXPECT_EQ(bench.namesOfData(), namesOfData_);
}

}  // namespace vxtest
