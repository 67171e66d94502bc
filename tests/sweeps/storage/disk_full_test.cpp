// Disks of a stick and of a television with every size from nothing to enough, in bytes and in files.

#include <algorithm>
#include <array>
#include <memory>

#include "tests/support/machine/exit_status.h"
#include "tests/sweeps/storage/small_disk.h"
#include "tests/sweeps/storage/storage_test.h"

namespace vxtest {
namespace {

using testing::AnyOf;
using testing::ContainsRegex;
using testing::HasSubstr;

constexpr int kPageBytes = 4096;

/// How much is missing, or that there is not room for a single folder.
constexpr const char* kNamesTheStick =
    "the package \\(.*\\) needs .*, the stick has |cannot write /media/usb/clone: No space left on device; "
    "free some space on the stick";

/// The unit in which a disk is limited: its option, and a sufficient size.
struct Measure {
    const char* name;
    const char* option;
    int unit;
    int enough;
    int leastForASession;  ///< the television itself does not start with less
    int enoughForARestore;
    std::array<int, 3> hard;  ///< rooms for a restore in which something that comes late may find none
    int roomForAnUndo;        ///< what the session and the names of files need

    friend void PrintTo(const Measure& measure, std::ostream* out) { *out << measure.name; }
};
constexpr Measure kBytes = {"bytes", "size=", kPageBytes, 64, 64, 2560, {115, 146, 1536}, 64};
constexpr Measure kFiles = {"files", "nr_inodes=", 1, 44, 24, 240, {60, 100, 130}, 80};

std::string sizeOption(const Measure& measure, int units) {
    return measure.option + std::to_string(units * measure.unit);
}

/// The free room to try for a restore; the last is sufficient.
std::vector<int> roomsForARestore(const Measure& measure) {
    const int step = measure.enoughForARestore / (isLongForm() ? 100 : 4);
    std::vector<int> rooms(measure.hard.begin(), measure.hard.end());
    for (int room = measure.leastForASession; room < measure.enoughForARestore; room += step) {
        rooms.push_back(room);
    }
    std::sort(rooms.begin(), rooms.end());
    rooms.push_back(measure.enoughForARestore);
    return rooms;
}

/// The sizes to try; the last is sufficient.
std::vector<int> sizesFrom(int least, int enough) {
    const int step = isLongForm() ? 1 : std::max(1, (enough - least) / 4);
    std::vector<int> sizes;
    for (int size = least; size < enough; size += step) {
        sizes.push_back(size);
    }
    sizes.push_back(enough);
    return sizes;
}

class DiskFullTest : public StorageTest, public testing::WithParamInterface<Measure> {
 protected:
    DiskFullTest() {
        run(program(first, {"backup", kPackage}));
        complete = package();
        std::filesystem::remove_all(std::filesystem::path(stick) / "clone");
    }

    /// Moves the television's /opt to a disk of its own with that much free room.
    std::unique_ptr<SmallDisk> smallDiskOf(const std::string& television, int room) const {
        const std::filesystem::path opt = std::filesystem::path(television) / "opt";
        const std::filesystem::path kept = place / "kept";
        if (!std::filesystem::exists(kept)) {
            std::filesystem::rename(opt, kept);
            std::filesystem::create_directory(opt);
        }
        auto disk = std::make_unique<SmallDisk>(opt, "size=64m");
        std::filesystem::copy(kept, opt, std::filesystem::copy_options::recursive);
        disk->leave(GetParam().option, GetParam().unit, room);
        return disk;
    }

    /// Moves the whole television, including its settings and log, to a disk of its own with that much free
    /// room.
    std::unique_ptr<SmallDisk> diskOfAll(const std::string& television, int room) const {
        const std::filesystem::path kept = place / "whole";
        if (!std::filesystem::exists(kept)) {
            std::filesystem::rename(television, kept);
            std::filesystem::create_directory(television);
        }
        auto disk = std::make_unique<SmallDisk>(television, "size=64m");
        std::filesystem::copy(kept, television, std::filesystem::copy_options::recursive);
        disk->leave(GetParam().option, GetParam().unit, room);
        return disk;
    }

    /// Expects a complete restore or none. After a complete one, expects an undo with less room than a
    /// package needs. Result: whether it was restored.
    bool restoreOrNothing(const SmallDisk& disk) const {
        const std::string before = settingsOf(second);
        const Finished restore = vxclone(second, {"restore", kPackage});
        if (restore.status != ended::kDone) {
            EXPECT_THAT(restore.status, AnyOf(ended::kStick, ended::kPlatformFailed)) << restore.output;
            EXPECT_THAT(restore.errors, ContainsRegex("free some space|nothing was changed"));
            EXPECT_EQ(settingsOf(second), before);
            return false;
        }
        EXPECT_EQ(settingsOf(second), settingsOf(first));
        const FileTree safety = below(snapshot(std::filesystem::path(second) / kApplicationData), "Safety");
        disk.leave(GetParam().option, GetParam().unit, GetParam().roomForAnUndo);
        const Finished undo = vxclone(second, {"undo"});
        EXPECT_EQ(undo.status, ended::kDone) << undo.output << undo.errors;
        EXPECT_EQ(settingsOf(second), before) << undo.output;
        EXPECT_EQ(below(snapshot(std::filesystem::path(second) / kApplicationData), "Safety"), safety);
        return true;
    }

    void expectFullStick(const Finished& backup, const FileTree& before) const {
        EXPECT_EQ(backup.status, ended::kStick) << backup.output << backup.errors;
        EXPECT_THAT(backup.errors, ContainsRegex(kNamesTheStick));
        EXPECT_EQ(onStick(), before);
    }

    /// A backup of the first television to a stick of this size. Result: whether the package exists.
    bool backUpOntoFull() const {
        const FileTree before = onStick();
        const Finished backup = vxclone(first, {"backup", kPackage});
        if (backup.status != ended::kDone) {
            expectFullStick(backup, before);
            return false;
        }
        EXPECT_TRUE(packageIsGood(complete));
        EXPECT_TRUE(stickIsTidy());
        return true;
    }

    FileTree complete;
};

TEST_P(DiskFullTest, stickHoldsThePackageOrNothing) {
    SweepPoints points(std::string("disk-full, stick, ") + GetParam().name);
    bool done = false;
    for (const int size : sizesFrom(1, GetParam().enough)) {
        SCOPED_TRACE(size);
        const SmallDisk disk(stick, sizeOption(GetParam(), size));
        done = backUpOntoFull();
        points.tried();
    }
    EXPECT_TRUE(done);
}

TEST_P(DiskFullTest, stickKeepsTheOldPackageUntilThereIsRoomForBoth) {
    SweepPoints points(std::string("disk-full, stick with a package, ") + GetParam().name);
    bool done = false;
    for (const int room : sizesFrom(0, GetParam().enough)) {
        SCOPED_TRACE(room);
        const SmallDisk disk(stick, "size=64m");
        backUp(judge);
        disk.leave(GetParam().option, GetParam().unit, room);
        done = backUpOntoFull();
        points.tried();
    }
    EXPECT_TRUE(done);
}

TEST_P(DiskFullTest, televisionWithoutRoomIsNotCalledBackedUp) {
    SweepPoints points(std::string("disk-full, television, backup, ") + GetParam().name);
    backUp(judge);
    int last = -1;
    for (const int room : sizesFrom(0, GetParam().enough)) {
        SCOPED_TRACE(room);
        const auto disk = smallDiskOf(first, room);
        const FileTree before = onStick();
        const Finished backup = vxclone(first, {"backup", kPackage});
        last = backup.status;
        if (last == ended::kDone) {
            EXPECT_TRUE(packageIsGood(complete));
        } else if (last == ended::kIncomplete) {
            EXPECT_THAT(backup.output, HasSubstr("The backup is incomplete (failed: "));
            EXPECT_TRUE(packageIsGood({}, {ended::kIncomplete}));
        } else {
            EXPECT_THAT(last, AnyOf(ended::kStick, ended::kPlatformFailed)) << backup.output;
            EXPECT_THAT(backup.errors,
                        ContainsRegex("television.*free some space|free some space.*television"));
            EXPECT_EQ(onStick(), before);
        }
        EXPECT_TRUE(stickIsTidy());
        points.tried();
    }
    EXPECT_EQ(last, ended::kDone);
}

TEST_P(DiskFullTest, televisionWithoutRoomIsRestoredOrUnchanged) {
    SweepPoints points(std::string("disk-full, television, restore, ") + GetParam().name);
    backUp(first);
    bool done = false;
    for (const int room : roomsForARestore(GetParam())) {
        SCOPED_TRACE(room);
        const auto disk = diskOfAll(second, room);
        done = restoreOrNothing(*disk);
        points.tried();
    }
    EXPECT_TRUE(done);
}

INSTANTIATE_TEST_SUITE_P(Of, DiskFullTest, testing::Values(kBytes, kFiles),
                         [](const auto& measure) { return measure.param.name; });

}  // namespace
}  // namespace vxtest
