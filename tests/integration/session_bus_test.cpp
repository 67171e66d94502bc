#include <fcntl.h>
#include <sys/file.h>

#include <csignal>
#include <memory>

#include "tests/integration/session_test.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/television/announcement.h"

namespace vxtest {
namespace {

using testing::HasSubstr;

const std::vector<std::string> kStay = {"sh", "-c", "echo up; sleep 1000 & wait"};

/// Waits until the bus and its keeper have ended. They hold this lock during their lives.
void waitForEndOfBus(const vxtv::Folder& television) {
    const vxtv::Descriptor life(open(television.busAddress().c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(life);
    ASSERT_EQ(flock(life.get(), LOCK_SH), 0);
}

/// Each test runs in the namespaces that this machine allows, in a user namespace, and on the real paths.
class SessionBus : public SessionTest, public testing::WithParamInterface<const char*> {
 protected:
    const std::vector<std::string> options{"--isolation", GetParam()};
};

TEST_P(SessionBus, isThereWhileTheSessionRunsAndGoneAfterIt) {
    const auto inside = runInside({"cat", television.busAddress()}, options);
    EXPECT_EQ(inside.status, 0) << inside.errors;
    EXPECT_THAT(inside.output, HasSubstr("unix:abstract="));
    EXPECT_TRUE(std::filesystem::is_empty(television.run()));
}

TEST_P(SessionBus, infoShowsItsAddressFromOutside) {
    RunningProcess session(inTelevision(television.root(), kStay, options));
    ASSERT_TRUE(session.waitForOutput("up"));
    const auto address = vxtv::busAddress(television);
    ASSERT_TRUE(address);
    const auto shown = run({{vxtvProgram(), "info", television.root()}, {}, {}, {}});
    EXPECT_THAT(shown.output, HasSubstr(*address));
    session.signal(SIGTERM);
    session.wait();
    EXPECT_EQ(vxtv::busAddress(television), std::nullopt);
}

TEST_P(SessionBus, killedSessionLeavesNone) {
    RunningProcess session(inTelevision(television.root(), kStay, options));
    ASSERT_TRUE(session.waitForOutput("up"));
    ASSERT_TRUE(vxtv::busAddress(television));
    session.signal(SIGKILL);
    session.wait();
    waitForEndOfBus(television);
    EXPECT_EQ(vxtv::busAddress(television), std::nullopt);
    const auto next = runInside({"cat", television.busAddress()}, options);
    EXPECT_THAT(next.output, HasSubstr("unix:abstract=")) << next.errors;
    EXPECT_TRUE(std::filesystem::is_empty(television.run()));
}

INSTANTIATE_TEST_SUITE_P(Isolation, SessionBus, testing::Values("auto", "user", "real"),
                         [](const auto& tested) { return std::string(tested.param); });

using SharedSessionBus = SessionTest;

TEST_F(SharedSessionBus, livesAsLongAsAnyOfTwoSessions) {
    RunningProcess first(inTelevision(television.root(), kStay));
    ASSERT_TRUE(first.waitForOutput("up"));
    const auto address = vxtv::busAddress(television);
    ASSERT_TRUE(address);
    RunningProcess second(inTelevision(television.root(), kStay));
    ASSERT_TRUE(second.waitForOutput("up"));
    first.signal(SIGTERM);
    first.wait();
    EXPECT_EQ(vxtv::busAddress(television), address);
    second.signal(SIGTERM);
    second.wait();
    EXPECT_EQ(vxtv::busAddress(television), std::nullopt);
}

TEST_F(SharedSessionBus, isOneForSessionsThatBeginTogether) {
    std::vector<std::unique_ptr<RunningProcess>> sessions;
    for (int session = 0; session < 4; ++session) {
        sessions.push_back(std::make_unique<RunningProcess>(inTelevision(
            television.root(), {"sh", "-c", "cat $VXTV_TELEVISION/run/bus; echo up; sleep 1000"})));
    }
    for (const auto& session : sessions) ASSERT_TRUE(session->waitForOutput("up"));
    std::vector<std::string> outputs;
    for (const auto& session : sessions) {
        session->signal(SIGTERM);
        outputs.push_back(session->wait().output);
    }
    EXPECT_THAT(outputs, testing::Each(outputs.front()));
    EXPECT_THAT(outputs.front(), HasSubstr("unix:abstract="));
    EXPECT_TRUE(std::filesystem::is_empty(television.run()));
}

TEST_F(SharedSessionBus, withoutADaemonTheCommandRunsAndASentenceSaysWhatIsMissing) {
    auto program = inTelevision(television.root(), {"/bin/echo", "ran"});
    program.environment["PATH"] = place.path();
    const auto finished = run(program);
    EXPECT_EQ(finished.status, 0);
    EXPECT_EQ(finished.output, "ran\n");
    EXPECT_THAT(finished.errors, HasSubstr("dbus-daemon is not installed"));
    EXPECT_TRUE(std::filesystem::is_empty(television.run()));
}

}  // namespace
}  // namespace vxtest
