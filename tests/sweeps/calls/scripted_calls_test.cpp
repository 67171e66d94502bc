// Each platform call of a whole backup and a whole restore fails in turn, is slow, or returns an unexpected
// value. The run must end, report what the rules say, and leave nothing behind.

#include <climits>
#include <thread>

#include "tests/sweeps/calls/given_values.h"
#include "tests/sweeps/calls/swept_run.h"
#include "tests/sweeps/sweep.h"

namespace vxtest {
namespace {

constexpr int kStatuses[] = {INT_MIN, -1, 0, 1, INT_MAX};
constexpr Given kGiven[] = {Given::Empty, Given::Huge, Given::Least, Given::Most, Given::WrongType};

bool isReport(const MadeCall& call) {
    return call.arguments.find("db/hotel/clone_") != std::string::npos;
}

/// The call reports success although the port was not registered or the message was not sent, so the library
/// waits four seconds for a reply.
bool isWaitedFor(const MadeCall& call, int status) {
    return (call.name == "message_port_register_local_port" && status >= 0) ||
           (call.name == "message_port_send_message_with_local_port" && status == 0);
}

class ScriptedCallsTest : public testing::TestWithParam<Direction> {
 protected:
    ScriptedCallsTest()
        : points_(GetParam() == Direction::Backup ? "calls-scripted backup" : "calls-scripted restore") {
        SweptRun unbroken(GetParam());
        unbroken.run("unbroken", [](SweptRun&, const MadeCall&) { return std::nullopt; });
        calls_ = unbroken.calls();
        points_.note("of " + std::to_string(calls_.size()) + " calls");
    }

    /// A sample of the calls for the short form.
    std::vector<MadeCall> everySoMany(std::size_t step) const {
        std::vector<MadeCall> chosen;
        for (std::size_t number = 0; number < calls_.size(); number += isLongForm() ? 1 : step) {
            chosen.push_back(calls_[number]);
        }
        return chosen;
    }

    void tryPoint(const MadeCall& at, const std::string& what, SweptRun::Tamper tamper) {
        points_.tried();
        SweptRun(GetParam())
            .run(what + " at call " + std::to_string(at.number) + ", " + at.name + "(" + at.arguments + ")",
                 std::move(tamper));
    }

    int failureOf(const MadeCall& call) const {
        const CallRule* const rule = findRule(GetParam(), call.name, call.arguments);
        return rule == nullptr ? -1 : rule->failure();
    }

    std::vector<MadeCall> calls_;
    SweepPoints points_;
};

TEST_P(ScriptedCallsTest, callThatFailsOnceIsReportedByItsCategoryAlone) {
    for (const MadeCall& at : everySoMany(1)) {
        tryPoint(at, "fails once", [&](SweptRun&, const MadeCall& call) {
            return call.number == at.number ? std::optional(failureOf(call)) : std::nullopt;
        });
    }
}

TEST_P(ScriptedCallsTest, callsThatFailFromOneOnLeaveTheListAsItWas) {
    for (const MadeCall& at : everySoMany(3)) {
        tryPoint(at, "everything fails", [&](SweptRun&, const MadeCall& call) {
            return call.number >= at.number ? std::optional(failureOf(call)) : std::nullopt;
        });
    }
}

TEST_P(ScriptedCallsTest, servicesThatFailFromOneOnAreReportedOneByOne) {
    for (const MadeCall& at : everySoMany(3)) {
        tryPoint(at, "every service fails", [&](SweptRun&, const MadeCall& call) {
            const bool fails = call.number >= at.number && !isReport(call);
            return fails ? std::optional(failureOf(call)) : std::nullopt;
        });
    }
}

TEST_P(ScriptedCallsTest, callThatIsSlowChangesNothing) {
    for (const MadeCall& at : everySoMany(5)) {
        tryPoint(at, "slow", [&](SweptRun&, const MadeCall& call) -> std::optional<int> {
            if (call.number == at.number) {
                usleep(1000);
            }
            return std::nullopt;
        });
    }
}

TEST_P(ScriptedCallsTest, callThatAnswersAnyStatusIsJudgedByItsOwnRule) {
    for (const int status : kStatuses) {
        for (const MadeCall& at : everySoMany(3)) {
            if (!isLongForm() && isWaitedFor(at, status)) {
                continue;
            }
            tryPoint(at, "answers " + std::to_string(status), [&](SweptRun&, const MadeCall& call) {
                return call.number == at.number ? std::optional(status) : std::nullopt;
            });
        }
    }
}

TEST_P(ScriptedCallsTest, callThatGivesAStrangeValueHarmsNothingElse) {
    for (const Given kind : kGiven) {
        for (const MadeCall& at : everySoMany(3)) {
            if (!canGive(GetParam(), at, kind)) {
                continue;
            }
            tryPoint(at, "gives value " + std::to_string(static_cast<int>(kind)),
                     [&](SweptRun& run, const MadeCall& call) {
                         return call.number == at.number ? give(run, call, kind) : std::nullopt;
                     });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Directions, ScriptedCallsTest,
                         testing::Values(Direction::Backup, Direction::Restore), [](const auto& direction) {
                             return direction.param == Direction::Backup ? "backup" : "restore";
                         });

}  // namespace
}  // namespace vxtest
