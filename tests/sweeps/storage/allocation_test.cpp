// vxclone gets no memory: once, or from one call on. If this happens in a thread of a library, the program
// dies, and stick and television must survive that as they survive kill -9.

#include "tests/sweeps/storage/failing_points_test.h"

namespace vxtest {
namespace {

constexpr const char* kCall = "malloc";
constexpr int kBrokenOff = 10;

/// `wanted` numbers from 1 to `calls`, spread evenly.
std::vector<unsigned long> spread(unsigned long calls, unsigned long wanted) {
    std::vector<unsigned long> numbers;
    for (unsigned long point = 0; point < wanted; ++point) {
        numbers.push_back(1 + calls * point / wanted);
    }
    return numbers;
}

class AllocationTest : public FailingPointsTest, public testing::WithParamInterface<bool> {};

TEST_P(AllocationTest, backupLeavesTheOldOrTheNewPackage) {
    SweepPoints points(GetParam() ? "allocation, backup, from then on" : "allocation, backup, once");
    const unsigned long calls = callsOf(kCall, first, {"backup", kPackage});
    kept = package();
    for (const unsigned long nth : spread(calls, isLongForm() ? 1000 : 10)) {
        SCOPED_TRACE(nth);
        expectWholeBackup(refusing(kCall, nth, GetParam()), true);
        points.tried();
    }
    points.note(std::to_string(calls) + " allocations, died " + std::to_string(deaths));
    expectNextBackupIsGood();
}

TEST_P(AllocationTest, restoreIsAppliedOrNamedAsNotApplied) {
    SweepPoints points(GetParam() ? "allocation, restore, from then on" : "allocation, restore, once");
    const unsigned long calls = callsOf(kCall, second, {"restore", kPackage});
    points.note(std::to_string(calls) + " allocations");
    for (const unsigned long nth : spread(calls, isLongForm() ? 300 : 4)) {
        SCOPED_TRACE(nth);
        vxtv({"set", second, kWelcome, "before " + std::to_string(nth)});
        expectHonestRestore(refusing(kCall, nth, GetParam()), true);
        points.tried();
    }
    expectNextRestoreIsGood();
}

TEST_P(AllocationTest, supportBundleIsWrittenWholeOrNotAtAll) {
    SweepPoints points(GetParam() ? "allocation, bundle, from then on" : "allocation, bundle, once");
    const std::filesystem::path bundle = std::filesystem::path(stick) / "bundle.tar";
    const std::vector<std::string> command = {"support-bundle", "/media/usb/bundle.tar", "--json"};
    const unsigned long calls = callsOf(kCall, first, command);
    const auto whole = std::filesystem::file_size(bundle);
    points.note(std::to_string(calls) + " allocations");
    for (const unsigned long nth : spread(calls, isLongForm() ? 1000 : 10)) {
        SCOPED_TRACE(nth);
        std::filesystem::remove(bundle);
        const Finished finished = vxclone(first, command, refusing(kCall, nth, GetParam()));
        EXPECT_THAT(finished.errors, testing::Not(testing::HasSubstr("crashed in")));
        const bool written = std::filesystem::exists(bundle);
        EXPECT_TRUE(written || finished.status != 0);
        EXPECT_TRUE(!written || std::filesystem::file_size(bundle) == whole) << finished.errors;
        // A failure that happens once is reported as usual, because then there is memory for the line.
        EXPECT_TRUE(GetParam() || finished.status != kBrokenOff ||
                    finished.output.find(R"("event":"error")") != std::string::npos)
            << finished.output << finished.errors;
        points.tried();
    }
}

INSTANTIATE_TEST_SUITE_P(Fails, AllocationTest, testing::Bool(),
                         [](const auto& onwards) { return onwards.param ? "fromThenOn" : "once"; });

}  // namespace
}  // namespace vxtest
