// Links, pipes and other impostors at the places that a run or the television itself reads and writes.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/hostile/damage.h"
#include "tests/hostile/stage.h"
#include "tests/support/machine/thread_sanitizer.h"
#include "tests/support/machine/tool_paths.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Arguments = std::vector<std::string>;

constexpr const char* kHomeMenu = "opt/usr/data/hotel/homemenu";
constexpr const char* kUnsafeTelevision = "unsafe-television";

/// Every command that starts the library, or checks what the library would find.
const std::vector<Arguments>& runs() {
    static const std::vector<Arguments> all = {{"backup", "/media/usb/new"},
                                               {"restore", "/media/usb/clone"},
                                               {"restore", "/media/usb/clone", "--no-safety"},
                                               {"restore", "/media/usb/clone", "--only", "home-menu"},
                                               {"restore", "/media/usb/clone", "--dry-run"},
                                               {"diff", "/media/usb/clone"},
                                               {"undo"}};
    return all;
}

std::string joined(const Arguments& arguments) {
    std::string text;
    for (const std::string& argument : arguments) {
        text += argument + " ";
    }
    return text;
}

TEST(HostilePlacesTest, impostorInTheHomeMenuIsRefusedByNameAndLeadsNowhere) {
    Stage& stage = Stage::instance();
    const fs::path menu = stage.there().folder() / kHomeMenu;
    // A name of the package, through which a restore would write, and a name that only a backup would read.
    const Arguments names = {fs::directory_iterator(stage.good() / "VXHotel")->path().filename(), "other"};
    std::size_t number = 0;
    for (const NamedImpostor& impostor : specialImpostors()) {
        for (const std::string& name : names) {
            for (const Arguments& arguments : runs()) {
                // In the short form each impostor is tried with some of the commands, and each command with
                // some impostors.
                if (!isLongForm() && number++ % 5 != 0) {
                    continue;
                }
                SCOPED_TRACE(joined(arguments) + impostor.name + " at " + name);
                stage.layPackage();
                const FileTree kept = snapshot(menu);
                writeFile(menu / name, "x");
                if (!replaceBy(menu / name, impostor.kind, stage.bait() / "secret.txt")) {
                    fs::remove(menu / name);
                    continue;
                }
                stage.there().makeReady();
                const FileTree before = stage.there().state();
                const FileTree stick = snapshot(stage.stick());
                const FileTree bait = snapshot(stage.bait());
                Arguments all = arguments;
                all.emplace_back("--json");
                const Finished finished = stage.vxclone(all);
                EXPECT_FALSE(finished.timedOut);
                EXPECT_EQ(finished.status, 10) << finished.output << finished.errors;
                EXPECT_THAT(finished.output, HasSubstr(kUnsafeTelevision));
                EXPECT_THAT(finished.output, HasSubstr("/opt/usr/data/hotel/homemenu/" + name));
                EXPECT_EQ(stage.there().state(), before);
                EXPECT_EQ(snapshot(stage.stick()), stick);
                EXPECT_EQ(snapshot(stage.bait()), bait);
                fs::remove(menu / name);
                for (const auto& [file, content] : kept) {
                    writeFile(menu / file, content);
                }
            }
        }
    }
}

/// An impostor at the place of one of the television's own files.
struct OwnFile {
    const char* file;
    std::vector<Arguments> commands;  ///< of vxtv; TV stands for the television
};

TEST(HostilePlacesTest, ownFileOfATelevisionThatIsAnImpostorIsNeitherFollowedNorWaitedFor) {
    Stage& stage = Stage::instance();
    const TemporaryDirectory place;
    const std::string television = place / "tv";
    ASSERT_EQ(stage.vxtv({"create", television, "--profile", "room-101"}).status, 0);
    const std::vector<OwnFile> files = {
        {"log/calls.jsonl",
         {{"calls", television}, {"calls", television, "--clear"}, {"run", television, "--quiet", "true"}}},
        {"log/dlog.txt", {{"log", television}, {"run", television, "--quiet", "true"}}},
        {"run/session.lock", {{"run", television, "--quiet", "true"}}},
        {"run/bus.lock", {{"run", television, "--quiet", "true"}}},
        {"tv.db-wal", {{"get", television, "volume"}, {"info", television}}},
    };
    for (const OwnFile& own : files) {
        for (const NamedImpostor& impostor : specialImpostors()) {
            for (const Arguments& arguments : own.commands) {
                SCOPED_TRACE(joined(arguments) + impostor.name + " at " + own.file);
                const fs::path file = fs::path(television) / own.file;
                writeFile(file, "");
                if (!replaceBy(file, impostor.kind, stage.bait() / "secret.txt")) {
                    continue;
                }
                const FileTree bait = snapshot(stage.bait());
                const Finished finished = stage.vxtv(arguments);
                EXPECT_FALSE(finished.timedOut);
                EXPECT_LT(finished.status, 126) << finished.errors;
                EXPECT_THAT(finished.output + finished.errors, testing::Not(HasSubstr("BAIT")));
                EXPECT_EQ(snapshot(stage.bait()), bait);
                fs::remove(file);
            }
        }
    }
}

TEST(HostilePlacesTest, linkedFolderOfATelevisionIsNotWrittenThrough) {
    Stage& stage = Stage::instance();
    for (const char* const own : {"log", "run", "secure", "tmp", "media", "opt"}) {
        SCOPED_TRACE(own);
        const TemporaryDirectory place;
        const fs::path television = place / "tv";
        ASSERT_EQ(stage.vxtv({"create", television, "--profile", "room-101"}).status, 0);
        fs::rename(television / own, place / "theirs");
        fs::create_directory_symlink(place / "theirs", television / own);
        const FileTree theirs = snapshot(place / "theirs");
        for (const Arguments& arguments : {Arguments{"calls", television, "--clear"},
                                           {"log", television},
                                           {"set", television, "volume", "3"},
                                           {"run", television, "--quiet", "true"}}) {
            const Finished finished = stage.vxtv(arguments);
            EXPECT_FALSE(finished.timedOut);
            EXPECT_NE(finished.status, 0) << joined(arguments);
            EXPECT_THAT(finished.errors, HasSubstr((television / own).string() + " is a link"));
        }
        EXPECT_EQ(snapshot(place / "theirs"), theirs);
    }
}

TEST(HostilePlacesTest, closedStandardDescriptorsLeaveEveryFileAsItWouldBe) {
    Stage& stage = Stage::instance();
    const fs::path data = stage.there().cloneRoot().parent_path();
    for (const char* const closed : {"<&-", ">&-", "2>&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
        SCOPED_TRACE(closed);
        stage.layPackage();
        const Finished finished =
            stage.inTelevision({"/bin/sh", "-c", "exec \"$0\" verify /media/usb/clone " + std::string(closed),
                                vxcloneProgram().string()});
        EXPECT_FALSE(finished.timedOut);
        for (const auto& [name, content] : snapshot(data)) {
            EXPECT_THAT(content, testing::Not(HasSubstr("verified"))) << name;
            EXPECT_THAT(content, testing::Not(HasSubstr("vxclone:"))) << name;
        }
    }
}

TEST(HostilePlacesTest, fileSizeLimitEndsABackupWithAStatusAndKeepsThePackage) {
    VX_SKIP_IF_PROGRAMS_WRITE_AT_THEIR_START();
    Stage& stage = Stage::instance();
    for (const int blocks :
         isLongForm() ? std::vector<int>{0, 1, 2, 4, 8, 16, 32, 64, 128, 256} : std::vector<int>{0, 4, 64}) {
        SCOPED_TRACE(blocks);
        stage.layPackage();
        const FileTree before = snapshot(stage.package());
        const Finished finished = stage.inTelevision(
            {"/bin/sh", "-c", "ulimit -f " + std::to_string(blocks) + "; exec \"$0\" backup /media/usb/clone",
             vxcloneProgram().string()});
        EXPECT_FALSE(finished.timedOut);
        EXPECT_LE(finished.status, 10) << finished.output << finished.errors;
        if (finished.status != 0) {
            EXPECT_EQ(snapshot(stage.package()), before) << finished.output << finished.errors;
        }
    }
}

}  // namespace
}  // namespace vxtest
