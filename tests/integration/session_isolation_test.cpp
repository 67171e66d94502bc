#include <unistd.h>

#include "tests/integration/session_test.h"

namespace vxtest {
namespace {

using testing::HasSubstr;
using SessionIsolation = SessionTest;

TEST_F(SessionIsolation, userNamespaceKeepsUserAndGroup) {
    const auto told = runInside({"sh", "-c", "id -u; id -g"}, {"--isolation", "user"});
    EXPECT_EQ(told.output, std::to_string(getuid()) + "\n" + std::to_string(getgid()) + "\n") << told.errors;
}

TEST_F(SessionIsolation, userNamespaceShowsTheTelevision) {
    writeFile(television.opt() / "own", "of opt");
    EXPECT_EQ(runInside({"cat", "/opt/own"}, {"--isolation", "user"}).output, "of opt");
}

TEST_F(SessionIsolation, wayThatWasTakenIsNamed) {
    const std::vector<std::string> user = {vxtvProgram(), "run", television.root(), "--isolation", "user",
                                           "--",          "true"};
    EXPECT_EQ(run({user, {}, {}, {}}).errors, "vxtv: isolated by a user namespace\n");
}

TEST_F(SessionIsolation, unknownWayIsRefused) {
    const auto refused = runInside({"true"}, {"--isolation", "magic"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("'magic'"));
}

TEST_F(SessionIsolation, machineSeesNoMountOfTheSession) {
    const auto before = readFile("/proc/self/mountinfo");
    RunningProcess session(inTelevision(television.root(), {"sh", "-c", "echo up; sleep 1000"}));
    ASSERT_TRUE(session.waitForOutput("up"));
    EXPECT_EQ(readFile("/proc/self/mountinfo"), before);
}

TEST_F(SessionIsolation, processesOfTheMachineAreNotSeen) {
    EXPECT_EQ(runInside({"test", "-e", "/proc/" + std::to_string(getpid())}).status, 1);
}

}  // namespace
}  // namespace vxtest
