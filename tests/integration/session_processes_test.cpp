#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "tests/integration/session_test.h"

namespace vxtest {
namespace {

/// Each test runs in the namespaces that this machine allows, and on the real paths. Standard output ends
/// only when every process has ended, because all of them have it open.
class SessionProcesses : public SessionTest, public testing::WithParamInterface<const char*> {
 protected:
    Program inside(const std::string& script) const {
        auto program = inTelevision(television.root(), {"sh", "-c", script}, {"--isolation", GetParam()});
        program.timeLimit = std::chrono::seconds(20);
        return program;
    }
};

TEST_P(SessionProcesses, backgroundProcessEndsWithTheCommand) {
    const auto finished = run(inside("sleep 1000 & echo started"));
    EXPECT_FALSE(finished.timedOut);
    EXPECT_EQ(finished.status, 0) << finished.errors;
    EXPECT_EQ(finished.output, "started\n");
}

TEST_P(SessionProcesses, orphanInASessionOfItsOwnEndsWithTheCommand) {
    const auto finished = run(inside("(setsid sh -c 'sleep 1000; :' &) ; trap '' HUP TERM; exit 3"));
    EXPECT_FALSE(finished.timedOut);
    EXPECT_EQ(finished.status, 3) << finished.errors;
}

TEST_P(SessionProcesses, killingVxtvEndsAllOfThem) {
    RunningProcess session(inside("setsid sleep 1000 & echo up; sleep 1000"));
    ASSERT_TRUE(session.waitForOutput("up"));
    session.signal(SIGKILL);
    const auto finished = session.wait();
    EXPECT_FALSE(finished.timedOut);
    EXPECT_EQ(finished.status, 128 + SIGKILL);
    // The next session removes what the killed one left.
    const auto next = run(inside("true"));
    EXPECT_EQ(next.status, 0) << next.errors;
}

TEST_P(SessionProcesses, signalsReachTheCommand) {
    for (const auto& [number, name] : {std::pair{SIGINT, "INT"}, {SIGTERM, "TERM"}, {SIGHUP, "HUP"}}) {
        RunningProcess session(inside("trap 'echo got; exit 9' " + std::string(name) +
                                      "; echo up; while :; do sleep 1000 & wait; done"));
        ASSERT_TRUE(session.waitForOutput("up"));
        session.signal(number);
        const auto finished = session.wait();
        EXPECT_EQ(finished.output, "up\ngot\n") << name;
        EXPECT_EQ(finished.status, 9) << name;
    }
}

/// Whether a child of the process has ended without being collected.
bool hasZombie(pid_t process) {
    const std::string facts = "/proc/" + std::to_string(process);
    std::ifstream children(facts + "/task/" + std::to_string(process) + "/children");
    for (std::string child; children >> child;) {
        std::string text;
        std::getline(std::ifstream("/proc/" + child + "/stat"), text);
        if (text.find(") Z ") != std::string::npos) {
            return true;
        }
    }
    return false;
}

TEST_P(SessionProcesses, signalThatComesWithTheEndOfTheCommandTakesNothingFromItsStatus) {
    const auto pipe = television.opt() / "go";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    RunningProcess session(inside("echo up; read go </opt/go; exit 3"));
    ASSERT_TRUE(session.waitForOutput("up"));
    session.signal(SIGSTOP);
    std::ofstream(pipe) << "go\n";
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!hasZombie(session.id()) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    session.signal(SIGINT);
    session.signal(SIGCONT);
    const auto finished = session.wait();
    EXPECT_EQ(finished.status, 3) << finished.errors;
    EXPECT_EQ(snapshot(television.run()), FileTree());
}

TEST_P(SessionProcesses, orphansAreReaped) {
    // A zombie stays in /proc until it is collected.
    const auto finished =
        run(inside("orphan=$(sh -c 'true & echo $!; exec true'); while test -e /proc/$orphan; do :; done"));
    EXPECT_FALSE(finished.timedOut);
    EXPECT_EQ(finished.status, 0) << finished.errors;
}

INSTANTIATE_TEST_SUITE_P(Isolation, SessionProcesses, testing::Values("auto", "user", "real"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace vxtest
