// vxclone in the hands of a person: sticks that are full, write-protected or pulled out, a run that died, two
// runs at the same time, and an invalid command line. The complete output is compared.

#include <sys/mount.h>

#include <csignal>
#include <regex>
#include <sstream>

#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/exit_status.h"

namespace vxtest {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

constexpr const char* kTime = "20[0-9][0-9]-[0-9][0-9]-[0-9][0-9]T[0-9][0-9]:[0-9][0-9]:[0-9][0-9]Z";

class VxclonePeopleTest : public CloneTest {
 protected:
    /// Makes the stick a file system of its own, with these options of tmpfs.
    void mountStick(const std::string& options) {
        ASSERT_EQ(mount("tmpfs", stick.c_str(), "tmpfs", 0, options.c_str()), 0);
        mounted_ = true;
    }

    ~VxclonePeopleTest() override {
        if (mounted_) {
            umount2(stick.c_str(), MNT_DETACH);
        }
    }

    /// A program in the television, with the stick.
    Program inside(const std::string& television, std::vector<std::string> command) const {
        return inTelevision(television, std::move(command), {"--stick", stick});
    }
    Program restoring() const { return inside(second, {vxcloneProgram(), "restore", "/media/usb/clone"}); }

    /// Runs the command in the television, with a delayed call, and kills it when it has printed the text.
    /// Afterwards the call is not delayed any more.
    void killAt(const std::string& television, const std::vector<std::string>& command,
                const std::string& text, const std::string& call) const {
        vxtv({"fault", television, "add", call, "--delay", kForEver});
        RunningProcess dying(inside(television, command));
        ASSERT_TRUE(dying.waitForOutput(text));
        dying.signal(SIGKILL);
        dying.wait();
        vxtv({"fault", television, "clear"});
    }

 private:
    bool mounted_ = false;
};

TEST_F(VxclonePeopleTest, backupOntoAFullStickNamesBothSizesAndLeavesTheOldPackage) {
    mountStick("size=256k");
    const Finished made = vxclone(first, {"backup", "/media/usb/clone"});
    ASSERT_EQ(made.status, 0);
    writeFile(place / "stick/film", std::string(100'000, 'f'));
    const FileTree before = snapshot(stick);
    const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
    EXPECT_EQ(backup.status, ended::kStick);
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(
        backup.errors, parts,
        std::regex(R"(vxclone: the package \(([0-9]+ files, [0-9.]+ kB)\) needs [0-9.]+ kB, the stick has )"
                   R"([0-9.]+ kB free; free some space or take another stick\n)")))
        << backup.errors;
    EXPECT_THAT(unwrapped(made.output), HasSubstr(parts.str(1)));
    EXPECT_THAT(unwrapped(vxclone(first, {"inspect", "/media/usb/clone"}).output), HasSubstr(parts.str(1)));
    EXPECT_THAT(backup.output, Not(HasSubstr("Safe to remove")));
    EXPECT_EQ(snapshot(stick), before);
}

TEST_F(VxclonePeopleTest, writeProtectedStickIsRefusedForABackupAndServesARestore) {
    mountStick("size=1m");
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    ASSERT_EQ(mount(nullptr, stick.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
    EXPECT_EQ(backup.status, ended::kStick);
    EXPECT_EQ(backup.errors,
              "vxclone: cannot write /media/usb/clone: Read-only file system; move its write-protect switch "
              "or take another stick\n");
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(restore.status, 0) << restore.errors;
    EXPECT_THAT(restore.output, testing::EndsWith("Restored from /media/usb/clone.\n"
                                                  "To go back: vxclone undo.\n"));
}

TEST_F(VxclonePeopleTest, stickThatIsNotPluggedInIsAskedFor) {
    for (const std::string verb : {"backup", "restore", "verify", "inspect"}) {
        const Finished finished = run(inTelevision(first, {vxcloneProgram(), verb, "/media/usb/clone"}));
        EXPECT_EQ(finished.status, ended::kStick) << verb;
        EXPECT_EQ(finished.errors,
                  "vxclone: there is no folder /media/usb; is the stick plugged in? Check the path\n");
    }
}

/// vxclone in a television without a stick, unless the options say otherwise.
class DiskOfTheTelevisionTest : public VxclonePeopleTest {
 protected:
    Finished here(std::vector<std::string> arguments, const std::vector<std::string>& options = {}) const {
        arguments.insert(arguments.begin(), vxcloneProgram());
        return run(inTelevision(first, std::move(arguments), options));
    }

    static constexpr const char* kHere = " is on this television itself, ";
    static constexpr const char* kWayOn = ", or write here with --on-this-disk\n";
};

TEST_F(DiskOfTheTelevisionTest, writingWithoutAStickIsRefusedAndWritesNothing) {
    // The factory state: the clone folder does not exist yet.
    std::filesystem::remove_all(place / "first/opt/usr/apps/org.vorta.vxhotel-cloning");
    for (const auto& [verb, name] : {std::pair("backup", "/media/clone"),
                                     {"support-bundle", "/media/bundle.tar"},
                                     {"backup", "/tmp/clone"},
                                     {"backup", "/opt/usr/clone"}}) {
        const Finished finished = here({verb, name});
        EXPECT_EQ(finished.status, ended::kStick) << name;
        EXPECT_EQ(finished.errors, std::string("vxclone: ") + name + kHere +
                                       "and no stick is plugged in; put a stick in" + kWayOn);
        EXPECT_THAT(finished.output, Not(HasSubstr("Safe to remove")));
    }
    EXPECT_TRUE(std::filesystem::is_empty(place / "first/media"));
    const Finished asked = here({"backup", "/media/clone", "--json"});
    EXPECT_EQ(nlohmann::json::parse(asked.output).at("code"), "stick-missing");
}

TEST_F(DiskOfTheTelevisionTest, writingBesideAStickIsRefusedAndTheSticksAreNamed) {
    const Finished beside = vxclone(first, {"backup", "/media/clone"});
    EXPECT_EQ(beside.status, ended::kStick);
    EXPECT_EQ(beside.errors, std::string("vxclone: /media/clone") + kHere +
                                 "not on a stick (plugged in: /media/usb); name a place on the stick" +
                                 kWayOn);
    std::filesystem::create_directory(place / "other");
    const Finished bundle = here({"support-bundle", "/media/bundle.tar"},
                                 {"--stick", stick, "--stick", (place / "other").string() + ":my red one"});
    EXPECT_THAT(bundle.errors, HasSubstr("(plugged in: /media/my red one, /media/usb)"));
    EXPECT_TRUE(std::filesystem::is_empty(stick));
}

TEST_F(DiskOfTheTelevisionTest, writingThatIsWantedThereSaysNothingOfAStick) {
    const Finished backup = here({"backup", "/media/clone", "--on-this-disk"});
    EXPECT_EQ(backup.status, 0) << backup.errors;
    EXPECT_THAT(backup.output, AllOf(HasSubstr("Backup in /media/clone: "), Not(HasSubstr("stick"))));
    const Finished bundle = here({"support-bundle", "/media/bundle.tar", "--on-this-disk"});
    EXPECT_EQ(bundle.status, 0) << bundle.errors;
    EXPECT_EQ(bundle.output, "Wrote /media/bundle.tar, without any secret setting.\n");
}

TEST_F(DiskOfTheTelevisionTest, packageThatLiesThereIsReadByEveryCommandThatReads) {
    ASSERT_EQ(here({"backup", "/media/clone", "--on-this-disk"}).status, 0);
    for (const std::vector<std::string>& reading : {std::vector<std::string>{"verify", "/media/clone"},
                                                    {"inspect", "/media/clone"},
                                                    {"diff", "/media/clone"},
                                                    {"list"},
                                                    {"restore", "/media/clone"}}) {
        const Finished finished = here(reading);
        EXPECT_EQ(finished.status, 0) << reading[0] << finished.output << finished.errors;
    }
}

TEST_F(DiskOfTheTelevisionTest, stickThatIsWantedAsThisDiskIsStillAStick) {
    const Finished backup = vxclone(first, {"backup", "/media/usb/clone", "--on-this-disk"});
    EXPECT_EQ(backup.status, 0) << backup.errors;
    EXPECT_THAT(backup.output, HasSubstr("Safe to remove the stick."));
}

TEST_F(DiskOfTheTelevisionTest, folderOfTheTelevisionThatIsMountedLikeAStickIsNone) {
    const Finished backup =
        run(inside(first, {"sh", "-c",
                           "mkdir /opt/usr/shelf /media/shelf && mount --bind /opt/usr/shelf /media/shelf && "
                           "ln -s /opt/usr/shelf /media/usb/link && "
                           "\"$0\" backup /media/shelf/clone; \"$0\" backup /media/usb/link/clone",
                           vxcloneProgram()}));
    EXPECT_EQ(backup.status, ended::kStick);
    for (const char* const name : {"/media/shelf/clone", "/media/usb/link/clone"}) {
        EXPECT_THAT(backup.errors, HasSubstr(std::string(name) + kHere +
                                             "not on a stick (plugged in: /media/usb); name a place"));
    }
}

TEST_F(VxclonePeopleTest, stickPulledOutDuringABackupIsSaidAndNeverCalledSafe) {
    vxtv({"fault", first, "add", "avoc_backup_all_settings", "--delay", "800"});
    const std::string pullOnceTheRunGoesOn =
        "\"$0\" backup /media/usb/clone | while read -r line; do echo \"$line\"; "
        "case $line in *'saving, 0 of'*) umount -l /media/usb 2>&- ;; esac; done; exit \"${PIPESTATUS[0]}\"";
    const Finished backup = run(inside(first, {"bash", "-c", pullOnceTheRunGoesOn, vxcloneProgram()}));
    EXPECT_EQ(backup.status, ended::kStick);
    EXPECT_EQ(backup.errors,
              "vxclone: /media/usb is not there any more: the stick was taken out before the backup had "
              "ended; put it in and back up again\n");
    EXPECT_THAT(backup.output, Not(HasSubstr("Safe to remove")));
}

TEST_F(VxclonePeopleTest, backupKilledWhileTheTelevisionIsSavedIsNamedAndItsLeftoverRemoved) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const FileTree before = package();
    killAt(first, {vxcloneProgram(), "backup", "/media/usb/clone"}, "saving, 0 of",
           "avoc_backup_all_settings");
    EXPECT_EQ(package(), before);
    ASSERT_TRUE(std::filesystem::exists(place / "stick/.clone.vxclone-new"));
    const Finished again = vxclone(first, {"backup", "/media/usb/clone"});
    EXPECT_EQ(again.status, 0) << again.errors;
    EXPECT_THAT(again.output,
                MatchesRegex(std::string("The backup to /media/usb/clone, begun ") + kTime +
                             ", broke off in phase saving: nothing was changed; start again when "
                             "ready.\nA backup was interrupted: what it left beside /media/usb/clone is "
                             "removed.\nbackup 0 %, saving, 0 of (.|\n)*Safe to remove the stick.\n"));
    EXPECT_FALSE(std::filesystem::exists(place / "stick/.clone.vxclone-new"));
}

TEST_F(VxclonePeopleTest, restoreKilledHalfWayIsNamedByWhateverComesNextAndUndoIsOffered) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    killAt(second, {vxcloneProgram(), "restore", "/media/usb/clone"}, "loading, 0 of", "tvtimer_set_db");
    const std::string what = std::string("restore from /media/usb/clone, begun ") + kTime;
    const std::string advice =
        "the load had begun, so the television may be half changed; restore again, or go back with vxclone "
        "undo";
    const Finished verify = vxclone(second, {"verify", "/media/usb/clone"});
    EXPECT_EQ(verify.status, 0) << verify.errors;
    EXPECT_THAT(verify.output,
                ContainsRegex("^The " + what + ", broke off in phase restoring: " + advice + "."));
    const std::string unfinished = "UNFINISHED: " + what + "; it died in phase restoring: " + advice + ".";
    for (const std::vector<std::string>& looking : {std::vector<std::string>{"list"},
                                                    {"inspect", "/media/usb/clone"},
                                                    {"diff", "/media/usb/clone", "--json"}}) {
        EXPECT_THAT(vxclone(second, looking).output, ContainsRegex(unfinished)) << looking.front();
    }
    const Finished status = vxclone(second, {"status"});
    EXPECT_EQ(status.status, ended::kIncomplete);
    EXPECT_THAT(status.output, ContainsRegex(unfinished));
    EXPECT_EQ(vxclone(second, {"undo"}).status, 0);
    EXPECT_EQ(vxclone(second, {"status"}).status, 0);
}

TEST_F(VxclonePeopleTest, whileOneRunGoesOnAnotherIsRefusedAndLookingIsNot) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    vxtv({"fault", second, "add", "tvtimer_set_db", "--delay", kForEver});
    RunningProcess running(restoring());
    ASSERT_TRUE(running.waitForOutput("loading, 0 of"));
    for (const std::vector<std::string>& refused : {std::vector<std::string>{"backup", "/media/usb/other"},
                                                    {"verify", "/media/usb/clone"},
                                                    {"restore", "/media/usb/clone", "--dry-run"}}) {
        const Finished finished = vxclone(second, refused);
        EXPECT_EQ(finished.status, ended::kBusy) << refused.front();
        EXPECT_THAT(
            finished.errors,
            MatchesRegex(std::string("vxclone: another vxclone works on this television \\(restore "
                                     "from /media/usb/clone, begun ") +
                         kTime + ", phase restoring\\); wait for its end \\(vxclone status --follow\\)\n"));
    }
    EXPECT_EQ(vxclone(second, {"inspect", "/media/usb/clone"}).status, 0);
    EXPECT_EQ(vxclone(second, {"list"}).status, 0);
    const Finished status = vxclone(second, {"status"});
    EXPECT_EQ(status.status, 0);
    EXPECT_THAT(status.output, ContainsRegex("; phase restoring, [4-7][0-9] %\\.\n"));
    const Finished other = vxclone(first, {"verify", "/media/usb/clone"});
    EXPECT_EQ(other.status, 0) << other.errors;
}

TEST_F(VxclonePeopleTest, undoIsCalledUndoInItsLines) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone", "--no-read-back"}).status, 0);
    const Finished undo = vxclone(second, {"undo", "--no-read-back", "--json"});
    EXPECT_EQ(undo.status, 0) << undo.output;
    EXPECT_THAT(undo.output, AllOf(HasSubstr(R"("run":"undo")"), Not(HasSubstr(R"("run":"restore")"))));
}

TEST_F(VxclonePeopleTest, noCommandEverPrintsThePin) {
    const char* const kPin = "db/vxhotel/securitymode/changepin";
    vxtv({"set", first, kPin, "86420"});
    vxtv({"set", second, kPin, "97531"});
    for (const std::vector<std::string>& command : {std::vector<std::string>{"backup", "/media/usb/clone"},
                                                    {"inspect", "/media/usb/clone", "--files"},
                                                    {"inspect", "/media/usb/clone", "--json"},
                                                    {"diff", "/media/usb/clone", "--json"},
                                                    {"restore", "/media/usb/clone", "--dry-run", "--json"},
                                                    {"restore", "/media/usb/clone", "--keep-identity"},
                                                    {"restore", "/media/usb/clone", "--json"},
                                                    {"undo"},
                                                    {"status", "--json"},
                                                    {"support-bundle", "/media/usb/support.tar"}}) {
        const std::string& television = command.front() == "backup" ? first : second;
        const Finished finished = vxclone(television, command);
        EXPECT_THAT(finished.output + finished.errors, Not(ContainsRegex("86420|97531"))) << command.front();
        EXPECT_NE(finished.output, "");
    }
    EXPECT_THAT(readFile(place / "stick/support.tar"), Not(ContainsRegex("86420|97531")));
}

/// An invalid command line, and the sentence for it.
struct WrongLine {
    std::vector<std::string> arguments;
    std::string sentence;
};

const std::vector<WrongLine> kWrongLines = {
    {{}, "nothing to do; name a command, such as backup, restore or verify (see vxclone --help)"},
    {{"bakup", "/x/y"}, "there is no command \"bakup\"; did you mean backup?"},
    {{"frobnicate"}, "there is no command \"frobnicate\"; see vxclone --help"},
    {{"backup"}, "DIR is required; see vxclone backup --help"},
    {{"undo", "--now"}, "undo has no option --now; see vxclone undo --help"},
    {{"restore", "/x/y", "--onyl", "av"}, "restore has no option --onyl; did you mean --only?"},
    {{"undo", "a", "b", "c"}, "the following arguments were not expected: a b c; see vxclone undo --help"},
    {{"restore", "/x/y", "--only"}, "--only needs a value: --only CATEGORY,...; see vxclone restore --help"},
    {{"restore", "/x/y", "--only", "av", "--except", "av"},
     "--only excludes --except; see vxclone restore --help"},
    {{"restore", "/x/y", "--expect", "12"},
     "--expect: give 16 to 64 digits of a digest, 0-9 and a-f, from its beginning; see vxclone restore "
     "--help"},
};

Finished ofCommandLine(const std::vector<std::string>& arguments) {
    Program program;
    program.command = {vxcloneProgram()};
    program.command.insert(program.command.end(), arguments.begin(), arguments.end());
    return run(program);
}

TEST(VxcloneCommandLine, invalidLineIsOneSentenceWithTheNextStep) {
    for (const WrongLine& wrong : kWrongLines) {
        const Finished finished = ofCommandLine(wrong.arguments);
        EXPECT_EQ(finished.status, ended::kUsage);
        EXPECT_EQ(finished.errors, "vxclone: " + wrong.sentence + "\n");
        EXPECT_THAT(finished.output, IsEmpty());
    }
}

TEST(VxcloneCommandLine, invalidLineIsAJsonErrorWhereverJsonWasAskedFor) {
    for (const WrongLine& wrong : kWrongLines) {
        std::vector<std::string> before = wrong.arguments;
        before.insert(before.begin(), "--json");
        const Finished finished = ofCommandLine(before);
        EXPECT_EQ(finished.status, ended::kUsage);
        EXPECT_THAT(finished.errors, IsEmpty());
        const nlohmann::json line = nlohmann::json::parse(finished.output);
        const nlohmann::json expected = {{"version", 1},
                                         {"event", "error"},
                                         {"code", "bad-arguments"},
                                         {"exit", ended::kUsage},
                                         {"message", wrong.sentence}};
        EXPECT_EQ(line, expected);
    }
    EXPECT_THAT(ofCommandLine({"restore", "--onyl", "--json"}).output,
                HasSubstr(R"("message":"restore has no option --onyl; did you mean --only?")"));
}

TEST(VxcloneCommandLine, jsonBeforeTheCommandIsTheSameAsBehindIt) {
    const Finished before = ofCommandLine({"--json", "inspect", "/nowhere/clone"});
    const Finished behind = ofCommandLine({"inspect", "/nowhere/clone", "--json"});
    EXPECT_THAT(before.output, StartsWith(R"({"version":1,"event":"error")"));
    EXPECT_EQ(before.output, behind.output);
    EXPECT_EQ(before.status, behind.status);
    EXPECT_EQ(before.errors + behind.errors, "");
}

TEST(VxcloneCommandLine, helpOfEveryCommandFitsATerminalOf80ColumnsAndShowsAnExample) {
    for (const std::string verb :
         {"", "backup", "restore", "undo", "verify", "inspect", "diff", "list", "status", "support-bundle"}) {
        Program program;
        program.command = {vxcloneProgram()};
        if (!verb.empty()) {
            program.command.push_back(verb);
        }
        program.command.emplace_back("--help");
        const Finished help = run(program);
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.output, AllOf(HasSubstr("Usage: vxclone"), HasSubstr("\nExamples:\n  vxclone ")));
        std::istringstream lines(help.output);
        for (std::string line; std::getline(lines, line);) {
            EXPECT_LE(line.size(), 80U) << line;
        }
    }
}

}  // namespace
}  // namespace vxtest
