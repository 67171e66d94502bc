// diff and dry runs compare the whole television with a package, and leave its files, its database and its
// clone folder unchanged, after every failure and every kill.

#include <csignal>
#include <thread>

#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/database_rows.h"
#include "tests/support/machine/exit_status.h"

namespace vxtest {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kDataFolder = "opt/usr/apps/org.vorta.vxhotel-cloning/data";
constexpr const char* kSame = "\nNo difference.\n";
constexpr const char* kPutRight =
    "A comparison broke off: what lay in the television's clone folder is there again.\n";
constexpr const char* kSaving = "Saving the television, to compare it with the package.\n";

/// The clone folder of the second television has the content of its own backup. The stick has a package of
/// each television.
class VxcloneDiffTest : public CloneTest {
 protected:
    VxcloneDiffTest() {
        EXPECT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
        EXPECT_EQ(vxclone(second, {"backup", "/media/usb/own"}).status, 0);
        remember();
    }

    /// Saves the state that `expectAsBefore` compares with.
    void remember() {
        std::filesystem::remove_all(untouched_);
        std::filesystem::copy(second, untouched_, std::filesystem::copy_options::recursive);
        files_ = snapshot(std::filesystem::path(second) / "opt");
        rows_ = databaseRows(second);
    }

    void expectAsBefore() const {
        EXPECT_EQ(snapshot(std::filesystem::path(second) / "opt"), files_);
        EXPECT_EQ(databaseRows(second), rows_);
        const Finished compared = vxtv({"compare", second, untouched_});
        EXPECT_EQ(compared.status, 0) << compared.output;
    }

    Program inSecond(const std::vector<std::string>& arguments) const {
        std::vector<std::string> command = {vxcloneProgram().string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return inTelevision(second, std::move(command), {"--stick", stick});
    }

    /// Runs the command and kills it when the library makes the call. Before that call the entry appears in
    /// the clone folder.
    void killAt(const std::vector<std::string>& arguments, const std::string& call,
                const std::string& entry) const {
        vxtv({"fault", second, "add", call, "--delay", kForEver});
        RunningProcess dying(inSecond(arguments));
        ASSERT_TRUE(dying.waitForOutput(kSaving));
        const auto before = std::filesystem::path(second) / kDataFolder / "Clone" / entry;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!std::filesystem::exists(before) && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
        EXPECT_TRUE(std::filesystem::exists(before));
        dying.signal(SIGKILL);
        dying.wait();
        vxtv({"fault", second, "clear"});
    }

 private:
    const std::string untouched_ = (place / "untouched").string();
    FileTree files_;
    FileTree rows_;
};

TEST_F(VxcloneDiffTest, ownPackageIsTheSameAndEverythingIsAsBefore) {
    const Finished diff = vxclone(second, {"diff", "/media/usb/own"});
    EXPECT_EQ(diff.status, 0) << diff.errors;
    EXPECT_EQ(diff.output, std::string(kSaving) +
                               "this television -> /media/usb/own\nNo difference.\n"
                               "Not checked: manifest and seal; vxclone verify does that.\n");
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, packageOfAnotherRoomDiffersInEveryCategoryAndEverythingIsAsBefore) {
    const Finished diff = vxclone(second, {"diff", "/media/usb/clone"});
    EXPECT_EQ(diff.status, ended::kIncomplete) << diff.errors;
    for (const char* const category :
         {"apps (org.vorta.orvel-app)", "av", "boot-logo", "channels", "factory", "home-data", "home-menu",
          "mbr-logo", "settings", "settings-keys", "timers", "was"}) {
        EXPECT_THAT(diff.output, HasSubstr(std::string("\n") + category + "\n  ")) << category;
    }
    EXPECT_THAT(diff.output, AllOf(HasSubstr("47 settings and 22 files differ.\n"), Not(HasSubstr("No diff")),
                                   Not(HasSubstr("Not compared"))));
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, changeInOneServiceIsFound) {
    EXPECT_EQ(vxclone(first, {"restore", "/media/usb/own", "--only", "timers"}).status, 0);
    const Finished diff = vxclone(first, {"diff", "/media/usb/clone"});
    EXPECT_EQ(diff.status, ended::kIncomplete);
    EXPECT_THAT(diff.output, HasSubstr("\ntimers\n  tvtimer/timers.backup  other content\n0 settings and 1 "
                                       "file differ.\n"));
}

TEST_F(VxcloneDiffTest, dryRunTellsEveryCategoryAndEverythingIsAsBefore) {
    const Finished dry = vxclone(second, {"restore", "/media/usb/clone", "--dry-run"});
    EXPECT_EQ(dry.status, 0) << dry.errors;
    EXPECT_THAT(dry.output, AllOf(HasSubstr("would be loaded: changes 47 settings"),
                                  HasSubstr("channel map              would be loaded: changes 2 files"),
                                  HasSubstr("This was a dry run: nothing was changed.\n")));
    expectAsBefore();
    EXPECT_THAT(vxclone(second, {"restore", "/media/usb/own", "--dry-run"}).output,
                AllOf(HasSubstr("org.vorta.orvel-app      would be loaded: changes nothing"),
                      Not(HasSubstr(": changes 1"))));
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, whatThePackageLacksIsSaidAndTheTelevisionsOwnIsNoDifference) {
    vxtv({"fault", first, "add", "vconf_get_str", "--key", kWelcome, "--status", "-1", "--from-then-on"});
    EXPECT_EQ(vxclone(first, {"backup", "/media/usb/lacking"}).status, ended::kIncomplete);
    vxtv({"fault", first, "clear"});
    const std::string sentence =
        std::string("\nThe package is not complete. It lacks: settings-keys (") + kWelcome + ").\n";
    const std::string finding =
        std::string("\"check\":\"completeness\",\"result\":\"lacking\",\"category\":") +
        "\"settings-keys\",\"what\":\"" + kWelcome + "\"";
    const std::vector<std::string> diff = {"diff", "/media/usb/lacking"};
    const std::vector<std::string> dry = {"restore", "/media/usb/lacking", "--dry-run"};
    for (const std::vector<std::string>& looked : {diff, dry}) {
        const Finished text = vxclone(first, looked);
        EXPECT_EQ(text.status, 0) << text.output << text.errors;
        EXPECT_THAT(text.output, HasSubstr(sentence));
        std::vector<std::string> asJson = looked;
        asJson.emplace_back("--json");
        EXPECT_THAT(vxclone(first, asJson).output, HasSubstr(finding));
    }
    EXPECT_THAT(vxclone(first, diff).output, HasSubstr(kSame));
    const Finished two = vxclone(first, {"diff", "/media/usb/lacking", "/media/usb/clone"});
    EXPECT_THAT(two.output, HasSubstr(std::string("\n/media/usb/lacking is not complete. It lacks: "
                                                  "settings-keys (") +
                                      kWelcome + ").\nNot checked"));
}

TEST_F(VxcloneDiffTest, twoPackagesNameTheApplicationWhoseDataDiffers) {
    const Finished two = vxclone(second, {"diff", "/media/usb/own", "/media/usb/clone"});
    EXPECT_EQ(two.status, ended::kIncomplete);
    EXPECT_THAT(two.output, HasSubstr("\napps (org.vorta.orvel-app)\n  org.vorta.orvel-app/"));
    EXPECT_THAT(two.output, HasSubstr("other bytes; only the application can compare\n"));
}

TEST_F(VxcloneDiffTest, resultListThatCannotBeReadOnceIsReadAgain) {
    vxtv({"fault", second, "add", "vconf_get_str", "--key", "db/hotel/clone_result", "--nth", "1", "--status",
          "-1"});
    const Finished diff = vxclone(second, {"diff", "/media/usb/own"});
    EXPECT_EQ(diff.status, 0) << diff.errors;
    EXPECT_THAT(diff.output, HasSubstr(kSame));
    vxtv({"fault", second, "clear"});
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, outcomeThatTheListLostIsAskedForOnceMore) {
    vxtv({"calls", second, "--clear"});
    vxtv({"fault", second, "add", "vconf_set_str", "--key", "db/hotel/clone_result", "--nth", "6", "--status",
          "-1"});
    const Finished diff = vxclone(second, {"diff", "/media/usb/own"});
    EXPECT_EQ(diff.status, 0) << diff.errors;
    EXPECT_THAT(diff.output, HasSubstr(kSame));
    vxtv({"fault", second, "clear"});
    const std::string calls = vxtv({"calls", second}).output;
    EXPECT_NE(calls.find("avoc_backup_all_settings"), calls.rfind("avoc_backup_all_settings"));
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, televisionOnWhichNothingRanYetIsAsBefore) {
    vxtv({"destroy", second});
    vxtv({"create", second, "--profile", "room-102"});
    remember();
    EXPECT_EQ(vxclone(second, {"diff", "/media/usb/own"}).status, 0);
    EXPECT_EQ(vxclone(second, {"restore", "/media/usb/own", "--dry-run"}).status, 0);
    EXPECT_EQ(vxclone(second, {"verify", "/media/usb/own"}).status, 0);
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, quickOneRunsNoLibrary) {
    vxtv({"calls", second, "--clear"});
    const Finished diff = vxclone(second, {"diff", "/media/usb/own", "--quick"});
    EXPECT_EQ(diff.status, 0) << diff.errors;
    EXPECT_EQ(diff.output,
              "this television -> /media/usb/own\nNo difference in settings and pictures.\n"
              "Not compared, because of --quick: apps (org.harbour.firstscreen), apps (org.vorta.orvel-app), "
              "av, channels, factory, home-data, settings, timers, was.\n"
              "Not checked: manifest and seal; vxclone verify does that.\n");
    EXPECT_THAT(vxclone(second, {"restore", "/media/usb/own", "--dry-run", "--quick", "--json"}).output,
                HasSubstr("\"notCompared\":[\"apps\",\"av\",\"channels\",\"factory\",\"home-data\","
                          "\"settings\",\"timers\",\"was\"]"));
    EXPECT_THAT(vxtv({"calls", second}).output, Not(HasSubstr("avoc_backup_all_settings")));
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, quickIsForTheTelevisionAlone) {
    const Finished two = vxclone(second, {"diff", "/media/usb/own", "/media/usb/clone", "--quick"});
    EXPECT_EQ(two.status, ended::kUsage);
    EXPECT_EQ(vxclone(second, {"restore", "/media/usb/own", "--quick"}).status, ended::kUsage);
    expectAsBefore();
}

/// A failing call, and the expected text of the comparison with the television's own package.
struct DiffFailure {
    const char* name;
    const char* call;
    const char* status;
    const char* notCompared;
};

class FailingDiffTest : public VxcloneDiffTest, public testing::WithParamInterface<DiffFailure> {};

TEST_P(FailingDiffTest, whatCouldNotBeSavedIsNamedAndEverythingIsAsBefore) {
    vxtv({"fault", second, "add", GetParam().call, "--status", GetParam().status, "--from-then-on"});
    const std::string sentence = std::string("\nNot compared, because the television could not save it: ") +
                                 GetParam().notCompared + ".\n";
    const Finished diff = vxclone(second, {"diff", "/media/usb/own"});
    EXPECT_EQ(diff.status, ended::kIncomplete) << diff.errors;
    EXPECT_THAT(diff.output,
                AllOf(HasSubstr("\nNo difference in what was compared." + sentence), Not(HasSubstr(kSame))));
    const Finished dry = vxclone(second, {"restore", "/media/usb/own", "--dry-run"});
    EXPECT_EQ(dry.status, ended::kIncomplete) << dry.errors;
    EXPECT_THAT(dry.output, HasSubstr(sentence));
    vxtv({"fault", second, "clear"});
    expectAsBefore();
    EXPECT_THAT(vxclone(second, {"diff", "/media/usb/own"}).output, HasSubstr(kSame));
}

INSTANTIATE_TEST_SUITE_P(
    Calls, FailingDiffTest,
    testing::Values(DiffFailure{"picture", "avoc_backup_all_settings", "-10", "av"},
                    DiffFailure{"factory", "factory_clone_tv_to_usb", "-1", "factory"},
                    DiffFailure{"network", "system_info_get_custom_int", "-1", "home-data, was"},
                    DiffFailure{"channels", "IUtil::ExportChannelMap", "-1", "channels"},
                    DiffFailure{"timers", "tvtimer_get_db", "-1", "timers"},
                    DiffFailure{"application", "aul_launch_app", "-1", "apps (org.vorta.orvel-app)"}),
    [](const auto& failure) { return std::string(failure.param.name); });

/// The point at which a comparison is killed: the call, and the entry that the library has saved before.
struct DiffDeath {
    const char* name;
    const char* call;
    const char* entry;
};

class DyingDiffTest : public VxcloneDiffTest, public testing::WithParamInterface<DiffDeath> {};

TEST_P(DyingDiffTest, nextCommandPutsEverythingRight) {
    const auto& [name, call, entry] = GetParam();
    for (const std::vector<std::string>& dying : {std::vector<std::string>{"diff", "/media/usb/clone"},
                                                  {"restore", "/media/usb/clone", "--dry-run"}}) {
        killAt(dying, call, entry);
        const Finished verify = vxclone(second, {"verify", "/media/usb/own"});
        EXPECT_EQ(verify.status, 0) << verify.errors;
        EXPECT_THAT(verify.output, HasSubstr(kPutRight));
        expectAsBefore();
    }
    killAt({"diff", "/media/usb/clone"}, call, entry);
    const Finished again = vxclone(second, {"diff", "/media/usb/own"});
    EXPECT_EQ(again.status, 0) << again.errors;
    EXPECT_THAT(again.output, AllOf(HasSubstr(kPutRight), HasSubstr(kSame)));
    expectAsBefore();
    killAt({"diff", "/media/usb/clone"}, call, entry);
    EXPECT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    EXPECT_EQ(vxclone(second, {"undo"}).status, 0);
    EXPECT_THAT(vxclone(second, {"diff", "/media/usb/own"}).output, HasSubstr(kSame));
}

INSTANTIATE_TEST_SUITE_P(Calls, DyingDiffTest,
                         testing::Values(DiffDeath{"early", "avoc_backup_all_settings", "factory.backup"},
                                         DiffDeath{"late", "tvtimer_get_db", "settings-data.backup"}),
                         [](const auto& death) { return std::string(death.param.name); });

TEST_F(VxcloneDiffTest, signalEndsItAfterTheLibrarysRunAndEverythingIsAsBefore) {
    vxtv({"fault", second, "add", "avoc_backup_all_settings", "--delay", "500"});
    RunningProcess running(inSecond({"diff", "/media/usb/clone"}));
    ASSERT_TRUE(running.waitForOutput(kSaving));
    running.signal(SIGINT);
    const Finished ended = running.wait();
    EXPECT_EQ(ended.status, ended::kInterrupted) << ended.output << ended.errors;
    vxtv({"fault", second, "clear"});
    expectAsBefore();
}

TEST_F(VxcloneDiffTest, onlyOneWorksOnTheTelevision) {
    vxtv({"fault", second, "add", "tvtimer_get_db", "--delay", kForEver});
    RunningProcess running(inSecond({"diff", "/media/usb/clone"}));
    ASSERT_TRUE(running.waitForOutput(kSaving));
    for (const std::vector<std::string>& refused : {std::vector<std::string>{"backup", "/media/usb/other"},
                                                    {"diff", "/media/usb/clone"},
                                                    {"restore", "/media/usb/clone", "--dry-run"},
                                                    {"verify", "/media/usb/clone"}}) {
        const Finished other = vxclone(second, refused);
        EXPECT_EQ(other.status, ended::kBusy) << refused.front();
        EXPECT_EQ(other.errors,
                  "vxclone: another vxclone looks at this television (diff, verify or a dry run); "
                  "wait for its end\n");
    }
    EXPECT_EQ(vxclone(second, {"diff", "/media/usb/clone", "--quick"}).status, ended::kIncomplete);
    const std::string status = vxclone(second, {"status"}).output;
    EXPECT_THAT(status,
                HasSubstr("\nGoing on: another vxclone looks at this television (diff, verify or a dry "
                          "run), and changes nothing.\n"));
    EXPECT_THAT(status, HasSubstr("Last run: backup to /media/usb/own, "));
}

}  // namespace
}  // namespace vxtest
