// Processes are killed during a run: a cooperating application, the television's bus, and vxclone itself.

#include <array>
#include <csignal>
#include <thread>

#include "tests/support/machine/exit_status.h"
#include "tests/sweeps/storage/failing_points_test.h"
#include "tests/sweeps/storage/journal.h"
#include "tests/sweeps/storage/process_tree.h"
#include "tests/sweeps/storage/small_disk.h"

namespace vxtest {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr int kKilled = 137;
constexpr const char* kDelay = "3000";
constexpr const char* kLog = "log/calls.jsonl";

/// The process to kill, and the moment: when the call log has the text, while the call is delayed.
struct Victim {
    const char* name;
    const char* process;
    const char* environment;
    const char* said;
    const char* heldCall;

    friend void PrintTo(const Victim& victim, std::ostream* out) { *out << victim.name; }
};

constexpr const char* kOrvelIs = "VXTV_APP_ID=org.vorta.orvel-app";
constexpr const char* kBegun = "tvtimer_init";
constexpr const char* kLaunched = "\"call\":\"aul_launch_app\"";
constexpr const char* kFilled = "\"call\":\"bundle_add_str\",\"arguments\":{\"key\":\"path\"";
constexpr const char* kCheck = "message_port_check_remote_port";
constexpr const char* kSend = "message_port_send_message_with_local_port";
constexpr const char* kLaunch = "aul_launch_app";
constexpr const char* kRead = "bundle_get_str";
constexpr const char* kApplication = "hotel_app";
constexpr const char* kBus = "dbus-daemon";

class VictimTest : public FailingPointsTest, public testing::WithParamInterface<Victim> {
 protected:
    /// Waits until the call log has the text and the process exists.
    std::optional<pid_t> awaitVictim(const std::string& television, pid_t session) const {
        const std::filesystem::path log = std::filesystem::path(television) / kLog;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < deadline) {
            const bool said =
                std::filesystem::exists(log) && readFile(log).find(GetParam().said) != std::string::npos;
            const auto found = said ? findDescendant(session, GetParam().process, GetParam().environment)
                                    : std::optional<pid_t>();
            if (found) {
                return found;
            }
            std::this_thread::yield();
        }
        return std::nullopt;
    }

    /// Runs vxclone in the television and kills the victim meanwhile.
    Finished runAndKill(const std::string& television, const std::vector<std::string>& arguments) const {
        vxtv({"fault", television, "add", GetParam().heldCall, "--nth", "1", "--delay", kDelay});
        std::filesystem::remove(std::filesystem::path(television) / kLog);
        RunningProcess running(program(television, arguments));
        const auto victim = awaitVictim(television, running.id());
        EXPECT_TRUE(victim) << "nobody to kill";
        if (victim) {
            kill(*victim, SIGKILL);
        }
        const Finished finished = running.wait();
        EXPECT_FALSE(finished.timedOut) << finished.output << finished.errors;
        vxtv({"fault", television, "clear"});
        expectNothingRuns(television);
        return finished;
    }

    static void expectNothingRuns(const std::string& television) {
        EXPECT_FALSE(isAnywhere("VXTV_TELEVISION=" + television + '\0'));
        EXPECT_EQ(snapshot(std::filesystem::path(television) / "run"), FileTree());
    }
};

TEST_P(VictimTest, backupNamesTheApplicationThatDidNotAnswer) {
    SweepPoints points(std::string("processes-die, backup, ") + GetParam().name);
    const Finished backup = runAndKill(first, {"backup", kPackage});
    EXPECT_EQ(backup.status, ended::kIncomplete) << backup.output << backup.errors;
    EXPECT_THAT(backup.output, ContainsRegex("apps +org[^ ]+ +failed"));
    EXPECT_THAT(backup.output, HasSubstr("The backup is incomplete (failed: apps)"));
    EXPECT_TRUE(packageIsGood({}, {ended::kIncomplete}));
    points.tried();
    expectNextBackupIsGood();
}

TEST_P(VictimTest, restoreNamesTheApplicationThatDidNotAnswer) {
    SweepPoints points(std::string("processes-die, restore, ") + GetParam().name);
    const Finished restore =
        runAndKill(second, {"restore", kPackage, "--no-safety", "--no-read-back", "--except", "factory"});
    EXPECT_EQ(restore.status, ended::kIncomplete) << restore.output << restore.errors;
    EXPECT_THAT(restore.output, ContainsRegex("apps +org[^ ]+ +failed"));
    EXPECT_EQ(settingsOf(second), settingsOf(first));
    points.tried();
    expectNextRestoreIsGood();
}

/// The first ones are those of the short sweep.
constexpr std::array kVictims = {
    Victim{"applicationBeforeTheRequest", kApplication, kOrvelIs, kFilled, kSend},
    Victim{"busBeforeTheRequest", kBus, "", kFilled, kSend},
    Victim{"applicationBeforeTheCheck", kApplication, kOrvelIs, kLaunched, kCheck},
    Victim{"applicationWithTheRequest", kApplication, kOrvelIs, kFilled, kRead},
    Victim{"busAtTheBeginning", kBus, "", kBegun, kLaunch},
    Victim{"busBeforeTheCheck", kBus, "", kLaunched, kCheck},
    Victim{"busWithTheRequest", kBus, "", kFilled, kRead},
};
constexpr std::ptrdiff_t kShort = 2;

std::vector<Victim> victims() {
    return {kVictims.begin(), isLongForm() ? kVictims.end() : kVictims.begin() + kShort};
}

INSTANTIATE_TEST_SUITE_P(Of, VictimTest, testing::ValuesIn(victims()),
                         [](const auto& victim) { return victim.param.name; });

class KilledBackupTest : public FailingPointsTest {};

TEST_F(KilledBackupTest, nextStartNamesItAndMakesAGoodPackage) {
    SweepPoints points("processes-die, vxclone");
    const SmallDisk disk(stick, "size=64m");
    backUp(first);
    kept = package();
    ASSERT_EQ(vxclone(first, {"backup", kPackage}, journalling()).status, 0);
    kept = package();
    const std::size_t changes = readJournal(std::filesystem::path(first) / "tmp/journal").size();
    for (std::size_t change = 1; change <= changes; change += isLongForm() ? 1 : changes / 4) {
        SCOPED_TRACE(change);
        Variables variables = journalling();
        variables["VX_JOURNAL_KILL_AT"] = std::to_string(change);
        const Finished killed = vxclone(first, {"backup", kPackage}, variables);
        EXPECT_EQ(killed.status, kKilled) << killed.output << killed.errors;
        EXPECT_TRUE(package() == kept || packageIsGood(complete));
        const Finished status = vxclone(first, {"status"});
        EXPECT_EQ(status.status, ended::kIncomplete);
        EXPECT_THAT(status.output, HasSubstr("UNFINISHED"));
        expectNextBackupIsGood();
        points.tried();
    }
}

}  // namespace
}  // namespace vxtest
