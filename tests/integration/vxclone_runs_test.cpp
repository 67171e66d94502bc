// What a restore owes: nothing half done without saying so, a way back, and no success that was not read
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

    /// Keeps what `expectAsBefore` compares with.
    void keepTheBeginning() const { EXPECT_EQ(vxclone(second, {"backup", "/media/usb/before"}).status, 0); }

    Program restoring() const {
        Program program;
        program.command = {vxtvProgram().string(),
                           "run",
                           second,
                           "--quiet",
                           "--stick",
                           stick,
                           "--",
                           vxcloneProgram().string(),
                           "restore",
                           "/media/usb/clone"};
        return program;
    }

    /// Waits until the record of the second television says the phase. False when it never does.
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

    /// Whether the second television is as it was at the beginning, as far as that can be compared.
    void expectAsBefore() const {
        const Finished after = vxclone(second, {"diff", "/media/usb/before"});
        EXPECT_EQ(after.status, 0) << after.output << after.errors;
    }
};

/// Where a restore is killed: while the call waits for the n-th time.
struct Death {
    const char* phase;
    const char* call;
    const char* nth;
    bool touched;
};

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
    EXPECT_THAT(status.output, AllOf(HasSubstr("UNFINISHED"), HasSubstr(death.phase)));
    const Finished undo = vxclone(second, {"undo"});
    EXPECT_EQ(undo.status, death.touched ? 0 : ended::kNoPackage) << undo.output << undo.errors;
    EXPECT_THAT(undo.output, AllOf(HasSubstr("restore from /media/usb/clone"), HasSubstr(death.phase)));
    expectAsBefore();
    const Finished again = vxclone(second, {"restore", "/media/usb/clone", "--no-safety", "--no-read-back"});
    EXPECT_EQ(again.status, 0) << again.output << again.errors;
    EXPECT_THAT(again.output, Not(HasSubstr("broke off")));
}

INSTANTIATE_TEST_SUITE_P(Phases, DyingRestoreTest,
                         testing::Values(Death{"staging", "ss_read", "1", false},
                                         Death{"safety", "tvtimer_get_db", "1", false},
                                         Death{"restoring", "tvtimer_set_db", "1", true},
                                         Death{"reading-back", "tvtimer_get_db", "2", true}),
                         [](const auto& death) {
                             const std::string phase = death.param.phase;
                             return phase.substr(0, phase.find('-'));
                         });

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

}  // namespace
}  // namespace vxtest
