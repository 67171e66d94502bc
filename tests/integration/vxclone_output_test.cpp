// vxclone and vxtv when their output is not read, cannot be written, or has no reader any more.

#include <csignal>
#include <fstream>

#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/exit_status.h"
#include "tests/support/machine/thread_sanitizer.h"

namespace vxtest {
namespace {

using testing::IsEmpty;
using Arguments = std::vector<std::string>;

constexpr const char* kCannotWrite =
    "vxclone: cannot write the output: No space left on device; send it elsewhere; vxclone status tells how "
    "the last run ended\n";

class VxcloneOutputTest : public CloneTest {
 protected:
    void SetUp() override { ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0); }

    /// Runs the command with the standard output that these shell lines prepare for "$@".
    static Finished withShell(const std::string& lines, Arguments command) {
        command.insert(command.begin(), {"/bin/sh", "-c", lines, "sh"});
        Program program;
        program.command = std::move(command);
        return run(program);
    }

    static Finished ontoFullDisk(Arguments command) {
        return withShell("\"$@\" > /dev/full", std::move(command));
    }

    /// The pipe has no reader from the beginning.
    Finished intoClosedPipe(Arguments command) const {
        const std::string pipe = (place / "pipe").string();
        return withShell("rm -f '" + pipe + "'; mkfifo '" + pipe + "'; exec 3<>'" + pipe + "' 4>'" + pipe +
                             "' 3<&-; \"$@\" >&4",
                         std::move(command));
    }

    Arguments inTelevision(const std::string& television, const Arguments& arguments) const {
        Arguments command = {vxtvProgram(), "run", television, "--quiet",
                             "--stick",     stick, "--",       vxcloneProgram()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }

    void expectRestored() const { EXPECT_EQ(get(second, kWelcome), get(first, kWelcome)); }
};

TEST_F(VxcloneOutputTest, outputThatCannotBeWrittenIsSaidWithTheStatusOfAFullDisk) {
    for (const Arguments& arguments : {Arguments{"list", "/media/usb"},
                                       {"list", "/media/usb", "--json"},
                                       {"inspect", "/media/usb/clone"},
                                       {"diff", "/media/usb/clone", "/media/usb/clone"},
                                       {"diff", "/media/usb/clone", "--quick"},
                                       {"verify", "/media/usb/clone"},
                                       {"verify", "/media/usb/clone", "--json"},
                                       {"status"},
                                       {"--version"},
                                       {"--help"},
                                       {"restore", "--help"}}) {
        SCOPED_TRACE(arguments.front());
        const Finished finished = ontoFullDisk(inTelevision(first, arguments));
        EXPECT_EQ(finished.status, ended::kStick);
        EXPECT_EQ(finished.errors, kCannotWrite);
    }
}

TEST_F(VxcloneOutputTest, runWhoseOutputCannotBeWrittenDoesItsWorkAndSaysThat) {
    const Finished restore = ontoFullDisk(inTelevision(second, {"restore", "/media/usb/clone"}));
    EXPECT_EQ(restore.status, ended::kStick);
    EXPECT_EQ(restore.errors, kCannotWrite);
    expectRestored();
    EXPECT_EQ(vxclone(second, {"status"}).status, 0);

    const Finished backup = ontoFullDisk(inTelevision(second, {"backup", "/media/usb/other", "--json"}));
    EXPECT_EQ(backup.status, ended::kStick);
    EXPECT_EQ(backup.errors, kCannotWrite);
    EXPECT_EQ(vxclone(second, {"verify", "/media/usb/other"}).status, 0);
}

TEST_F(VxcloneOutputTest, statusOfAFailureStaysWhenItsOutputCannotBeWritten) {
    const Finished finished = ontoFullDisk(inTelevision(second, {"diff", "/media/usb/clone", "--quick"}));
    EXPECT_EQ(finished.status, ended::kIncomplete);
    EXPECT_EQ(finished.errors, kCannotWrite);
}

TEST_F(VxcloneOutputTest, closedPipeEndsNothingAndIsNotSpokenOf) {
    for (const Arguments& arguments : {Arguments{"list", "/media/usb"},
                                       {"inspect", "/media/usb/clone", "--files"},
                                       {"--help"},
                                       {"restore", "/media/usb/clone"},
                                       {"backup", "/media/usb/other"}}) {
        SCOPED_TRACE(arguments.front());
        const Finished finished = intoClosedPipe(inTelevision(second, arguments));
        EXPECT_EQ(finished.status, 0);
        EXPECT_THAT(finished.errors, IsEmpty());
    }
    expectRestored();
    EXPECT_EQ(vxclone(second, {"verify", "/media/usb/other"}).status, 0);
}

TEST_F(VxcloneOutputTest, vxtvWhoseOutputCannotBeWrittenSaysThat) {
    for (const Arguments& arguments : {Arguments{"info", first},
                                       {"settings", first},
                                       {"get", first, kWelcome},
                                       {"services", first},
                                       {"app", "list", first},
                                       {"--help"},
                                       {"--version"},
                                       {"set", "--help"},
                                       {}}) {
        Arguments command = {vxtvProgram()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        SCOPED_TRACE(command.back());
        const Finished finished = ontoFullDisk(command);
        EXPECT_EQ(finished.status, 2);
        EXPECT_EQ(
            finished.errors,
            "vxtv: cannot write the output: No space left on device; send it elsewhere and try again\n");
    }
}

TEST_F(VxcloneOutputTest, closedPipeIsNotSpokenOfByVxtvEvenWhereItDoesNotEndIt) {
    const std::string pipe = (place / "pipe").string();
    const Finished finished = withShell(
        "trap '' PIPE; mkfifo '" + pipe + "'; exec 3<>'" + pipe + "' 4>'" + pipe + "' 3<&-; \"$@\" >&4",
        {vxtvProgram(), "settings", first});
    EXPECT_EQ(finished.status, 0);
    EXPECT_THAT(finished.errors, IsEmpty());
}

TEST_F(VxcloneOutputTest, fileSizeLimitThatVxtvMeetsIsItsReason) {
    VX_SKIP_IF_PROGRAMS_WRITE_AT_THEIR_START();
    const std::string reason =
        ": File too large; raise the limit of the file size (ulimit -f) and try again\n";
    const std::string made = (place / "made").string();
    // In blocks of 512 bytes: a picture, the creation of the database, and filling it.
    for (const char* const blocks : {"0", "1", "8", "40", "80"}) {
        SCOPED_TRACE(blocks);
        const Finished create = withShell("ulimit -f " + std::string(blocks) + "; \"$@\"",
                                          {vxtvProgram(), "create", made, "--profile", "room-101"});
        EXPECT_EQ(create.status, 2);
        EXPECT_THAT(create.errors, testing::EndsWith(reason));
        EXPECT_FALSE(std::filesystem::exists(made));
    }
    const Finished set =
        withShell("ulimit -f 0; \"$@\"", {vxtvProgram(), "set", second, kWelcome, "Another greeting"});
    EXPECT_EQ(set.status, 2);
    EXPECT_EQ(set.errors, "vxtv: " + second + "/tv.db" + reason);
}

TEST_F(VxcloneOutputTest, damagedDatabaseIsToldInPlainWordsToWhoeverUsesIt) {
    const std::string database = second + "/tv.db";
    constexpr std::streamoff kBehindTheHeader = 100;
    const auto rest = static_cast<std::size_t>(std::filesystem::file_size(database)) - kBehindTheHeader;
    std::fstream(database, std::ios::in | std::ios::out | std::ios::binary).seekp(kBehindTheHeader)
        << std::string(rest, '\xAA');
    const std::string sentence =
        database + ": its content is damaged; remove its folder and create the television again\n";
    EXPECT_EQ(vxtv({"settings", second}, 2).errors, "vxtv: " + sentence);

    Program program;
    program.command = {vxcloneProgram(), "inspect", stick + "/clone"};
    program.environment = {{"VXTV_TELEVISION", second}};
    EXPECT_THAT(
        run(program).errors,
        testing::StartsWith("vx-virtual-tv: no television, so every platform call fails: " + sentence));
}

TEST_F(VxcloneOutputTest, damagedManifestOfAnApplicationIsToldInPlainWords) {
    const std::string manifest = second + "/opt/usr/apps/org.harbour.firstscreen/app.json";
    for (const auto& [content, why] :
         {std::pair("[1", "it is not JSON"), std::pair("{}", "\"id\" is missing")}) {
        std::ofstream(manifest) << content;
        EXPECT_EQ(
            vxtv({"app", "list", second}, 2).errors,
            "vxtv: the manifest " + manifest + " cannot be used: " + why + "; correct it and try again\n");
    }
}

/// A command that only looks, and a signal that stops it.
struct StoppedLook {
    const char* name;
    Arguments arguments;
    int signal;
    const char* cause;
};

class VxcloneStoppedLookTest : public VxcloneOutputTest, public testing::WithParamInterface<StoppedLook> {
 protected:
    /// Waits until the command has asked for the television's identity. The delayed call comes after that.
    bool waitForItsCalls() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < deadline) {
            if (vxtv({"calls", second}).output.find("system_info") != std::string::npos) {
                return true;
            }
        }
        return false;
    }
};

TEST_P(VxcloneStoppedLookTest, endsAtOnceThoughItWaitsAndLeavesNothing) {
    const StoppedLook& look = GetParam();
    vxtv({"fault", second, "add", "ss_read", "--delay", kForEver});
    const FileTree before = snapshot(place / "stick");
    const FileTree television = snapshot(std::filesystem::path(second) / "opt");
    Program program;
    program.command = inTelevision(second, look.arguments);
    RunningProcess running(program);
    ASSERT_TRUE(waitForItsCalls());
    const auto signalled = std::chrono::steady_clock::now();
    running.signal(look.signal);
    const Finished finished = running.wait();
    EXPECT_LT(std::chrono::steady_clock::now() - signalled, std::chrono::seconds(1));
    EXPECT_EQ(finished.status, ended::kInterrupted);
    const std::string sentence = std::string(look.cause) + "; start again when ready";
    if (look.arguments.back() == "--json") {
        EXPECT_THAT(finished.errors, IsEmpty());
        const auto line = nlohmann::json::parse(finished.output);
        EXPECT_EQ(line["event"], "error");
        EXPECT_EQ(line["exit"], ended::kInterrupted);
        EXPECT_EQ(line["message"], sentence);
    } else {
        EXPECT_THAT(finished.output, IsEmpty());
        EXPECT_EQ(finished.errors, "vxclone: " + sentence + "\n");
    }
    EXPECT_EQ(snapshot(place / "stick"), before);
    EXPECT_EQ(snapshot(std::filesystem::path(second) / "opt"), television);
}

INSTANTIATE_TEST_SUITE_P(
    EachLook, VxcloneStoppedLookTest,
    testing::Values(
        StoppedLook{"listByCtrlC", {"list", "/media/usb"}, SIGINT, "stopped by you before the end"},
        StoppedLook{
            "inspectByCtrlC", {"inspect", "/media/usb/clone"}, SIGINT, "stopped by you before the end"},
        StoppedLook{"inspectForAProgram",
                    {"inspect", "/media/usb/clone", "--json"},
                    SIGTERM,
                    "stopped before the end"},
        StoppedLook{"diffByAnotherProcess",
                    {"diff", "/media/usb/clone", "/media/usb/clone"},
                    SIGTERM,
                    "stopped before the end"}),
    [](const testing::TestParamInfo<StoppedLook>& look) { return look.param.name; });

}  // namespace
}  // namespace vxtest
