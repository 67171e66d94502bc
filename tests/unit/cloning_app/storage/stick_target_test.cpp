#include "cloning_app/storage/stick_target.h"

#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::HasSubstr;

/// The real calls, except that the nth of one kind fails.
struct FailingCall {
    enum Kind { Nothing, Write, Flush, Rename, MakeFolder };
    Kind kind = Nothing;
    int nth = 0;
    int reason = EIO;
    int seen = 0;

    bool strikes(Kind now) {
        if (now != kind || ++seen != nth) {
            return false;
        }
        errno = reason;
        return true;
    }
};

DiskCalls callsWith(FailingCall& failing, bool exchanges) {
    const DiskCalls real = realDiskCalls();
    DiskCalls calls;
    calls.write = [&failing, real](int descriptor, const void* data, std::size_t size) -> ssize_t {
        return failing.strikes(FailingCall::Write) ? -1 : real.write(descriptor, data, size);
    };
    calls.flush = [&failing, real](int descriptor) {
        return failing.strikes(FailingCall::Flush) ? -1 : real.flush(descriptor);
    };
    calls.makeFolder = [&failing, real](int directory, const char* name) {
        return failing.strikes(FailingCall::MakeFolder) ? -1 : real.makeFolder(directory, name);
    };
    calls.rename = [&failing, real, exchanges](int directory, const char* from, const char* to,
                                               unsigned flags) {
        if (failing.strikes(FailingCall::Rename)) {
            return -1;
        }
        if (flags == RENAME_EXCHANGE && !exchanges) {
            errno = EINVAL;
            return -1;
        }
        return real.rename(directory, from, to, flags);
    };
    return calls;
}

/// In these tests a package is complete if its settings file is not empty.
bool isWhole(const Tree& package) {
    struct stat facts {};
    return fstatat(package.descriptor, "vconf/Vconf.json", &facts, 0) == 0 && facts.st_size != 0;
}

class StickTargetTest : public testing::Test {
 protected:
    using Content = std::map<std::string, std::string>;

    StickTarget open(DiskCalls calls = realDiskCalls()) {
        auto target = StickTarget::open(stick_ / "clone", std::move(calls));
        EXPECT_TRUE(target) << target.error().sentence;
        return std::move(*target);
    }

    static Result<void> replace(StickTarget& target) {
        auto replacement = Replacement::begin(target);
        if (!replacement) {
            return tl::make_unexpected(replacement.error());
        }
        writeFile(std::filesystem::path(target.path()).parent_path() / ".clone.vxclone-new/vconf/Vconf.json",
                  "new");
        return replacement->commit();
    }

    static ErrorCode errorOf(const std::filesystem::path& folder) {
        const auto target = StickTarget::open(folder);
        EXPECT_FALSE(target);
        return target ? ErrorCode::Internal : target.error().code;
    }

    Content oldPackage() {
        writeFile(stick_ / "clone/vconf/Vconf.json", "old");
        return contentOf(stick_.path());
    }

    TestFolder stick_;
    const Content newPackage_ = {{"clone", "/"}, {"clone/vconf", "/"}, {"clone/vconf/Vconf.json", "new"}};
};

TEST_F(StickTargetTest, openOfMissingStickAsksWhetherItIsPluggedIn) {
    const auto target = StickTarget::open(stick_ / "gone/clone");
    ASSERT_FALSE(target);
    EXPECT_EQ(target.error().code, ErrorCode::StickMissing);
    EXPECT_THAT(target.error().sentence, HasSubstr("is the stick plugged in?"));
}

TEST_F(StickTargetTest, openOfRootOrMountPointAsksForAFolderOnIt) {
    EXPECT_EQ(errorOf("/"), ErrorCode::MountPoint);
    EXPECT_EQ(errorOf("//"), ErrorCode::MountPoint);
    const auto target = StickTarget::open("/proc/");
    ASSERT_FALSE(target);
    EXPECT_EQ(target.error().code, ErrorCode::MountPoint);
    EXPECT_THAT(target.error().sentence, HasSubstr("/proc/clone"));
}

TEST_F(StickTargetTest, openOfEmptyNameIsRefused) {
    EXPECT_EQ(errorOf(""), ErrorCode::BadArguments);
}

TEST_F(StickTargetTest, openWithSlashesDotsOrRelativeFindsTheFolder) {
    oldPackage();
    for (const std::string& ending :
         {std::string("/"), std::string("///"), std::string("/."), std::string("/vconf/..")}) {
        const auto target = StickTarget::open(stick_.path().string() + "/clone" + ending);
        ASSERT_TRUE(target) << ending;
        EXPECT_EQ(target->path(), std::filesystem::canonical(stick_ / "clone").string());
    }
    const auto relative = std::filesystem::relative(stick_ / "clone");
    const auto target = StickTarget::open(relative);
    ASSERT_TRUE(target);
    EXPECT_TRUE(target->openPackage());
}

TEST_F(StickTargetTest, replaceableFoldersAreMissingEmptyOrPackages) {
    StickTarget target = open();
    EXPECT_TRUE(target.checkReplaceable());
    std::filesystem::create_directory(stick_ / "clone");
    writeFile(stick_ / "clone/.DS_Store", "x");
    EXPECT_TRUE(target.checkReplaceable());
    writeFile(stick_ / "clone/photo.jpg", "x");
    const auto photos = target.checkReplaceable();
    ASSERT_FALSE(photos);
    EXPECT_EQ(photos.error().code, ErrorCode::NotAPackage);
    EXPECT_THAT(photos.error().sentence, HasSubstr("choose another folder"));
    std::filesystem::create_directory(stick_ / "clone/tvtimer");
    EXPECT_TRUE(target.checkReplaceable());
}

TEST_F(StickTargetTest, linkOrFileIsNeitherReplacedNorRead) {
    const TestFolder elsewhere;
    writeFile(elsewhere / "vconf/Vconf.json", "{}");
    std::filesystem::create_directory_symlink(elsewhere.path(), stick_ / "clone");
    EXPECT_EQ(open().checkReplaceable().error().code, ErrorCode::NotAPackage);
    EXPECT_EQ(open().openPackage().error().code, ErrorCode::NotAPackage);
    std::filesystem::remove(stick_ / "clone");
    writeFile(stick_ / "clone", "x");
    EXPECT_EQ(open().checkReplaceable().error().code, ErrorCode::NotAPackage);
    EXPECT_EQ(open().openPackage().error().code, ErrorCode::NotAPackage);
}

TEST_F(StickTargetTest, openPackageOfWhatIsNoneIsRefused) {
    EXPECT_EQ(open().openPackage().error().code, ErrorCode::NotAPackage);
    std::filesystem::create_directory(stick_ / "clone");
    EXPECT_THAT(open().openPackage().error().sentence, HasSubstr("is empty"));
    writeFile(stick_ / "clone/photo.jpg", "x");
    EXPECT_THAT(open().openPackage().error().sentence, HasSubstr("is not a clone package"));
    writeFile(stick_ / "clone/vconf/Vconf.json", "{}");
    EXPECT_TRUE(open().openPackage());
}

TEST_F(StickTargetTest, commitPutsTheNewPackageInPlaceWithoutLeftovers) {
    for (const bool exchanges : {true, false}) {
        FailingCall none;
        StickTarget target = open(callsWith(none, exchanges));
        ASSERT_TRUE(replace(target));
        EXPECT_EQ(contentOf(stick_.path()), newPackage_);
        writeFile(stick_ / "clone/old", "x");
        ASSERT_TRUE(replace(target));
        EXPECT_EQ(contentOf(stick_.path()), newPackage_);
        std::filesystem::remove_all(stick_ / "clone");
    }
}

TEST_F(StickTargetTest, replacementThatIsNotCommittedLeavesTheOldPackageAlone) {
    const Content before = oldPackage();
    StickTarget target = open();
    { ASSERT_TRUE(Replacement::begin(target)); }
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, anyCallOfACommitFailingLeavesOneWholePackage) {
    for (const bool exchanges : {true, false}) {
        for (const auto kind : {FailingCall::MakeFolder, FailingCall::Rename, FailingCall::Flush}) {
            bool failed = true;
            for (int nth = 1; failed; ++nth) {
                ASSERT_LT(nth, 10);
                std::filesystem::remove_all(stick_ / "clone");
                const Content before = oldPackage();
                FailingCall failing{kind, nth};
                StickTarget target = open(callsWith(failing, exchanges));
                const auto replaced = replace(target);
                failed = !replaced;
                const bool old = contentOf(stick_.path()) == before;
                const bool lastFlush = kind == FailingCall::Flush && nth == 2;
                EXPECT_EQ(old, failed && !lastFlush) << kind << ' ' << nth << ' ' << exchanges;
                EXPECT_EQ(contentOf(stick_.path()) == newPackage_, !failed || lastFlush);
            }
        }
    }
}

TEST_F(StickTargetTest, flushFailingIntoAnEmptyPlaceLeavesNothing) {
    FailingCall failing{FailingCall::Flush, 1};
    StickTarget target = open(callsWith(failing, true));
    EXPECT_FALSE(replace(target));
    EXPECT_TRUE(std::filesystem::is_empty(stick_.path()));
}

TEST_F(StickTargetTest, busyFolderIsReportedAsAMountPoint) {
    oldPackage();
    FailingCall failing{FailingCall::Rename, 1, EBUSY};
    StickTarget target = open(callsWith(failing, true));
    EXPECT_EQ(replace(target).error().code, ErrorCode::MountPoint);
}

TEST_F(StickTargetTest, readOnlyStickIsNamed) {
    FailingCall failing{FailingCall::MakeFolder, 1, EROFS};
    StickTarget target = open(callsWith(failing, true));
    EXPECT_EQ(replace(target).error().code, ErrorCode::StickReadOnly);
}

TEST_F(StickTargetTest, recoverOfNothingSaysNothing) {
    const Content before = oldPackage();
    StickTarget target = open();
    const auto said = target.recover(isWhole);
    ASSERT_TRUE(said);
    EXPECT_FALSE(*said);
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, recoverOfAPartBesideThePackageRemovesIt) {
    const Content before = oldPackage();
    writeFile(stick_ / ".clone.vxclone-new/vconf/Vconf.json", "half");
    StickTarget target = open();
    const auto said = target.recover(isWhole);
    ASSERT_TRUE(said && *said);
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, recoverOfAPackageMovedAsideBringsItBack) {
    const Content before = oldPackage();
    std::filesystem::rename(stick_ / "clone", stick_ / ".clone.vxclone-old");
    writeFile(stick_ / ".clone.vxclone-new/vconf/Vconf.json", "new");
    StickTarget target = open();
    const auto said = target.recover(isWhole);
    ASSERT_TRUE(said && *said);
    EXPECT_THAT(**said, HasSubstr("is back"));
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, recoverOfAnOldPackageBesideTheNewOneRemovesTheOld) {
    const Content before = oldPackage();
    writeFile(stick_ / ".clone.vxclone-old/vconf/Vconf.json", "older");
    StickTarget target = open();
    ASSERT_TRUE(target.recover(isWhole));
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, recoverOfAPackageMovedAsideReplacesAnEmptyFolder) {
    const Content before = oldPackage();
    std::filesystem::rename(stick_ / "clone", stick_ / ".clone.vxclone-old");
    std::filesystem::create_directory(stick_ / "clone");
    StickTarget target = open();
    ASSERT_TRUE(target.recover(isWhole));
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, recoverKeepsThePackageThatWasMovedAsideUnlessAWholeOneStandsAtItsName) {
    for (const std::string kind :
         {"empty file", "dangling link", "file", "damaged package", "other folder"}) {
        SCOPED_TRACE(kind);
        writeFile(stick_ / ".clone.vxclone-old/vconf/Vconf.json", "old");
        if (kind == "dangling link") {
            std::filesystem::create_symlink("nowhere", stick_ / "clone");
        } else {
            const std::string inside = kind == "damaged package" ? "/vconf/Vconf.json" : "/pictures/summer";
            const bool isFile = kind.find("file") != std::string::npos;
            writeFile(stick_ / ("clone" + (isFile ? "" : inside)), kind == "file" ? "x" : "");
        }
        const Content before = contentOf(stick_.path());
        StickTarget target = open();
        const auto said = target.recover(isWhole);
        ASSERT_FALSE(said);
        EXPECT_EQ(said.error().code, ErrorCode::NotAPackage);
        EXPECT_EQ(said.error().sentence,
                  "a backup was interrupted: the previous package is .clone.vxclone-old in " +
                      stick_.path().string() + ", and " + (stick_ / "clone").string() +
                      " is no whole package; move one of the two away and back up again");
        EXPECT_EQ(contentOf(stick_.path()), before);
        std::filesystem::remove_all(stick_ / "clone");
    }
}

TEST_F(StickTargetTest, leftoverOfABackupThatGoesOnIsNotTouched) {
    oldPackage();
    StickTarget first = open();
    const auto going = Replacement::begin(first);
    ASSERT_TRUE(going);
    writeFile(stick_ / ".clone.vxclone-new/part", "x");
    const Content before = contentOf(stick_.path());
    StickTarget second = open();
    const std::string wanted =
        "another vxclone is writing a backup to " + (stick_ / "clone").string() + "; wait for its end";
    for (const Error& error : {second.recover(isWhole).error(), Replacement::begin(second).error()}) {
        EXPECT_EQ(error.code, ErrorCode::TelevisionBusy);
        EXPECT_EQ(error.sentence, wanted);
    }
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, packageThatIsBeingRemovedAfterABackupIsNotTouched) {
    oldPackage();
    std::filesystem::rename(stick_ / "clone", stick_ / ".clone.vxclone-old");
    const Descriptor other(::open((stick_ / ".clone.vxclone-old").c_str(), kOpenFolder));
    ASSERT_EQ(flock(other.get(), LOCK_EX), 0);
    StickTarget target = open();
    EXPECT_EQ(target.recover(isWhole).error().code, ErrorCode::TelevisionBusy);
    EXPECT_TRUE(std::filesystem::exists(stick_ / ".clone.vxclone-old/vconf/Vconf.json"));
}

TEST_F(StickTargetTest, readingMeansThePackageMovedAsideAndChangesNothing) {
    oldPackage();
    std::filesystem::rename(stick_ / "clone", stick_ / ".clone.vxclone-old");
    const Content before = contentOf(stick_.path());
    StickTarget target = open();
    const auto said = target.meanWhatWasSetAside();
    ASSERT_TRUE(said && *said);
    EXPECT_EQ(**said, "A backup to " + (stick_ / "clone").string() +
                          " was interrupted: the previous package beside it is meant.");
    EXPECT_TRUE(target.openPackage());
    EXPECT_EQ(target.path(), (stick_ / ".clone.vxclone-old").string());
    EXPECT_EQ(contentOf(stick_.path()), before);
}

TEST_F(StickTargetTest, readingMeansThePackageAtTheNameWhereThereIsOne) {
    oldPackage();
    writeFile(stick_ / ".clone.vxclone-old/vconf/Vconf.json", "older");
    StickTarget target = open();
    const auto said = target.meanWhatWasSetAside();
    ASSERT_TRUE(said);
    EXPECT_FALSE(*said);
    EXPECT_EQ(target.path(), (stick_ / "clone").string());
}

TEST_F(StickTargetTest, recoverOfALinkWithALeftoversNameRemovesTheLinkOnly) {
    const TestFolder elsewhere;
    writeFile(elsewhere / "kept", "x");
    std::filesystem::create_directory_symlink(elsewhere.path(), stick_ / ".clone.vxclone-old");
    StickTarget target = open();
    ASSERT_TRUE(target.recover(isWhole));
    EXPECT_TRUE(std::filesystem::is_empty(stick_.path()));
    EXPECT_TRUE(std::filesystem::exists(elsewhere / "kept"));
}

TEST_F(StickTargetTest, stickMountedReadOnlyIsRefusedForABackupAndServesARestore) {
    const bool allowed = withOwnMounts([this] {
        ASSERT_EQ(mount("tmpfs", stick_.path().c_str(), "tmpfs", 0, "size=1m"), 0);
        const Content before = oldPackage();
        writeFile(stick_ / ".clone.vxclone-new/part", "x");
        ASSERT_EQ(mount(nullptr, stick_.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        StickTarget target = open();
        EXPECT_TRUE(target.recover(isWhole));
        EXPECT_TRUE(target.openPackage());
        EXPECT_EQ(replace(target).error().code, ErrorCode::StickReadOnly);
        EXPECT_EQ(readFile(stick_ / "clone/vconf/Vconf.json"), "old");
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

}  // namespace
}  // namespace vxclone
