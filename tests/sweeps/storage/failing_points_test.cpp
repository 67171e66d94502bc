#include "tests/sweeps/storage/failing_points_test.h"

#include <array>
#include <regex>

#include "tests/support/machine/exit_status.h"

namespace vxtest {

namespace {

using testing::AnyOf;
using testing::ContainsRegex;
using testing::Eq;
using testing::HasSubstr;

constexpr int kAborted = 134;
constexpr int kCrashed = 139;

std::string textOf(const Finished& finished) {
    return finished.output + finished.errors;
}

/// What a package may lack if the backup says that nobody reported it. For two applications the library does
/// not say which one reported.
struct Unreported {
    const char* words;
    const char* path;
};
constexpr std::array kUnreported = {
    Unreported{"org.vorta.orvel-app +not reported", "org.vorta.orvel-app/"},
    Unreported{"org.vorta.orvel-app +not reported", "org.harbour.firstscreen/"},
    Unreported{"home screen data +not reported", "org.vorta.homedatacontrol-service/"},
    Unreported{"web applications +not reported", "web-applications.backup"},
    Unreported{"factory settings +not evaluated", "factory.backup"},
};

/// What the package of such a backup must hold. If memory is short, the hotel's channel list may be missing:
/// a television need not have one, and the library does not report why it is missing.
FileTree expectedOf(const Finished& backup, FileTree complete, bool memoryIsShort) {
    if (backup.status != ended::kDone) {
        return {};
    }
    if (memoryIsShort) {
        complete.erase("tvs-chms/hotel-channels.backup");
    }
    for (const auto& [words, path] : kUnreported) {
        if (std::regex_search(backup.output, std::regex(words))) {
            const std::string beginning = path;
            std::erase_if(complete, [&](const auto& entry) { return entry.first.rfind(beginning, 0) == 0; });
        }
    }
    return complete;
}

/// Whether the archive library ended the program because of missing memory.
bool wasEndedByTheArchiver(const Finished& finished) {
    return std::regex_search(finished.errors,
                             std::regex("Fatal Internal Error in libarchive: (No|Out of) memory"));
}

/// `mayDie` means that memory is short. Then a thread of a library may abort the program, or a system library
/// may crash it: the archive library writes to memory that it did not get. Our own code must not crash.
void expectDocumented(const Finished& finished, bool mayDie) {
    if (mayDie && finished.status == kCrashed) {
        EXPECT_THAT(finished.errors, ContainsRegex("crashed in (/usr)?/lib"));
        return;
    }
    if (mayDie && finished.status == kAborted) {
        return;
    }
    EXPECT_LE(finished.status, ended::kHighest) << textOf(finished);
    EXPECT_TRUE(finished.status == ended::kDone || finished.status == ended::kIncomplete ||
                !finished.errors.empty());
}

}  // namespace

FailingPointsTest::FailingPointsTest() {
    backUp(first);
    kept = complete = package();
}

Variables FailingPointsTest::refusing(const std::string& call, unsigned long nth, bool onwards) {
    Variables variables = {{"LD_PRELOAD", interposer("vx-call-refuser")},
                           {"VX_REFUSE", call},
                           {"VX_REFUSE_NTH", std::to_string(nth)}};
    if (onwards) {
        variables["VX_REFUSE_ON"] = "yes";
    }
    return variables;
}

unsigned long FailingPointsTest::callsOf(const std::string& call, const std::string& television,
                                         const std::vector<std::string>& arguments) const {
    Variables variables = refusing(call, 0, false);
    variables["VX_REFUSE_COUNT"] = "/tmp/count";
    const Finished finished = vxclone(television, arguments, variables);
    EXPECT_LE(finished.status, ended::kIncomplete) << textOf(finished);
    return std::stoul(readFile(std::filesystem::path(television) / "tmp/count"));
}

void FailingPointsTest::expectWholeBackup(const Variables& variables, bool mayDie) {
    const Finished backup = vxclone(first, {"backup", kPackage}, variables);
    expectDocumented(backup, mayDie);
    const bool died = backup.status > ended::kHighest || (mayDie && wasEndedByTheArchiver(backup));
    deaths += died ? 1 : 0;
    if ((!died && backup.status <= ended::kIncomplete) || package() != kept) {
        // A program that died may or may not have found out that something is lacking.
        const std::vector<int> statuses = died ? std::vector<int>{0, 1} : std::vector<int>{backup.status};
        EXPECT_TRUE(packageIsGood(expectedOf(backup, complete, mayDie), statuses)) << textOf(backup);
        kept = package();
    }
    for (const auto& [path, content] : onStick()) {
        EXPECT_THAT(path.substr(0, path.find('/')), AnyOf(Eq("clone"), Eq(".clone.vxclone-new"))) << path;
    }
}

void FailingPointsTest::expectHonestRestore(const Variables& variables, bool mayDie) const {
    const std::string before = settingsOf(second);
    const Finished restore = vxclone(second, {"restore", kPackage}, variables);
    expectDocumented(restore, mayDie);
    if (restore.status == ended::kDone) {
        EXPECT_EQ(settingsOf(second), settingsOf(first));
    } else if (restore.status == ended::kIncomplete && !(mayDie && wasEndedByTheArchiver(restore))) {
        EXPECT_THAT(textOf(restore), AnyOf(HasSubstr("not all of it"), HasSubstr("failed")));
    } else if (settingsOf(second) != before) {
        const Finished status = vxclone(second, {"status"});
        EXPECT_EQ(status.status, ended::kIncomplete) << textOf(restore) << textOf(status);
        EXPECT_THAT(status.output, HasSubstr("UNFINISHED")) << textOf(restore);
    }
}

void FailingPointsTest::expectNextRestoreIsGood() const {
    const Finished restore = vxclone(second, {"restore", kPackage});
    // If two outcomes are appended at the same moment, the library's list loses one. The application is then
    // called not applied.
    const bool lostOne = restore.status == ended::kIncomplete &&
                         restore.output.find("(failed or different: apps)") != std::string::npos;
    EXPECT_TRUE(restore.status == ended::kDone || lostOne) << textOf(restore);
    EXPECT_EQ(settingsOf(second), settingsOf(first));
}

void FailingPointsTest::expectNextBackupIsGood() {
    const Finished backup = vxclone(first, {"backup", kPackage});
    EXPECT_EQ(backup.status, ended::kDone) << textOf(backup);
    EXPECT_TRUE(packageIsGood(complete));
    EXPECT_TRUE(stickIsTidy());
    kept = package();
}

}  // namespace vxtest
