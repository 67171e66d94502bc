#include <csignal>

#include "tests/integration/session_test.h"

namespace vxtest {
namespace {

/// Writes into /tmp, says so, and stays until it is told to end.
const std::vector<std::string> kStay = {"sh", "-c", "echo here > /tmp/mark; echo up; sleep 1000 & wait"};

using SeveralSessions = SessionTest;

TEST_F(SeveralSessions, twoTelevisionsDoNotSeeEachOther) {
    createTelevision(place / "second");
    RunningProcess first(inTelevision(television.root(), kStay));
    ASSERT_TRUE(first.waitForOutput("up"));
    EXPECT_NE(run(inTelevision(place / "second", {"test", "-e", "/tmp/mark"})).status, 0);
    EXPECT_FALSE(std::filesystem::exists("/tmp/mark"));
}

TEST_F(SeveralSessions, twoSessionsOfOneTelevisionShareIt) {
    RunningProcess first(inTelevision(television.root(), kStay));
    ASSERT_TRUE(first.waitForOutput("up"));
    EXPECT_EQ(runInside({"cat", "/tmp/mark"}).output, "here\n");
}

TEST_F(SeveralSessions, endOfOneLeavesTheOtherItsStick) {
    writeFile(place / "stick/file", "content");
    const std::vector<std::string> readAtTheEnd = {
        "sh", "-c", "trap 'cat /media/usb/file; exit' TERM; echo up; sleep 1000 & wait"};
    RunningProcess first(inTelevision(television.root(), readAtTheEnd, {"--stick", place / "stick"}));
    ASSERT_TRUE(first.waitForOutput("up"));
    ASSERT_EQ(runInside({"true"}, {"--stick", place / "stick"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(television.media() / "usb"));
    first.signal(SIGTERM);
    EXPECT_EQ(first.wait().output, "up\ncontent");
    EXPECT_FALSE(std::filesystem::exists(television.media() / "usb"));
}

TEST_F(SeveralSessions, lastOneRemovesWhatTheFirstMade) {
    const auto before = surroundings(television);
    RunningProcess first(inTelevision(television.root(), {"sh", "-c", "echo up; sleep 1000 & wait"},
                                      {"--stick", place.path().string() + ":first"}));
    ASSERT_TRUE(first.waitForOutput("up"));
    RunningProcess last(inTelevision(television.root(), {"sh", "-c", "echo up; sleep 1000 & wait"}));
    ASSERT_TRUE(last.waitForOutput("up"));
    first.signal(SIGTERM);
    first.wait();
    EXPECT_TRUE(std::filesystem::exists(television.media() / "first"));
    last.signal(SIGTERM);
    last.wait();
    EXPECT_EQ(surroundings(television), before);
}

TEST_F(SeveralSessions, nextOneCleansUpAfterAKilledOne) {
    const auto before = surroundings(television);
    RunningProcess killed(inTelevision(television.root(), {"sh", "-c", "echo up; sleep 1000"},
                                       {"--stick", place.path().string() + ":lost"}));
    ASSERT_TRUE(killed.waitForOutput("up"));
    killed.signal(SIGKILL);
    killed.wait();
    ASSERT_TRUE(std::filesystem::exists(television.media() / "lost"));
    ASSERT_EQ(runInside({"test", "!", "-e", "/media/lost"}).status, 0);
    EXPECT_EQ(surroundings(television), before);
}

TEST_F(SeveralSessions, whatTheTelevisionPutIntoAMountPointStays) {
    RunningProcess killed(inTelevision(television.root(), {"sh", "-c", "echo up; sleep 1000"},
                                       {"--stick", place.path().string() + ":lost"}));
    ASSERT_TRUE(killed.waitForOutput("up"));
    killed.signal(SIGKILL);
    killed.wait();
    writeFile(television.media() / "lost/file", "worth keeping");
    ASSERT_EQ(runInside({"true"}).status, 0);
    EXPECT_EQ(readFile(television.media() / "lost/file"), "worth keeping");
}

}  // namespace
}  // namespace vxtest
