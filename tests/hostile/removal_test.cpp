// Mounts in a tree that is removed, from the beginning or during the removal.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/television/library_engine.h"
#include "cloning_app/verbs/backup.h"
#include "common/tree_removal.h"
#include "tests/hostile/stage.h"
#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/recording_view.h"
#include "virtual_tv/factory/destruction.h"

namespace {

/// Called before each removal of an entry.
thread_local std::function<void()> beforeEachRemoval;

}  // namespace

/// Replaces the system library's function in this program.
extern "C" int unlinkat(int directory, const char* name, int flags) noexcept {
    if (beforeEachRemoval) {
        const auto hook = std::exchange(beforeEachRemoval, nullptr);
        hook();
        beforeEachRemoval = hook;
    }
    return static_cast<int>(syscall(SYS_unlinkat, directory, name, flags));
}

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* kNotAllowedHere = "mounting is not allowed here";

/// A tree of folders and files. Something can be mounted at each folder.
std::vector<std::string> makeTree(const fs::path& tree) {
    std::vector<std::string> folders;
    const std::vector<std::string> names = {"a", "sp ace", "z\nline", std::string(200, 'n'), "\xff"};
    std::string inside;
    for (const std::string& name : names) {
        for (const std::string& folder : {inside + name, inside + name + "-side"}) {
            writeFile(tree / folder / "first", std::string(inside.size() * 100, 'x'));
            writeFile(tree / folder / "second", "");
            folders.push_back(folder);
        }
        inside += name + "/";
    }
    return folders;
}

/// Mounts another file system, or a part of the same one.
bool mountAt(const fs::path& place, const fs::path& theirs, bool bind) {
    const bool mounted = bind ? mount(theirs.c_str(), place.c_str(), nullptr, MS_BIND, nullptr) == 0
                              : mount("none", place.c_str(), "tmpfs", 0, "size=64k") == 0;
    if (mounted && !bind) {
        writeFile(place / "theirs", "x");
    }
    return mounted;
}

class HostileRemovalTest : public testing::Test {
 protected:
    HostileRemovalTest() { writeFile(theirs() / "theirs", "x"); }

    fs::path theirs() const { return place_ / "elsewhere"; }
    fs::path tree() const { return place_ / "tree"; }
    int descriptor() const { return open(place_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }

    TemporaryDirectory place_;
};

TEST_F(HostileRemovalTest, mountInAnyFolderIsRefusedBeforeAnythingGoes) {
    const bool allowed = withOwnMounts([this] {
        const std::vector<std::string> folders = makeTree(tree());
        const FileTree before = snapshot(tree());
        for (const bool bind : {false, true}) {
            for (const std::string& folder : folders) {
                ASSERT_TRUE(mountAt(tree() / folder, theirs(), bind)) << folder;
                const auto removal = vxcommon::removeTree(tree());
                EXPECT_TRUE(fs::exists(tree() / folder / "theirs")) << folder;
                ASSERT_EQ(umount((tree() / folder).c_str()), 0);
                ASSERT_FALSE(removal) << folder;
                EXPECT_EQ(removal.error().path, "tree/" + folder);
                EXPECT_EQ(removal.error().reason, EXDEV);
                EXPECT_EQ(snapshot(tree()), before) << folder;
            }
        }
    });
    if (!allowed) {
        GTEST_SKIP() << kNotAllowedHere;
    }
}

/// If something is mounted at the folder before the removal of entry number `moment`, all of it exists
/// afterwards.
void expectSafe(const fs::path& tree, const fs::path& theirs, const std::string& folder, int moment,
                bool bind) {
    bool mounted = false;
    int removals = 0;
    beforeEachRemoval = [&] {
        if (removals++ == moment && fs::exists(tree / folder)) {
            mounted = mountAt(tree / folder, theirs, bind);
        }
    };
    const auto removal = vxcommon::removeTree(tree);
    beforeEachRemoval = nullptr;
    if (mounted) {
        EXPECT_TRUE(fs::exists(tree / folder / "theirs")) << folder << ", moment " << moment;
        EXPECT_EQ(umount((tree / folder).c_str()), 0);
        ASSERT_FALSE(removal) << folder << ", moment " << moment;
        EXPECT_EQ(removal.error().reason, EXDEV) << folder << ", moment " << moment;
        EXPECT_EQ(removal.error().path, "tree/" + folder);
    } else {
        EXPECT_TRUE(removal) << folder << ", moment " << moment;
    }
    EXPECT_TRUE(fs::exists(theirs / "theirs"));
}

TEST_F(HostileRemovalTest, mountThatAppearsAtAnyMomentEndsTheRemoval) {
    int tried = 0;
    const bool allowed = withOwnMounts([this, &tried] {
        const int step = isLongForm() ? 1 : 5;
        const std::vector<std::string> folders = makeTree(tree());
        const int removals = static_cast<int>(folders.size()) * 3 + 1;
        for (int moment = 0; moment < removals; moment += step) {
            for (std::size_t number = static_cast<std::size_t>(moment) % 3; number < folders.size();
                 number += isLongForm() ? 1U : 3U) {
                for (const bool bind : {false, true}) {
                    fs::remove_all(tree());
                    makeTree(tree());
                    expectSafe(tree(), theirs(), folders[number], moment, bind);
                    ++tried;
                }
            }
        }
    });
    if (!allowed) {
        GTEST_SKIP() << kNotAllowedHere;
    }
    EXPECT_GT(tried, 40);
}

TEST_F(HostileRemovalTest, folderThatIsMovedOutMeanwhileDoesNotLeadTheRemovalOutOfTheTree) {
    for (int moment = 0; moment < 8; ++moment) {
        fs::remove_all(tree());
        fs::remove_all(place_ / "out");
        writeFile(place_ / "out/kept", "x");
        writeFile(tree() / "a/b/one", "x");
        writeFile(tree() / "a/b/two", "x");
        writeFile(tree() / "a/three", "x");
        int removals = 0;
        beforeEachRemoval = [&] {
            std::error_code gone;
            if (removals++ == moment) {
                fs::rename(tree() / "a/b", place_ / "out/b", gone);
            }
        };
        static_cast<void>(vxcommon::removeTree(tree()));
        beforeEachRemoval = nullptr;
        EXPECT_TRUE(fs::exists(place_ / "out/kept")) << moment;
    }
}

vxclone::Result<vxclone::Report> backUpHere(const fs::path& folder) {
    vxclone::LibraryEngine engine;
    RecordingView view;
    const vxclone::StopFlag stop;
    const vxclone::CloneContext context{engine, view, stop, vxclone::kCloneRoot};
    vxclone::BackupOptions options;
    options.onThisDisk = true;
    return vxclone::runBackup(context, folder, options);
}

TEST_F(HostileRemovalTest, backupOverAPackageWithAMountIsRefusedAndNamesIt) {
    const Stage& stage = Stage::instance();
    const bool allowed = withOwnMounts([&] {
        for (const char* const folder : {"logo", "vconf", "VXHotel"}) {
            for (const bool bind : {false, true}) {
                stage.layPackage();
                const FileTree before = snapshot(stage.package());
                const fs::path mounted = stage.package() / folder;
                ASSERT_TRUE(mountAt(mounted, theirs(), bind));
                const auto report = backUpHere(stage.package());
                EXPECT_TRUE(fs::exists(mounted / "theirs"));
                ASSERT_EQ(umount(mounted.c_str()), 0);
                ASSERT_FALSE(report);
                EXPECT_EQ(report.error().code, vxclone::ErrorCode::UnsafeEntry);
                EXPECT_EQ(report.error().sentence,
                          "another file system is mounted at " + mounted.string() +
                              ", and what lies on it is not removed; unmount it (umount " + mounted.string() +
                              ") and try again");
                EXPECT_EQ(snapshot(stage.package()), before);
            }
        }
    });
    if (!allowed) {
        GTEST_SKIP() << kNotAllowedHere;
    }
}

TEST_F(HostileRemovalTest, leftoverOfManyFoldersDepthDoesNotStopABackup) {
    const Stage& stage = Stage::instance();
    for (const int depth : {1, 199, 201, 600}) {
        stage.layPackage();
        const fs::path leftover = stage.stick() / ".clone.vxclone-new";
        fs::create_directory(leftover);
        int at = open(leftover.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int level = 0; level < depth; ++level) {
            ASSERT_EQ(mkdirat(at, "deep", 0700), 0);
            const int below = openat(at, "deep", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            close(at);
            at = below;
        }
        close(at);
        const auto report = backUpHere(stage.package());
        ASSERT_TRUE(report) << depth << ": " << report.error().sentence;
        EXPECT_TRUE(fs::exists(stage.package() / "manifest.json")) << depth;
        EXPECT_FALSE(fs::exists(leftover)) << depth;
    }
}

TEST_F(HostileRemovalTest, televisionWithAMountIsNotDestroyedAndTheMountIsNamed) {
    const fs::path television = place_ / "tv";
    const Finished made = Stage::instance().vxtv({"create", television, "--profile", "room-101"});
    ASSERT_EQ(made.status, 0) << made.errors;
    const bool allowed = withOwnMounts([&] {
        const FileTree before = snapshot(television);
        fs::create_directories(television / "media/usb");
        for (const char* const folder : {"media", "media/usb", "opt/usr/data/hotel/homemenu", "log", ""}) {
            for (const bool bind : {false, true}) {
                const fs::path mounted = *folder == '\0' ? television : television / folder;
                if (mounted == television && !bind) {
                    continue;
                }
                ASSERT_TRUE(mountAt(mounted, mounted == television ? television : theirs(), bind)) << folder;
                const auto destroyed = vxtv::destroyTelevision(television);
                ASSERT_EQ(umount(mounted.c_str()), 0);
                ASSERT_FALSE(destroyed) << folder;
                EXPECT_EQ(destroyed.error().sentence,
                          television.string() + " is not removed: another file system is mounted at " +
                              mounted.string() + "; unmount it (umount " + mounted.string() +
                              ") and try again");
                FileTree after = snapshot(television);
                after.erase("media/usb");
                after.erase("media/usb/");
                EXPECT_EQ(after, before) << folder;
            }
        }
    });
    if (!allowed) {
        GTEST_SKIP() << kNotAllowedHere;
    }
    EXPECT_TRUE(vxtv::destroyTelevision(television));
    EXPECT_FALSE(fs::exists(television));
}

}  // namespace
}  // namespace vxtest
