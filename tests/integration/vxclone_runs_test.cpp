// The promises of a restore: an incomplete state is reported, there is a way back, and every success was read
// back.

#include <csignal>
#include <thread>

#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/exit_status.h"

namespace vxtest {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kData = "opt/usr/apps/org.vorta.vxhotel-cloning/data";

class VxcloneRunsTest : public CloneTest {
 protected:
    VxcloneRunsTest() { EXPECT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0); }

    /// Saves the state that `expectAsBefore` compares with.
    void keepTheBeginning() const { EXPECT_EQ(vxclone(second, {"backup", "/media/usb/before"}).status, 0); }

    Program inSecond(const std::vector<std::string>& arguments) const {
        Program program;
        program.command = {vxtvProgram().string(),   "run", second, "--quiet", "--stick", stick, "--",
                           vxcloneProgram().string()};
        program.command.insert(program.command.end(), arguments.begin(), arguments.end());
        return program;
    }
    Program restoring() const { return inSecond({"restore", "/media/usb/clone"}); }

    /// Waits until the record of the second television has the phase. False after the time limit.
    bool waitForPhase(const std::string& phase) const {
        const std::filesystem::path record = std::filesystem::path(second) / kData / "run.json";
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < deadline) {
            const std::string text = std::filesystem::exists(record) ? readFile(record) : "{}";
            const auto read = nlohmann::json::parse(text);
            if (read.value("phase", "") == phase) {
                return true;
            }
            std::this_thread::yield();
        }
        return false;
    }

    /// Expects that the second television is as at the beginning.
    void expectAsBefore() const {
        const Finished after = vxclone(second, {"diff", "/media/usb/before"});
        EXPECT_EQ(after.status, 0) << after.output << after.errors;
    }
};

/// The point at which a restore is killed: the nth time that the call waits.
struct Death {
    const char* phase;
    const char* call;
    const char* nth;
    bool touched;
    const char* left;
};

constexpr const char* kNothingChanged = "nothing was changed; start again when ready.\n";
constexpr const char* kHalfChanged =
    "the load had begun, so the television may be half changed; restore again, or go back with vxclone "
    "undo.\n";
constexpr const char* kNotReadBack =
    "everything was loaded, only the read-back is missing; restore again to have it compared, or go back "
    "with "
    "vxclone undo.\n";

class DyingRestoreTest : public VxcloneRunsTest, public testing::WithParamInterface<Death> {};

TEST_P(DyingRestoreTest, nextStartNamesItAndUndoGoesBack) {
    keepTheBeginning();
    const Death& death = GetParam();
    vxtv({"fault", second, "add", death.call, "--nth", death.nth, "--delay", kForEver});
    RunningProcess dying(restoring());
    ASSERT_TRUE(waitForPhase(death.phase));
    dying.signal(SIGKILL);
    dying.wait();
    vxtv({"fault", second, "clear"});

    const Finished status = vxclone(second, {"status"});
    EXPECT_EQ(status.status, ended::kIncomplete);
    const std::string whatItLeft = std::string(" in phase ") + death.phase + ": " + death.left;
    EXPECT_THAT(status.output, AllOf(HasSubstr("UNFINISHED"), HasSubstr("; it died" + whatItLeft)));
    const Finished undo = vxclone(second, {"undo"});
    EXPECT_EQ(undo.status, death.touched ? 0 : ended::kNoPackage) << undo.output << undo.errors;
    EXPECT_THAT(undo.output,
                AllOf(HasSubstr("restore from /media/usb/clone"), HasSubstr(", broke off" + whatItLeft)));
    expectAsBefore();
    const Finished again = vxclone(second, {"restore", "/media/usb/clone", "--no-safety", "--no-read-back"});
    EXPECT_EQ(again.status, 0) << again.output << again.errors;
    EXPECT_THAT(again.output, Not(HasSubstr("broke off")));
}

INSTANTIATE_TEST_SUITE_P(Phases, DyingRestoreTest,
                         testing::Values(Death{"staging", "ss_read", "1", false, kNothingChanged},
                                         Death{"safety", "tvtimer_get_db", "1", false, kNothingChanged},
                                         Death{"restoring", "tvtimer_set_db", "1", true, kHalfChanged},
                                         Death{"reading-back", "tvtimer_get_db", "2", true, kNotReadBack}),
                         [](const auto& death) {
                             const std::string phase = death.param.phase;
                             return phase.substr(0, phase.find('-'));
                         });

/// The signal for a restore that has reached the phase; the call delays this phase.
struct Interruption {
    const char* phase;
    const char* call;
    const char* nth;
    int signal;
    const char* cause;  ///< at the end of the run
    const char* phaseAtTheEnd;
    bool touched;
    const char* left;
};

class InterruptedRestoreTest : public VxcloneRunsTest, public testing::WithParamInterface<Interruption> {};

TEST_P(InterruptedRestoreTest, itsEndTheNextStartAndStatusSayWhatIsLeft) {
    keepTheBeginning();
    const Interruption& interruption = GetParam();
    vxtv({"fault", second, "add", interruption.call, "--nth", interruption.nth, "--delay", "1500"});
    RunningProcess restore(restoring());
    ASSERT_TRUE(waitForPhase(interruption.phase));
    restore.signal(interruption.signal);
    const Finished end = restore.wait();
    EXPECT_EQ(end.status, ended::kInterrupted) << end.output << end.errors;
    EXPECT_THAT(asIfAllWasReported(end.output + end.errors),
                HasSubstr(std::string(interruption.cause) + ": " +
                          (interruption.touched ? interruption.left
                                                : "nothing was changed; start again when ready\n")));

    const std::string whatItLeft =
        std::string(" in phase ") + interruption.phaseAtTheEnd + ": " + interruption.left;
    const Finished status = vxclone(second, {"status"});
    EXPECT_EQ(status.status, interruption.touched ? ended::kIncomplete : 0);
    EXPECT_THAT(asIfAllWasReported(status.output), HasSubstr(": interrupted" + whatItLeft));
    const Finished next = vxclone(second, {"verify", "/media/usb/clone"});
    EXPECT_EQ(next.status, 0) << next.output << next.errors;
    EXPECT_THAT(asIfAllWasReported(next.output), HasSubstr(", was stopped" + whatItLeft));
    if (interruption.touched) {
        EXPECT_EQ(get(second, kWelcome), get(first, kWelcome));
        const Finished undo = vxclone(second, {"undo"});
        EXPECT_EQ(undo.status, 0) << undo.output << undo.errors;
    }
    expectAsBefore();
}

INSTANTIATE_TEST_SUITE_P(
    Phases, InterruptedRestoreTest,
    testing::Values(Interruption{"staging", "ss_read", "1", SIGTERM, "vxclone: stopped before the end",
                                 "staging", false, kNothingChanged},
                    Interruption{"safety", "tvtimer_get_db", "1", SIGINT,
                                 "vxclone: stopped by you before the end", "safety", false, kNothingChanged},
                    Interruption{"restoring", "tvtimer_set_db", "1", SIGHUP, "The terminal went away",
                                 "reading-back", true, kNotReadBack},
                    Interruption{"reading-back", "tvtimer_get_db", "2", SIGTERM, "Stopped before the end",
                                 "reading-back", true, kNotReadBack}),
    [](const auto& interruption) {
        const std::string phase = interruption.param.phase;
        return phase.substr(0, phase.find('-'));
    });

TEST_F(VxcloneRunsTest, undoThatIsStoppedWhileItLoadsIsRunAgain) {
    keepTheBeginning();
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    vxtv({"fault", second, "add", "tvtimer_set_db", "--nth", "1", "--delay", "1500"});
    RunningProcess undo(inSecond({"undo"}));
    ASSERT_TRUE(waitForPhase("restoring"));
    undo.signal(SIGINT);
    const Finished end = undo.wait();
    EXPECT_EQ(end.status, ended::kInterrupted) << end.output << end.errors;
    const std::string left =
        "everything was loaded, only the read-back is missing; run vxclone undo again to have it compared.\n";
    EXPECT_THAT(asIfAllWasReported(end.output), HasSubstr("Stopped by you before the end: " + left));
    EXPECT_THAT(asIfAllWasReported(vxclone(second, {"status"}).output),
                HasSubstr(": interrupted in phase reading-back: " + left));
    EXPECT_EQ(vxclone(second, {"undo"}).status, 0);
    expectAsBefore();
    EXPECT_EQ(vxclone(second, {"status"}).status, 0);
}

TEST_F(VxcloneRunsTest, undoThatDiesWhileItLoadsIsRunAgain) {
    keepTheBeginning();
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    vxtv({"fault", second, "add", "tvtimer_set_db", "--nth", "1", "--delay", kForEver});
    RunningProcess undo(inSecond({"undo"}));
    ASSERT_TRUE(waitForPhase("restoring"));
    undo.signal(SIGKILL);
    undo.wait();
    vxtv({"fault", second, "clear"});
    EXPECT_THAT(
        vxclone(second, {"status"}).output,
        HasSubstr("it died in phase restoring: the load had begun, so the television may be half changed; "
                  "run vxclone undo again.\n"));
    EXPECT_EQ(vxclone(second, {"undo"}).status, 0);
    expectAsBefore();
}

TEST_F(VxcloneRunsTest, undoGoesBackToHowItWas) {
    keepTheBeginning();
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    EXPECT_EQ(vxclone(second, {"diff", "/media/usb/before"}).status, ended::kIncomplete);
    const Finished undo = vxclone(second, {"undo"});
    EXPECT_EQ(undo.status, 0) << undo.output << undo.errors;
    expectAsBefore();
}

TEST_F(VxcloneRunsTest, secondRunEndsAtOnceAndSaysWhatIsGoingOn) {
    vxtv({"fault", second, "add", "tvtimer_set_db", "--delay", kForEver});
    RunningProcess running(restoring());
    ASSERT_TRUE(waitForPhase("restoring"));
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"restore", "/media/usb/clone"},
                                                      {"backup", "/media/usb/other"},
                                                      {"undo"}}) {
        const Finished other = vxclone(second, arguments);
        EXPECT_EQ(other.status, ended::kBusy) << other.output;
        EXPECT_THAT(other.errors, AllOf(HasSubstr("restore from /media/usb/clone"), HasSubstr("restoring")));
    }
}

TEST_F(VxcloneRunsTest, stickIsNotNeededOnceThePackageIsStaged) {
    vxtv({"fault", second, "add", "avoc_backup_all_settings", "--delay", "200"});
    RunningProcess running(restoring());
    ASSERT_TRUE(waitForPhase("safety"));
    std::filesystem::remove_all(place / "stick/clone");
    const Finished restore = running.wait();
    EXPECT_EQ(restore.status, 0) << restore.output << restore.errors;
    EXPECT_EQ(get(second, kWelcome), get(first, kWelcome));
}

TEST_F(VxcloneRunsTest, importThatFailsUnderAReportedSuccessIsReadBack) {
    vxtv({"set", second, kWelcome, "other"});
    vxtv({"fault", second, "add", "IUtil::ImportChannelMap", "--status", "0"});
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone", "--json"});
    EXPECT_EQ(restore.status, ended::kIncomplete) << restore.output << restore.errors;
    EXPECT_THAT(restore.output, HasSubstr("\"category\":\"channels\",\"result\":\"not-applied\""));
    EXPECT_THAT(restore.output, HasSubstr("\"path\":\"tvs-chms/tvs-chms.zip\",\"result\":\"differs\""));
}

TEST_F(VxcloneRunsTest, safetyBackupThatFailsKeepsTheRestoreFromBeginning) {
    keepTheBeginning();
    vxtv({"fault", second, "add", "avoc_backup_all_settings", "--status", "-10", "--from-then-on"});
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(restore.status, ended::kPlatformFailed) << restore.output;
    EXPECT_THAT(restore.errors, AllOf(HasSubstr("lacks av"), HasSubstr("--no-safety")));
    vxtv({"fault", second, "clear"});
    expectAsBefore();
    EXPECT_EQ(vxclone(second, {"restore", "/media/usb/clone", "--no-safety"}).status, 0);
}

TEST_F(VxcloneRunsTest, keptIdentityIsThatOfTheTelevision) {
    const char* const kAddress = "db/vxhotel/hotelmenu/reach_ipsetting";
    vxtv({"set", second, kAddress, "10.9.8.7"});
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone", "--keep-identity"});
    EXPECT_EQ(restore.status, 0) << restore.output << restore.errors;
    EXPECT_THAT(restore.output, HasSubstr("; kept, "));
    EXPECT_EQ(get(second, kAddress), "10.9.8.7");
    EXPECT_EQ(get(second, kWelcome), get(first, kWelcome));
}

TEST_F(VxcloneRunsTest, dryRunNamesWhatWouldChangeAndChangesNothing) {
    const auto settings = [this] { return vxtv({"settings", second}).output; };
    const std::string before = settings();
    const FileTree files = snapshot(std::filesystem::path(second) / "opt");
    const Finished dry = vxclone(second, {"restore", "/media/usb/clone", "--dry-run", "--json"});
    EXPECT_EQ(dry.status, 0) << dry.errors;
    EXPECT_THAT(dry.output, AllOf(HasSubstr(kWelcome), HasSubstr("\"result\":\"planned\"")));
    EXPECT_EQ(settings(), before);
    EXPECT_EQ(snapshot(std::filesystem::path(second) / "opt"), files);
}

TEST_F(VxcloneRunsTest, exceptLoadsAllButTheNamed) {
    const std::string welcome = get(second, kWelcome);
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone", "--except", "settings-keys"});
    EXPECT_EQ(restore.status, 0) << restore.output << restore.errors;
    EXPECT_THAT(restore.output, HasSubstr("network-time without settings-keys"));
    EXPECT_EQ(get(second, kWelcome), welcome);
    EXPECT_EQ(vxclone(second, {"restore", "/media/usb/clone", "--except", "av", "--only", "av"}).status, 2);
}

/// A command line with an empty or unknown name, and the beginning of the message.
struct RefusedName {
    std::vector<std::string> arguments;
    std::string sentence;
};

TEST_F(VxcloneRunsTest, nameThatIsEmptyOrNobodysIsRefusedBeforeAnything) {
    const std::string noCategory = "there is no category \"\"; choose from: factory av ";
    const std::string nobodys = "there is no category \"nosuch\"; choose from: factory av ";
    const FileTree files = snapshot(std::filesystem::path(second) / "opt");
    for (const RefusedName& refused : std::vector<RefusedName>{
             {{"restore", "/media/usb/clone", "--except", ""}, noCategory},
             {{"restore", "/media/usb/clone", "--except", " , "}, noCategory},
             {{"restore", "/media/usb/clone", "--only", ""}, noCategory},
             {{"restore", "/media/usb/clone", "--only", " , "}, noCategory},
             {{"list", ""}, "the folder's name is empty; name a folder, or leave it out to look in /media"},
             {{"restore", "/media/usb/clone", "--without", "nosuch"}, nobodys},
             {{"restore", "/media/usb/clone", "--without", "av,nosuch", "--no-safety"}, nobodys},
             {{"restore", "/media/usb/clone", "--without", "nosuch", "--dry-run"}, nobodys},
             {{"restore", "/media/usb/clone", "--without", "nosuch", "--dry-run", "--quick"}, nobodys},
             {{"restore", "/media/usb/nothing-there", "--without", "nosuch", "--no-safety"}, nobodys},
             {{"backup", "/media/usb/new", "--without", "nosuch"}, nobodys}}) {
        SCOPED_TRACE(testing::PrintToString(refused.arguments));
        const Finished finished = vxclone(second, refused.arguments);
        EXPECT_EQ(finished.status, ended::kUsage);
        EXPECT_THAT(finished.errors, testing::StartsWith("vxclone: " + refused.sentence));
        EXPECT_EQ(finished.output, "");
    }
    EXPECT_FALSE(std::filesystem::exists(place / "stick/new"));
    EXPECT_EQ(snapshot(std::filesystem::path(second) / "opt"), files);
}

}  // namespace
}  // namespace vxtest
