#include <sys/stat.h>

#include "tests/integration/session_test.h"

namespace vxtest {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using SessionRun = SessionTest;

TEST_F(SessionRun, commandSeesDirectoriesOfTheTelevision) {
    writeFile(television.opt() / "own", "of opt");
    writeFile(television.tmp() / "own", "of tmp");
    writeFile(television.media() / "own", "of media");
    const auto seen = runInside({"cat", "/opt/own", "/tmp/own", "/media/own"});
    EXPECT_EQ(seen.output, "of optof tmpof media") << seen.errors;
}

TEST_F(SessionRun, writesOfTheCommandLandInTheTelevision) {
    const auto written =
        runInside({"sh", "-c", "echo 1 > /opt/written && echo 2 > /tmp/written && echo 3 > /media/written"});
    EXPECT_EQ(written.status, 0) << written.errors;
    EXPECT_EQ(readFile(television.opt() / "written"), "1\n");
    EXPECT_EQ(readFile(television.tmp() / "written"), "2\n");
    EXPECT_EQ(readFile(television.media() / "written"), "3\n");
    EXPECT_FALSE(std::filesystem::exists("/opt/written"));
}

TEST_F(SessionRun, commandIsToldTheAbsoluteFolder) {
    auto program = inTelevision("tv/../tv/", {"printenv", vxtv::kTelevisionVariable});
    program.workingDirectory = place.path();
    EXPECT_EQ(run(program).output, television.root().string() + "\n");
}

TEST_F(SessionRun, ownFolderIsVisibleInside) {
    EXPECT_EQ(runInside({"test", "-e", television.database()}).status, 0);
}

TEST_F(SessionRun, exitStatusIsThatOfTheCommand) {
    EXPECT_EQ(runInside({"true"}).status, 0);
    EXPECT_EQ(runInside({"sh", "-c", "exit 7"}).status, 7);
}

TEST_F(SessionRun, exitStatusOfAKilledCommandNamesTheSignal) {
    EXPECT_EQ(runInside({"sh", "-c", "kill -TERM $$"}).status, 128 + SIGTERM);
}

TEST_F(SessionRun, argumentsArriveAsTheyAre) {
    const auto echoed = runInside({"printf", "<%s>", "[a,b]", "--", "", "--quiet", "run", "a b"});
    EXPECT_EQ(echoed.output, "<[a,b]><--><><--quiet><run><a b>") << echoed.errors;
}

TEST_F(SessionRun, standardInputReachesTheCommand) {
    auto program = inTelevision(television.root(), {"cat"});
    program.input = "from outside";
    EXPECT_EQ(run(program).output, "from outside");
}

TEST_F(SessionRun, unknownCommandIsNamedAndGives127) {
    const auto missing = runInside({"no-such-command"});
    EXPECT_EQ(missing.status, 127);
    EXPECT_THAT(missing.errors, HasSubstr("vxtv: there is no command 'no-such-command'"));
}

TEST_F(SessionRun, fileThatIsNoProgramGives126) {
    writeFile(television.tmp() / "text", "no program");
    const auto refused = runInside({"/tmp/text"});
    EXPECT_EQ(refused.status, 126);
    EXPECT_THAT(refused.errors, HasSubstr("cannot run '/tmp/text'"));
}

TEST_F(SessionRun, missingFolderIsRefused) {
    const auto refused = run(inTelevision(place / "none", {"true"}));
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr((place / "none").string()));
}

TEST_F(SessionRun, folderThatIsNoTelevisionIsRefused) {
    std::filesystem::create_directory(place / "plain");
    const auto refused = run(inTelevision(place / "plain", {"true"}));
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr((place / "plain").string()));
    EXPECT_THAT(snapshot(place / "plain"), IsEmpty());
}

TEST_F(SessionRun, missingCommandIsRefused) {
    const auto refused = run({{vxtvProgram(), "run", television.root()}, {}, {}, {}});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("COMMAND"));
}

TEST_F(SessionRun, argumentsWithoutSeparatorAreRefused) {
    const auto refused = run({{vxtvProgram(), "run", television.root(), "ls", "-l"}, {}, {}, {}});
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("put -- before the command"));
}

TEST_F(SessionRun, isolationIsNamedOnStandardErrorUnlessQuiet) {
    const auto loud = run({{vxtvProgram(), "run", television.root(), "--", "true"}, {}, {}, {}});
    EXPECT_THAT(loud.errors, HasSubstr("isolated"));
    EXPECT_EQ(runInside({"true"}).errors, "");
}

TEST_F(SessionRun, workingDirectoryIsKept) {
    std::filesystem::create_directory(place / "work");
    auto program = inTelevision(television.root(), {"pwd"});
    program.workingDirectory = place / "work";
    EXPECT_EQ(run(program).output, (place / "work").string() + "\n");
}

TEST_F(SessionRun, workingDirectoryThatIsCoveredBecomesTheRoot) {
    auto program = inTelevision(television.root(), {"pwd"});
    program.workingDirectory = "/tmp";
    EXPECT_EQ(run(program).output, "/\n");
}

TEST_F(SessionRun, workingDirectoryDoesNotHideWhatTheTelevisionHas) {
    writeFile("/opt/shared/of", "machine");
    writeFile(television.opt() / "shared/of", "television");
    auto program = inTelevision(television.root(), {"cat", "/opt/shared/of"});
    program.workingDirectory = "/opt/shared";
    EXPECT_EQ(run(program).output, "television");
}

TEST_F(SessionRun, nothingIsLeftBehind) {
    const auto before = surroundings(television);
    ASSERT_EQ(runInside({"true"}, {"--stick", place.path()}).status, 0);
    EXPECT_EQ(surroundings(television), before);
}

}  // namespace
}  // namespace vxtest
