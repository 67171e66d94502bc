// vxclone at a terminal as a person sees it, and the effect of Ctrl-C.

#include "tests/support/machine/terminal.h"

#include <algorithm>
#include <thread>

#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/exit_status.h"

namespace vxtest {
namespace {

using testing::Contains;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Not;

constexpr const char* kBackAtTheStart = "\r\x1b[K";
constexpr const char* kCloneFolder = "opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone";

class TerminalTest : public CloneTest {
 protected:
    Program inTelevision(const std::string& television, std::vector<std::string> arguments) const {
        Program program;
        program.command = {vxtvProgram().string(),   "run", television, "--quiet", "--stick", stick, "--",
                           vxcloneProgram().string()};
        program.command.insert(program.command.end(), arguments.begin(), arguments.end());
        program.environment = {{"TERM", "xterm"}};
        return program;
    }

    /// All states of the live line.
    static std::vector<std::string> liveLines(const std::string& text) {
        std::vector<std::string> lines;
        const std::size_t size = std::string(kBackAtTheStart).size();
        std::size_t begin = 0;
        for (std::size_t end = text.find(kBackAtTheStart); end != std::string::npos;
             end = text.find(kBackAtTheStart, begin)) {
            const std::string line = text.substr(begin, end - begin);
            lines.push_back(line.substr(line.rfind('\n') == std::string::npos ? 0 : line.rfind('\n') + 1));
            begin = end + size;
        }
        return lines;
    }

    bool cloneFolderIsEmpty(const std::string& television) const {
        const auto folder = std::filesystem::path(television) / kCloneFolder;
        return !std::filesystem::exists(folder) || std::filesystem::is_empty(folder);
    }
};

TEST_F(TerminalTest, backupShowsALiveLineAndThenTheTable) {
    Terminal terminal(inTelevision(first, {"backup", "/media/usb/clone"}), 100);
    EXPECT_EQ(terminal.wait(), 0) << terminal.text();
    EXPECT_THAT(liveLines(terminal.text()), Contains(HasSubstr("backup  ")));
    EXPECT_THAT(terminal.text(), HasSubstr("\x1b["));
    EXPECT_THAT(terminal.text(), HasSubstr("Safe to remove the stick.\r\n"));
}

TEST_F(TerminalTest, restoreShowsPercentPhaseEntryAndTime) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    Program program = inTelevision(second, {"restore", "/media/usb/clone"});
    program.environment["NO_COLOR"] = "1";
    Terminal terminal(program, 100);
    EXPECT_EQ(terminal.wait(), 0) << terminal.text();
    const auto lines = liveLines(terminal.text());
    for (const char* const phase :
         {"7 %  copying and checking  0:", "15 %  safety backup  0 of 10  0:",
          "45 %  loading  0 of 15  factory  0:", "75 %  reading back  0 of 10  0:", "95 %  closing  0:"}) {
        EXPECT_THAT(lines, Contains(HasSubstr(phase)));
    }
    EXPECT_THAT(lines.back(), HasSubstr("[##########]  100 %  closing  0:"));
}

TEST_F(TerminalTest, clockGoesOnWhileThePackageIsChecked) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    vxtv({"fault", second, "add", "ss_read", "--nth", "1", "--delay", "2500"});
    Program program = inTelevision(second, {"restore", "/media/usb/clone", "--no-safety"});
    program.environment["NO_COLOR"] = "1";
    Terminal terminal(program, 100);
    EXPECT_EQ(terminal.wait(), 0) << terminal.text();
    for (const char* const shown : {"  copying and checking  0:01", "  copying and checking  0:02"}) {
        EXPECT_THAT(liveLines(terminal.text()), Contains(HasSubstr(shown)));
    }
}

TEST_F(TerminalTest, diffShowsALiveLineAndThenWhatDiffers) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    Terminal terminal(inTelevision(second, {"diff", "/media/usb/clone"}), 100);
    EXPECT_EQ(terminal.wait(), ended::kIncomplete) << terminal.text();
    EXPECT_THAT(liveLines(terminal.text()), Contains(HasSubstr("diff  ")));
    EXPECT_THAT(liveLines(terminal.text()), Contains(HasSubstr("  saving  ")));
    EXPECT_THAT(terminal.text(), HasSubstr("\x1b[Kthis television -> /media/usb/clone\r\napps "));
}

TEST_F(TerminalTest, ctrlCDuringAComparisonEndsItAfterTheLibrarysRunAndLeavesNothing) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    vxtv({"fault", second, "add", "tvtimer_init", "--delay", "300"});
    Terminal terminal(inTelevision(second, {"diff", "/media/usb/clone"}), 100);
    ASSERT_TRUE(terminal.waitFor("saving  0 of")) << terminal.text();
    terminal.type(kCtrlC);
    EXPECT_TRUE(terminal.waitFor("cannot be interrupted now")) << terminal.text();
    EXPECT_EQ(terminal.wait(), ended::kInterrupted) << terminal.text();
    EXPECT_TRUE(cloneFolderIsEmpty(second));
}

TEST_F(TerminalTest, noColorMeansNoColour) {
    Program program = inTelevision(first, {"backup", "/media/usb/clone"});
    program.environment["NO_COLOR"] = "1";
    Terminal terminal(program, 100);
    EXPECT_EQ(terminal.wait(), 0) << terminal.text();
    EXPECT_THAT(terminal.text(), HasSubstr(kBackAtTheStart));
    EXPECT_THAT(terminal.text(), Not(testing::ContainsRegex("\x1b\\[[0-9]+m")));
}

TEST_F(TerminalTest, liveLineIsNeverWiderThanANarrowTerminal) {
    constexpr unsigned short kColumns = 24;
    Program program = inTelevision(first, {"backup", "/media/usb/clone"});
    program.environment["NO_COLOR"] = "1";
    Terminal terminal(program, kColumns);
    EXPECT_EQ(terminal.wait(), 0) << terminal.text();
    const auto lines = liveLines(terminal.text());
    EXPECT_THAT(lines, Not(IsEmpty()));
    for (const std::string& line : lines) {
        EXPECT_LT(line.size(), kColumns) << line;
    }
}

TEST_F(TerminalTest, outputThatIsNoTerminalIsALineForEachStep) {
    const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
    EXPECT_EQ(backup.status, 0);
    EXPECT_THAT(backup.output, Not(HasSubstr("\x1b")));
    EXPECT_THAT(backup.output, Not(HasSubstr("\r")));
    EXPECT_THAT(backup.output, testing::StartsWith("backup 0 %, saving, 0 of 10, 0:0"));
    // The order of the categories depends on the applications, and the library's list may lose one of two
    // outcomes.
    EXPECT_THAT(backup.output, ContainsRegex("\nbackup [0-9]+ %, saving, (9|10) of 10, [a-z-]+, 0:0"));
}

TEST_F(TerminalTest, ctrlCDuringTheRunLetsItEndSaysSoAndLeavesTheStickAsItWas) {
    vxtv({"fault", first, "add", "tvtimer_init", "--delay", "300"});
    Terminal terminal(inTelevision(first, {"backup", "/media/usb/clone"}), 100);
    ASSERT_TRUE(terminal.waitFor("saving  0 of")) << terminal.text();
    terminal.type(kCtrlC);
    EXPECT_TRUE(terminal.waitFor("cannot be interrupted now")) << terminal.text();
    EXPECT_EQ(terminal.wait(), ended::kInterrupted) << terminal.text();
    EXPECT_THAT(terminal.text(),
                HasSubstr("vxclone: stopped by you before the end: nothing was changed; start "
                          "again when ready\r\n"));
    EXPECT_THAT(snapshot(stick), IsEmpty());
}

TEST_F(TerminalTest, ctrlCDuringTheLoadLetsItEndAndSaysThatOnlyTheReadBackIsMissing) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    vxtv({"fault", second, "add", "tvtimer_set_db", "--delay", "300"});
    Terminal terminal(inTelevision(second, {"restore", "/media/usb/clone"}), 200);
    ASSERT_TRUE(terminal.waitFor("loading  0 of")) << terminal.text();
    terminal.type(kCtrlC);
    EXPECT_TRUE(terminal.waitFor("cannot be interrupted now")) << terminal.text();
    EXPECT_EQ(terminal.wait(), ended::kInterrupted) << terminal.text();
    EXPECT_THAT(liveLines(terminal.text()), Not(Contains(HasSubstr("reading back"))));
    EXPECT_THAT(
        asIfAllWasReported(terminal.text()),
        HasSubstr("Stopped by you before the end: everything was loaded, only the read-back is missing; "
                  "restore again to have it compared, or go back with vxclone undo.\r\n"));
    EXPECT_EQ(get(second, kWelcome), get(first, kWelcome));
}

TEST_F(TerminalTest, ctrlCBeforeTheRunStopsAtOnceAndLeavesNothing) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const std::string before = get(second, kWelcome);
    vxtv({"fault", second, "add", "ss_read", "--delay", "300"});
    Terminal terminal(inTelevision(second, {"restore", "/media/usb/clone"}), 100);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (cloneFolderIsEmpty(second) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    terminal.type(kCtrlC);
    EXPECT_EQ(terminal.wait(), ended::kInterrupted) << terminal.text();
    EXPECT_THAT(terminal.text(),
                HasSubstr("vxclone: stopped by you before the end: nothing was changed; start "
                          "again when ready\r\n"));
    EXPECT_TRUE(cloneFolderIsEmpty(second));
    EXPECT_EQ(get(second, kWelcome), before);
}

TEST_F(TerminalTest, helpTeachesWithExamplesAndExitStatuses) {
    Terminal terminal(inTelevision(first, {"--help"}), 100);
    EXPECT_EQ(terminal.wait(), 0);
    EXPECT_THAT(terminal.text(), HasSubstr("vxclone backup /media/usb/clone"));
    EXPECT_THAT(terminal.text(), HasSubstr("another run is going on"));
}

TEST_F(TerminalTest, supportBundleHoldsNoPin) {
    vxtv({"set", first, "db/vxhotel/securitymode/changepin", "8642"});
    vxtv({"set", first, "db/hotel/clone_result", "8642\n"});
    ASSERT_EQ(vxclone(first, {"support-bundle", "/media/usb/support.tar"}).status, 0);
    const std::string bundle = readFile(place / "stick/support.tar");
    EXPECT_THAT(bundle, HasSubstr("vxclone-support/versions.txt"));
    EXPECT_THAT(bundle, Not(HasSubstr("8642")));
    EXPECT_EQ(vxclone(first, {"support-bundle", "/media/usb/support.tar"}).status, 2);
    EXPECT_EQ(readFile(place / "stick/support.tar"), bundle);
}

TEST_F(TerminalTest, statusAfterABackupTellsWhatWasReported) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const Finished status = vxclone(first, {"status"});
    EXPECT_EQ(status.status, 0) << status.errors;
    EXPECT_THAT(status.output, HasSubstr("picture and sound"));
    EXPECT_THAT(vxclone(first, {"status", "--follow", "--json"}).output, HasSubstr("\"event\":\"summary\""));
}

TEST_F(TerminalTest, followShowsTheRunOfAnotherUntilItsEnd) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    vxtv({"fault", second, "add", "tvtimer_set_db", "--delay", "2000"});
    RunningProcess restore(inTelevision(second, {"restore", "/media/usb/clone"}));
    ASSERT_TRUE(restore.waitForOutput("loading, 0 of"));
    Program follow = inTelevision(second, {"status", "--follow"});
    follow.environment["NO_COLOR"] = "1";
    Terminal terminal(follow, 100);
    EXPECT_EQ(terminal.wait(), 0) << terminal.text();
    EXPECT_THAT(liveLines(terminal.text()),
                Contains(testing::ContainsRegex("restore .* [4-7][0-9] %.* loading ")));
    EXPECT_THAT(unwrapped(terminal.text()), testing::AllOf(HasSubstr(" result "), HasSubstr(": done. ")));
    EXPECT_EQ(restore.wait().status, 0);
}

}  // namespace
}  // namespace vxtest
