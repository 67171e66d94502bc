// Each platform call of a restore fails in turn, in the safety backup, in the load and in the read-back:
// once, and from that call on.

#include <algorithm>
#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/sweeps/calls/fault_point.h"
#include "tests/sweeps/undo/undo_sweep.h"

namespace vxtest {
namespace {

using nlohmann::json;

/// The first call of the load. All earlier calls are queries and the safety backup.
constexpr const char* kFirstOfTheLoad = "factory_clone_usb_to_tv";
constexpr const char* kFirstScreen = "db/first_screen/type";
constexpr std::array kOfApplications = {"aul_", "bundle_", "message_port_"};

std::vector<json> callsOf(const Bench& bench) {
    std::vector<json> calls;
    std::istringstream lines(readFile(bench.television() / "log/calls.jsonl"));
    for (std::string line; std::getline(lines, line);) {
        calls.push_back(json::parse(line));
    }
    return calls;
}

bool isOfApplications(const json& call) {
    const std::string name = call.at("call");
    return std::any_of(kOfApplications.begin(), kOfApplications.end(),
                       [&name](const char* start) { return beginsWith(name, start); }) ||
           call.at("arguments").dump().find(kFirstScreen) != std::string::npos;
}

/// When a fault first took effect.
enum class Acted { Never, BeforeTheLoad, Later };

Acted whenActed(const std::vector<json>& calls) {
    for (const json& call : calls) {
        if (call.contains("fault")) {
            return Acted::BeforeTheLoad;
        }
        if (call.at("call") == kFirstOfTheLoad) {
            break;
        }
    }
    const bool acted =
        std::any_of(calls.begin(), calls.end(), [](const json& call) { return call.contains("fault"); });
    return acted ? Acted::Later : Acted::Never;
}

class FaultedRestoreTest : public UndoSweep, public testing::WithParamInterface<bool> {
 protected:
    FaultedRestoreTest() : UndoSweep(GetParam()) {}

    /// Each call of an undisturbed restore that can fail, once and from then on. With applications, which are
    /// slow, only the calls that need them.
    std::vector<FaultPoint> allPoints() const {
        const Bench bench = newBench();
        EXPECT_EQ(bench.vxclone(restore_).status, 0);
        std::map<std::string, int> count;
        std::vector<FaultPoint> points;
        for (const json& call : callsOf(bench)) {
            const std::string name = call.at("call");
            const int nth = ++count[name];
            const FaultPoint once = faultPoint(name, nth, false);
            if (once.canFail && isOfApplications(call) == GetParam()) {
                points.push_back(once);
                points.push_back(faultPoint(name, nth, true));
            }
        }
        return points;
    }

    /// Result: when the fault took effect.
    Acted tryPoint(const FaultPoint& point) {
        SCOPED_TRACE(point.name());
        const Bench bench = newBench();
        vxtvFault(bench, point.arguments());
        const Finished restore = bench.vxclone(restore_);
        EXPECT_FALSE(restore.timedOut);
        const Acted acted = whenActed(callsOf(bench));
        vxtvFault(bench, {"clear"});
        if (acted != Acted::Never) {
            expectWayBack(bench, restore.output + restore.errors);
        }
        return acted;
    }

    void sweep(const std::vector<FaultPoint>& points, std::size_t most) {
        SweepPoints tried(GetParam() ? "undo, calls with applications" : "undo, calls");
        const std::vector<std::size_t> chosen = spread(points.size(), most);
        std::atomic<int> before = 0;
        std::atomic<int> later = 0;
        inParallel(chosen.size(), [&](std::size_t index) {
            const Acted acted = tryPoint(points[chosen[index] - 1]);
            before += acted == Acted::BeforeTheLoad ? 1 : 0;
            later += acted == Acted::Later ? 1 : 0;
        });
        for (int count = 0; count < before + later; ++count) {
            tried.tried();
        }
        tried.note(std::to_string(before) + " before the load, " + counts_.text());
        EXPECT_GT((before + later) * 2, static_cast<int>(chosen.size()));
    }

 private:
    static void vxtvFault(const Bench& bench, const std::vector<std::string>& arguments) {
        std::vector<std::string> command = {vxtvProgram(), "fault", bench.television()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        const Finished finished = run({std::move(command), {}, {}, {}});
        EXPECT_EQ(finished.status, 0) << finished.errors;
    }
};

TEST_P(FaultedRestoreTest, restoreWithACallThatFailsIsUndone) {
    sweep(allPoints(), mostPoints(GetParam() ? 4 : 12));
}

INSTANTIATE_TEST_SUITE_P(Applications, FaultedRestoreTest, testing::Bool(),
                         [](const auto& with) { return with.param ? "with" : "without"; });

/// Calls whose failure is not reported, so the safety backup lacks something without saying so.
using SafetyBackupTest = FaultedRestoreTest;

TEST_P(SafetyBackupTest, callThatFailsOnceWhileItIsMadeTakesNoWayBack) {
    for (const FaultPoint& point :
         {faultPoint("system_info_get_custom_int", 1, false), faultPoint("vconf_get_int", 2, false),
          faultPoint("aul_launch_app", 1, false), faultPoint("factory_clone_tv_to_usb", 1, false)}) {
        EXPECT_EQ(tryPoint(point), Acted::BeforeTheLoad) << point.name();
    }
}

INSTANTIATE_TEST_SUITE_P(Applications, SafetyBackupTest, testing::Values(true));

}  // namespace
}  // namespace vxtest
