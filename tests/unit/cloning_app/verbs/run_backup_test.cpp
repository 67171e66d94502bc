#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include "cloning_app/package/manifest_file.h"
#include "cloning_app/run/library_run.h"
#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/run_test.h"
#include "tests/unit/cloning_app/sealed_package.h"

namespace vxclone {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class RunBackupTest : public RunTest {
 protected:
    RunBackupTest() {
        std::filesystem::create_directory(stick_);
        engine_.work = [this] {
            for (const auto& entry : std::filesystem::directory_iterator(root_)) {
                std::filesystem::remove_all(entry);
            }
            writeGoodBackup();
            FakeEngine::report(kWholeReport, 0);
        };
    }

    void writeGoodBackup() { writeWholePackage(root_); }

    Result<Report> backUp(const std::string& folder = "clone") {
        return runBackup(context(), stick_ / folder);
    }

    /// Expects that the backup fails with the code and leaves the stick unchanged.
    void expectRefused(ErrorCode code) {
        const auto before = contentOf(stick_);
        const auto report = backUp();
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, code) << report.error().sentence;
        EXPECT_EQ(contentOf(stick_), before);
    }

    /// Expects that the backup reports the missing stick and does not call it safe to remove.
    void expectGone() {
        const auto report = backUp();
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::StickMissing);
        EXPECT_THAT(report.error().sentence,
                    HasSubstr("the stick was taken out before the backup had ended"));
    }

    const std::filesystem::path stick_ = folder_ / "stick";
};

TEST_F(RunBackupTest, logosOfTheTelevisionAreInThePackage) {
    FakePaths::instance() = {folder_ / "boot", folder_ / "mbr"};
    writeFile(folder_ / "boot/logo.png", "boot");
    writeFile(folder_ / "mbr/stb_app_icon.png", "icon");
    const auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(readFile(stick_ / "clone/logo/logo.png"), "boot");
    EXPECT_EQ(readFile(stick_ / "clone/VXMBRLogo/stb_app_icon.png"), "icon");
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_HOSPITALITY_LOGO)), "done: added by vxclone, 1 file");
}

TEST_F(RunBackupTest, logoThatCannotBeReadMakesTheBackupIncomplete) {
    FakePaths::instance() = {folder_ / "boot", folder_ / "mbr"};
    std::filesystem::create_directory(folder_ / "boot");
    std::filesystem::create_symlink("/etc/passwd", folder_ / "boot/logo.png");
    const auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(report->closing, Contains(HasSubstr("failed: boot-logo")));
    EXPECT_FALSE(std::filesystem::exists(stick_ / "clone/logo"));
}

TEST_F(RunBackupTest, goodBackupIsOnTheStickAndSafeToRemove) {
    const auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_THAT(report->closing, Contains(HasSubstr("clone: 13 files, ")));
    EXPECT_THAT(report->closing, Contains("Safe to remove the stick."));
    EXPECT_EQ(contentOf(stick_ / "clone"), contentOf(root_));
    EXPECT_EQ(rowFor(*report, VXCLONE_AV_SETTINGS).verdict, Verdict::Done);
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).detail, "saved, 54 settings");
}

TEST_F(RunBackupTest, folderOnTheTelevisionItselfIsRefusedAndLeftAsItWas) {
    mounts_ = stickAt(folder_ / "another");
    const auto report = backUp();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::StickMissing);
    EXPECT_EQ(report.error().sentence,
              (stick_ / "clone").string() +
                  " is on this television itself, not on a stick (plugged in: /media/usb); name a place on "
                  "the stick, or write here with --on-this-disk");
    EXPECT_TRUE(std::filesystem::is_empty(stick_));
    EXPECT_EQ(engine_.runs + engine_.backups, 0);
}

TEST_F(RunBackupTest, folderOnTheTelevisionItselfThatIsWantedIsFilledAndNothingIsToBeRemoved) {
    mounts_ = stickAt(folder_ / "another");
    const auto report = runBackup(context(), stick_ / "clone", {{}, {}, true});
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(contentOf(stick_ / "clone"), contentOf(root_));
    EXPECT_THAT(report->closing, testing::Each(Not(testing::ContainsRegex("the stick|remove"))));
}

TEST_F(RunBackupTest, incompleteBackupOntoTheTelevisionItselfNamesNoStick) {
    mounts_ = stickAt(folder_ / "another");
    engine_.work = [this] {
        writeGoodBackup();
        FakeEngine::report("VXCLONE_AV_SETTINGS-FAIL\n", 0);
    };
    const auto report = runBackup(context(), stick_ / "clone", {{}, {}, true});
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(report->closing,
                Contains(testing::ContainsRegex(
                    R"(^The backup is incomplete \(failed: .*av.*\); the rest is there\.$)")));
}

TEST_F(RunBackupTest, packageCarriesItsIdentityAndASealThatTheReportNames) {
    FakeSystemInfo::instance().regionalTuner = true;
    const auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(readFile(stick_ / "clone/ProductCloneInfo.txt"), "VX-R1-EU\nVX55R1\n131\n");
    EXPECT_TRUE(std::filesystem::exists(stick_ / "clone/validate.txt"));
    ASSERT_EQ(report->checks.size(), 3U);
    EXPECT_EQ(textOf(report->checks[0]), "recorded");
    EXPECT_EQ(textOf(report->checks[1]), "recorded");
    EXPECT_EQ(textOf(report->checks[2]), "sealed");
}

/// The manifest of the package, which must be genuine.
ReadManifest manifestIn(const std::filesystem::path& package) {
    const Descriptor folder(open(package.c_str(), O_RDONLY | O_DIRECTORY));
    auto read = readManifest({folder.get(), package.string(), Place::Stick}, PackageKey::ofTelevision());
    EXPECT_TRUE(read && *read && (*read)->authenticity == Authenticity::Proven);
    return read && *read ? std::move(**read) : ReadManifest{};
}

TEST_F(RunBackupTest, packageCarriesAManifestOfWhatItIs) {
    const auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    const ReadManifest read = manifestIn(stick_ / "clone");
    EXPECT_EQ(read.digest, report->digest);
    EXPECT_THAT(report->closing, Contains("Digest " + read.digest));
    const PackageOrigin& origin = read.manifest.origin;
    EXPECT_EQ(origin.name, "clone");
    EXPECT_THAT(origin.madeBy, HasSubstr("vxclone "));
    EXPECT_EQ(origin.source.model, "VX55R1");
    ASSERT_EQ(origin.results.size(), report->rows.size());
    for (std::size_t row = 0; row < report->rows.size(); ++row) {
        EXPECT_EQ(origin.results[row].category, categoryOf(report->rows[row].category).name);
        EXPECT_EQ(origin.results[row].result, nameOf(report->rows[row].verdict));
        EXPECT_EQ(origin.results[row].detail, report->rows[row].detail);
    }
}

TEST_F(RunBackupTest, nameIsTheUsersAndMustBeOne) {
    ASSERT_TRUE(runBackup(context(), stick_ / "clone", {"Lobby \n 2"}));
    EXPECT_EQ(manifestIn(stick_ / "clone").manifest.origin.name, "Lobby \n 2");
    for (const std::string& name : {std::string(), std::string(256, 'n')}) {
        const auto report = runBackup(context(), stick_ / "clone", {name});
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::BadArguments);
    }
    EXPECT_EQ(engine_.runs, 1);
}

TEST_F(RunBackupTest, noPackageKeyEndsBeforeTheRun) {
    FakeSecureStorage::instance().packageKey.reset();
    expectRefused(ErrorCode::NoKey);
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_FALSE(std::filesystem::exists(root_));
}

TEST_F(RunBackupTest, noKeyKeepsTheOldPackageAndEndsBeforeTheRun) {
    engine_.key = false;
    expectRefused(ErrorCode::NoKey);
    engine_.key = true;
    ASSERT_TRUE(backUp());
    engine_.key = false;
    expectRefused(ErrorCode::NoKey);
    EXPECT_EQ(engine_.runs, 1);
}

TEST_F(RunBackupTest, identityThatNoPackageCanHoldEndsBeforeTheRun) {
    FakeSystemInfo::instance().productTag = std::string(128, 't');
    expectRefused(ErrorCode::IdentityUnusable);
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunBackupTest, sealingThatFailsOrBreaksOffKeepsTheOldPackage) {
    ASSERT_TRUE(backUp());
    engine_.sealing = false;
    expectRefused(ErrorCode::NotSealed);
    engine_.sealing = failure(ErrorCode::Internal, "broke off");
    expectRefused(ErrorCode::NotSealed);
}

TEST_F(RunBackupTest, missingCloneRootIsMadeWithItsParents) {
    engine_.work = [this] {
        EXPECT_TRUE(std::filesystem::is_directory(root_));
        writeGoodBackup();
    };
    EXPECT_TRUE(backUp());
}

TEST_F(RunBackupTest, secondBackupReplacesTheFirstAsAWhole) {
    ASSERT_TRUE(backUp());
    writeFile(stick_ / "clone/stale", "x");
    ASSERT_TRUE(backUp("clone/"));
    EXPECT_EQ(contentOf(stick_ / "clone"), contentOf(root_));
    EXPECT_EQ(contentOf(stick_).size(), contentOf(root_).size() + 1);
}

TEST_F(RunBackupTest, failedCategoryEndsWithOneAndDoesNotClaimSuccess) {
    engine_.work = [this] {
        writeGoodBackup();
        FakeEngine::report("VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-FAIL\n", 0);
    };
    const auto report = backUp();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(report->closing, Not(Contains("Safe to remove the stick.")));
    EXPECT_THAT(report->closing, Contains(HasSubstr("failed: apps")));
}

TEST_F(RunBackupTest, outcomeThatMayBeAnotherApplicationsIsNotTakenForTheFirstScreens) {
    store::writeString("db/first_screen/type", "org.harbour.firstscreen");
    for (const bool bothRan : {false, true}) {
        engine_.work = [this, bothRan] {
            writeGoodBackup();
            writeFile(root_ / "org.harbour.firstscreen/data", "x");
            if (!bothRan) {
                std::filesystem::remove_all(root_ / "org.vorta.orvel-app");
            }
            FakeEngine::report("VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n", 0);
        };
        const auto report = backUp();
        ASSERT_TRUE(report);
        const auto row = std::find_if(report->rows.begin(), report->rows.end(), [](const Row& candidate) {
            return candidate.subject == "org.harbour.firstscreen";
        });
        ASSERT_NE(row, report->rows.end());
        EXPECT_EQ(row->verdict, bothRan ? Verdict::NotReported : Verdict::Done);
    }
}

TEST_F(RunBackupTest, channelsReportedAsSavedHaveToBeThere) {
    for (const bool saved : {true, false}) {
        engine_.work = [this, saved] {
            writeGoodBackup();
            if (saved) {
                writeFile(root_ / "tvs-chms/tvs-chms.zip", "channels");
            } else {
                std::filesystem::remove_all(root_ / "tvs-chms");
            }
            FakeEngine::report("VXCLONE_BROADCAST_TVS-SUCCESS\n", 0);
        };
        const auto report = backUp();
        ASSERT_TRUE(report);
        EXPECT_EQ(report->exitStatus, saved ? 0 : 1);
        EXPECT_EQ(failedNames(report->rows), saved ? "" : "channels");
    }
}

TEST_F(RunBackupTest, settingThatWasNotSavedIsNamedRecordedAndAFailure) {
    engine_.work = [this] {
        writeGoodBackup();
        writeFile(root_ / "vconf/Vconf.json", wholeSettings({{"db/hotel/dooreye", ""}}));
        FakeEngine::report(kWholeReport, 0);
    };
    const auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_VCONF_DATA)),
              "failed: saved, 53 settings; not saved: db/hotel/dooreye");
    EXPECT_THAT(report->closing,
                Contains("The backup is not complete. It lacks: settings-keys (db/hotel/dooreye)."));
    EXPECT_THAT(report->closing, Not(Contains("Safe to remove the stick.")));
    const auto lacks = manifestIn(stick_ / "clone").manifest.origin.lacks;
    ASSERT_TRUE(lacks && lacks->size() == 1U);
    EXPECT_EQ(lacks->front().category, "settings-keys");
    EXPECT_EQ(lacks->front().what, "db/hotel/dooreye");
    EXPECT_FALSE(lacks->front().declared);
}

class ForeignTextBackupTest : public RunBackupTest {
 protected:
    /// The television holds this text, and the library writes other characters for its bytes.
    ForeignTextBackupTest() {
        store::writeString(kTitle, "caf\xe9");
        engine_.work = [this] {
            writeGoodBackup();
            writeFile(root_ / "vconf/Vconf.json", wholeSettings({{kTitle, "\"caf\\ufffd\""}}));
            FakeEngine::report(kWholeReport, 0);
        };
    }

    static constexpr const char* kTitle = "db/vxhotel/welmsg/welcomemsgtitle";
};

TEST_F(ForeignTextBackupTest, textThatIsNoUtf8IsNotInThePackageAndALack) {
    const auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_VCONF_DATA)),
              std::string("failed: saved, 53 settings; not saved: ") + kTitle +
                  "; cannot be carried, because it is not UTF-8 text: " + kTitle);
    EXPECT_THAT(report->closing, Not(Contains("Safe to remove the stick.")));
    EXPECT_THAT(readFile(stick_ / "clone/vconf/Vconf.json"), Not(HasSubstr(kTitle)));
    EXPECT_THAT(readFile(stick_ / "clone/vconf/Vconf.json"), HasSubstr(kPinSetting));
    const auto lacks = manifestIn(stick_ / "clone").manifest.origin.lacks;
    ASSERT_TRUE(lacks && lacks->size() == 1U);
    EXPECT_EQ(lacks->front().what, kTitle);
}

TEST_F(ForeignTextBackupTest, textThatIsNoUtf8MayBeDeclaredAndTheSameTextInUtf8Travels) {
    BackupOptions options;
    options.without = *Declared::parse(kTitle);
    const auto declared = runBackup(context(), stick_ / "clone", options);
    ASSERT_TRUE(declared) << declared.error().sentence;
    EXPECT_EQ(declared->exitStatus, 0);
    EXPECT_THAT(readFile(stick_ / "clone/vconf/Vconf.json"), Not(HasSubstr(kTitle)));
    store::writeString(kTitle, "caf\xef\xbf\xbd");
    const auto whole = backUp();
    ASSERT_TRUE(whole) << whole.error().sentence;
    EXPECT_EQ(whole->exitStatus, 0);
    EXPECT_THAT(readFile(stick_ / "clone/vconf/Vconf.json"), HasSubstr(kTitle));
}

TEST_F(RunBackupTest, settingsThatNoPackageHoldsAreNotBlamedOnTheDisk) {
    const std::string text(kMostSettingsBytes, 'x');
    store::writeString(kPinSetting, text);
    engine_.work = [this, &text] {
        writeGoodBackup();
        writeFile(root_ / "vconf/Vconf.json", wholeSettings({{kPinSetting, "\"" + text + "\""}}));
        FakeEngine::report(kWholeReport, 0);
    };
    const auto report = backUp();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::SettingsNotSaved);
    EXPECT_EQ(
        report.error().sentence,
        std::string("the settings of this television are larger than 16 MiB, which no package holds: ") +
            kPinSetting + " alone has 16.8 MB; make it shorter and back up again");
}

TEST_F(RunBackupTest, cloneFolderIsClosedToOthersOnceTheRunHasEnded) {
    int during = 0;
    const auto work = engine_.work;
    engine_.work = [&] {
        during = modeOf(root_);
        work();
    };
    ASSERT_TRUE(backUp());
    EXPECT_EQ(during, 0755);
    EXPECT_EQ(modeOf(root_), 0700);
    std::filesystem::permissions(root_, std::filesystem::perms::all);
    engine_.end = failure(ErrorCode::Internal, "broke off");
    EXPECT_FALSE(backUp());
    EXPECT_EQ(modeOf(root_), 0700);
}

TEST_F(RunBackupTest, everyEntryThatIsMissingIsAFailureOfItsCategory) {
    const std::map<std::string, std::string> entries = {{"factory.backup", "factory"},
                                                        {"picture-and-sound.backup", "av"},
                                                        {"org.vorta.homedatacontrol-service", "home-data"},
                                                        {"web-applications.backup", "was"},
                                                        {"tvs-chms/hotel-channels.backup", "channels"},
                                                        {"settings-data.backup", "settings"},
                                                        {"tvtimer/timers.backup", "timers"},
                                                        {"VXHotel", "home-menu"},
                                                        {"org.vorta.orvel-app", "apps"}};
    for (const auto& [entry, category] : entries) {
        engine_.work = [this, &name = entry] {
            writeGoodBackup();
            std::filesystem::remove_all(root_ / name);
            FakeEngine::report(kWholeReport, 0);
        };
        const auto report = backUp();
        ASSERT_TRUE(report) << report.error().sentence;
        EXPECT_EQ(report->exitStatus, 1) << entry;
        EXPECT_EQ(failedNames(report->rows), category);
    }
}

TEST_F(RunBackupTest, whatTheTelevisionDoesNotHaveIsDeclaredAndNoFailure) {
    engine_.work = [this] {
        writeGoodBackup();
        std::filesystem::remove_all(root_ / "org.vorta.orvel-app");
        std::filesystem::remove_all(root_ / "web-applications.backup");
        writeFile(root_ / "vconf/Vconf.json", wholeSettings({{"db/hotel/dooreye", ""}}));
        FakeEngine::report(kWholeReport, 0);
    };
    const auto without = Declared::parse("was, db/hotel/dooreye,org.vorta.orvel-app");
    ASSERT_TRUE(without);
    const auto report = runBackup(context(), stick_ / "clone", {{}, *without});
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_WAS_API_DATA)), "not there: declared");
    EXPECT_THAT(report->closing,
                Contains("The backup holds none of these, as was declared: was, settings-keys "
                         "(db/hotel/dooreye), apps (org.vorta.orvel-app)."));
    EXPECT_THAT(report->closing, Contains("Safe to remove the stick."));
}

TEST_F(RunBackupTest, declaredNameOfWhichNothingIsLackingIsSaidAndNoFailure) {
    engine_.work = [this] {
        writeGoodBackup();
        std::filesystem::remove_all(root_ / "web-applications.backup");
        FakeEngine::report(kWholeReport, 0);
    };
    const auto without = Declared::parse("was,timers,db/hotel/dooreye,org.mistyped.app");
    const auto report = runBackup(context(), stick_ / "clone", {{}, *without});
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_THAT(view_.notices,
                Contains("--without names what is not lacking: timers, db/hotel/dooreye, org.mistyped.app."));
    view_.notices.clear();
    ASSERT_TRUE(runBackup(context(), stick_ / "clone", {{}, *Declared::parse("was")}));
    EXPECT_THAT(view_.notices, Not(Contains(HasSubstr("--without"))));
}

TEST_F(RunBackupTest, nameThatIsNothingThatCouldBeMissingIsRefused) {
    for (const char* const list : {"no-such", "av,,was", "db/no/such/setting"}) {
        const auto without = Declared::parse(list);
        ASSERT_FALSE(without) << list;
        EXPECT_EQ(without.error().code, ErrorCode::UnknownCategory);
    }
}

TEST_F(RunBackupTest, mistypedSettingIsAskedForByItsKey) {
    const std::string sentence = Declared::parse("db/hotel/doreye").error().sentence;
    EXPECT_THAT(sentence,
                testing::StartsWith("there is no category \"db/hotel/doreye\"; choose from: factory av "));
    EXPECT_THAT(sentence,
                testing::EndsWith(" network-time; or name a setting's key, or an application; did you mean "
                                  "db/hotel/dooreye?"));
}

TEST_F(RunBackupTest, fileOfTheHomeMenuThatDidNotArriveIsNamed) {
    FakePaths::instance().homeMenu = folder_ / "menu";
    writeFile(folder_ / "menu/kept.jpg", "1");
    writeFile(folder_ / "menu/lost.jpg", "2");
    engine_.work = [this] {
        writeGoodBackup();
        writeFile(root_ / "VXHotel/kept.jpg", "1");
        FakeEngine::report(kWholeReport, 0);
    };
    const auto report = backUp();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_VXHOTEL_HOMEAPP_DATA)), "failed: not saved: VXHotel/lost.jpg");
}

TEST_F(RunBackupTest, linkInTheHomeMenuIsRefusedByNameBeforeTheRun) {
    FakePaths::instance().homeMenu = folder_ / "menu";
    writeFile(folder_ / "menu/kept.jpg", "1");
    std::filesystem::create_symlink("/etc/passwd", folder_ / "menu/link");
    const auto report = backUp();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::UnsafeTelevision);
    EXPECT_EQ(report.error().sentence,
              (folder_ / "menu/link").string() +
                  " is a link, and what it leads to is not the television's; nothing was changed; remove it "
                  "and try again");
    EXPECT_EQ(engine_.runs + engine_.backups, 0);
    EXPECT_TRUE(std::filesystem::is_empty(stick_));
}

TEST_F(RunBackupTest, pipeInTheHomeMenuAndAHomeMenuThatIsALinkAreRefused) {
    FakePaths::instance().homeMenu = folder_ / "menu/";
    std::filesystem::create_directory(folder_ / "menu");
    ASSERT_EQ(mkfifo((folder_ / "menu/pipe").c_str(), 0600), 0);
    EXPECT_EQ(backUp().error().sentence,
              (folder_ / "menu").string() +
                  "/pipe is a pipe, at which the run would wait for ever; nothing was changed; remove it and "
                  "try again");
    std::filesystem::rename(folder_ / "menu", folder_ / "other");
    std::filesystem::create_directory_symlink("other", folder_ / "menu");
    EXPECT_EQ(backUp().error().sentence,
              (folder_ / "menu").string() +
                  " is a link, and what it leads to is not the television's; put the folder itself there and "
                  "try again");
    EXPECT_EQ(engine_.runs + engine_.backups, 0);
}

TEST_F(RunBackupTest, foldersInTheHomeMenuAreNamedAsNotCarried) {
    FakePaths::instance().homeMenu = folder_ / "menu";
    writeFile(folder_ / "menu/promos/film.mp4", "1");
    auto report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_VXHOTEL_HOMEAPP_DATA)), "done: not carried, a folder: promos");
    std::filesystem::create_directory(folder_ / "menu/bar");
    report = backUp();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_VXHOTEL_HOMEAPP_DATA)),
              "done: not carried, folders: bar, promos");
}

TEST_F(RunBackupTest, whatIsMountedInTheFoldersThatTheLibraryEmptiesIsNamed) {
    FakePaths::instance() = {folder_ / "boot", folder_ / "mbr"};
    for (const auto& place : {folder_ / "boot/in", folder_ / "mbr", root_ / "vconf"}) {
        std::filesystem::create_directories(place);
        const bool allowed = withOwnMounts([&] {
            ASSERT_EQ(mount("none", place.c_str(), "tmpfs", 0, "size=64k"), 0);
            const auto report = backUp();
            ASSERT_FALSE(report) << place;
            EXPECT_EQ(report.error().code, ErrorCode::UnsafeTelevision);
            EXPECT_EQ(report.error().sentence,
                      place.string() +
                          " is another file system, which would be emptied; nothing was changed; "
                          "unmount it (umount " +
                          place.string() + ") and try again");
        });
        if (!allowed) {
            GTEST_SKIP() << "mounting is not allowed here";
        }
    }
    EXPECT_EQ(engine_.runs + engine_.backups, 0);
}

TEST_F(RunBackupTest, unknownReportCountsAsAFailure) {
    engine_.work = [this] {
        writeGoodBackup();
        FakeEngine::report("VXCLONE_NEW-SUCCESS\n", 0);
    };
    const auto report = backUp();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(report->closing, Contains(HasSubstr("VXCLONE_NEW-SUCCESS")));
}

TEST_F(RunBackupTest, settingsFileMissingEmptyOrNoObjectKeepsTheOldPackage) {
    ASSERT_TRUE(backUp());
    for (const char* const text : {"", "null", "{\"a\""}) {
        engine_.work = [this, text] { writeFile(root_ / "vconf/Vconf.json", text); };
        expectRefused(ErrorCode::SettingsNotSaved);
    }
    engine_.work = [this] { std::filesystem::remove_all(root_ / "vconf"); };
    expectRefused(ErrorCode::SettingsNotSaved);
}

TEST_F(RunBackupTest, folderWithOtherFilesIsLeftAloneBeforeTheRun) {
    writeFile(stick_ / "clone/photo.jpg", "x");
    expectRefused(ErrorCode::NotAPackage);
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunBackupTest, televisionsOwnFolderIsRefused) {
    for (const auto& folder : {root_, root_ / "sub", root_.parent_path()}) {
        std::filesystem::create_directories(root_);
        const auto report = runBackup(context(), folder);
        ASSERT_FALSE(report) << folder;
        EXPECT_EQ(report.error().code, ErrorCode::BadArguments);
    }
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunBackupTest, engineThatBreaksOffLeavesTheStickAlone) {
    ASSERT_TRUE(backUp());
    engine_.end = failure(ErrorCode::Internal, "broke off");
    expectRefused(ErrorCode::Internal);
}

TEST_F(RunBackupTest, linkLeftByAServiceIsNotCarriedToTheStick) {
    ASSERT_TRUE(backUp());
    engine_.work = [this] {
        writeGoodBackup();
        std::filesystem::remove(root_ / "link");
        std::filesystem::create_symlink("/etc/passwd", root_ / "link");
    };
    expectRefused(ErrorCode::UnsafeEntry);
}

TEST_F(RunBackupTest, stopDuringTheRunEndsAfterItWithoutTouchingTheStick) {
    ASSERT_TRUE(backUp());
    engine_.work = [this] {
        writeGoodBackup();
        writeFile(root_ / "newer", "x");
        stop_.raise(SIGINT);
    };
    expectRefused(ErrorCode::Interrupted);
    EXPECT_THAT(view_.notices, Contains(HasSubstr("cannot be interrupted")));
}

TEST_F(RunBackupTest, largePackageIsWrittenByBytesAndOnlyTheEndIsAHundredPercent) {
    engine_.work = [this] {
        writeGoodBackup();
        writeFile(root_ / "VXHotel/film", "");
        std::filesystem::resize_file(root_ / "VXHotel/film", std::uint64_t{17} << 20U);
    };
    EXPECT_TRUE(backUp());
    EXPECT_THAT(shownOf(ShownPhase::Saving), testing::ElementsAre(0));
    std::vector<int> written;
    for (int percent = 55; percent <= 95; ++percent) {
        written.push_back(percent);
    }
    EXPECT_EQ(shownOf(ShownPhase::Writing), written);
    EXPECT_THAT(shownOf(ShownPhase::Closing), testing::ElementsAre(95, 100));
    EXPECT_TRUE(std::is_sorted(view_.percents.begin(), view_.percents.end()));
}

TEST_F(RunBackupTest, backupThatIsRefusedNeverShowsThatAllIsDone) {
    engine_.sealing = false;
    ASSERT_FALSE(backUp());
    EXPECT_THAT(view_.percents, Not(Contains(100)));
    EXPECT_THAT(shownOf(ShownPhase::Sealing), testing::ElementsAre(45));
}

TEST_F(RunBackupTest, stickThatIsTakenOutDuringTheRunIsNoBackup) {
    engine_.work = [this] {
        writeGoodBackup();
        FakeEngine::report("VXCLONE_AV_SETTINGS-SUCCESS\n", 0);
        if (engine_.runs == 1) {
            std::filesystem::rename(stick_, folder_ / "in the pocket");
            std::filesystem::create_directory(stick_);
        }
    };
    expectGone();
}

TEST_F(RunBackupTest, stickThatIsTakenOutWhileItIsWrittenIsNoBackup) {
    disk_.rename = [this, rename = disk_.rename](int directory, const char* from, const char* to,
                                                 unsigned flags) {
        const int result = rename(directory, from, to, flags);
        std::filesystem::rename(stick_, folder_ / "in the pocket");
        return result;
    };
    expectGone();
}

TEST_F(RunBackupTest, stopWhileCopyingLeavesTheOldPackage) {
    ASSERT_TRUE(backUp());
    disk_.write = [this](int descriptor, const void* data, std::size_t size) {
        stop_.raise(SIGTERM);
        return write(descriptor, data, size);
    };
    expectRefused(ErrorCode::Terminated);
}

TEST_F(RunBackupTest, packageThatChangesWhileItIsSavedIsNoBackup) {
    ASSERT_TRUE(backUp());
    for (const char* const changed : {"vconf/Vconf.json", "late.new"}) {
        disk_.flushAll = [this, changed](int folder) {
            writeFile(stick_ / ".clone.vxclone-new" / changed, "x");
            return realDiskCalls().flushAll(folder);
        };
        const auto before = contentOf(stick_);
        const auto report = backUp();
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::NotSealed);
        EXPECT_THAT(report.error().sentence, HasSubstr(std::string(changed) + " changed while it was saved"));
        EXPECT_EQ(contentOf(stick_), before);
    }
}

TEST_F(RunBackupTest, fullStickWhileCopyingLeavesTheOldPackage) {
    ASSERT_TRUE(backUp());
    disk_.write = [](int /*descriptor*/, const void* /*data*/, std::size_t /*size*/) -> ssize_t {
        errno = ENOSPC;
        return -1;
    };
    expectRefused(ErrorCode::StickFull);
}

TEST_F(RunBackupTest, stickWithTooLittleRoomKeepsTheOldPackage) {
    const bool allowed = withOwnMounts([this] {
        ASSERT_EQ(mount("tmpfs", stick_.c_str(), "tmpfs", 0, "size=128k"), 0);
        ASSERT_TRUE(backUp());
        engine_.work = [this] {
            writeGoodBackup();
            writeFile(root_ / "avoc.db", std::string(300'000, 'a'));
        };
        expectRefused(ErrorCode::StickFull);
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

TEST_F(RunBackupTest, anyDiskCallFailingIsAnErrorWithAWholePackageOnTheStick) {
    ASSERT_TRUE(backUp());
    const auto first = contentOf(stick_);
    std::filesystem::copy(stick_, folder_ / "saved", std::filesystem::copy_options::recursive);
    engine_.work = [this] {
        writeGoodBackup();
        writeFile(root_ / "newer", "x");
    };
    for (int nth = 1;; ++nth) {
        ASSERT_LT(nth, 100);
        std::filesystem::remove_all(stick_);
        std::filesystem::copy(folder_ / "saved", stick_, std::filesystem::copy_options::recursive);
        int calls = 0;
        const auto strikes = [&calls, nth] {
            errno = EIO;
            return ++calls == nth;
        };
        const DiskCalls real = realDiskCalls();
        disk_.write = [=](int descriptor, const void* data, std::size_t size) -> ssize_t {
            return strikes() ? -1 : real.write(descriptor, data, size);
        };
        disk_.flush = [=](int descriptor) { return strikes() ? -1 : real.flush(descriptor); };
        disk_.awaitFlush = [=](int descriptor) { return strikes() ? -1 : real.awaitFlush(descriptor); };
        disk_.flushAll = [=](int folder) { return strikes() ? -1 : real.flushAll(folder); };
        disk_.rename = [=](int directory, const char* from, const char* to, unsigned flags) {
            return strikes() ? -1 : real.rename(directory, from, to, flags);
        };
        disk_.makeFolder = [=](int directory, const char* name) {
            return strikes() ? -1 : real.makeFolder(directory, name);
        };
        const auto report = backUp();
        if (report) {
            EXPECT_GT(nth, 8);
            break;
        }
        EXPECT_EQ(report.error().code, ErrorCode::StickIo);
        const bool isNew = std::filesystem::exists(stick_ / "clone/newer");
        EXPECT_TRUE(!isNew || contentOf(stick_ / "clone") == contentOf(root_)) << nth;
        EXPECT_EQ(contentOf(stick_) == first, !isNew) << nth;
        EXPECT_EQ(isNew, report.error().sentence.find("the new package is in") == 0)
            << report.error().sentence;
    }
}

TEST_F(RunBackupTest, storeThatRefusesTheResultKeyStopsBeforeTheRun) {
    FakeSettingsStore::instance().refuseWriting(kResultKey);
    expectRefused(ErrorCode::SettingsRefused);
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunBackupTest, leftoversOfAnInterruptedBackupAreSaidAndGone) {
    writeFile(stick_ / ".clone.vxclone-old/vconf/Vconf.json", "{}");
    writeFile(stick_ / ".clone.vxclone-new/part", "x");
    ASSERT_TRUE(backUp());
    EXPECT_THAT(view_.notices, Contains(HasSubstr("is back")));
    EXPECT_EQ(contentOf(stick_ / "clone"), contentOf(root_));
    EXPECT_EQ(contentOf(stick_).size(), contentOf(root_).size() + 1);
}

TEST_F(RunBackupTest, secondVxcloneIsRefusedWhileOneWorks) {
    engine_.work = [this] {
        writeGoodBackup();
        FakeEngine other;
        RecordingView view;
        const auto report = runBackup({other, view, stop_, root_, disk_, mounts_}, stick_ / "other");
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::TelevisionBusy);
        EXPECT_EQ(other.runs, 0);
    };
    EXPECT_TRUE(backUp());
    EXPECT_FALSE(std::filesystem::exists(stick_ / "other"));
}

TEST_F(RunBackupTest, conclusionIsTheExitStatus) {
    EXPECT_EQ(conclude(backUp(), view_), 0);
    EXPECT_TRUE(view_.ended.has_value());
    EXPECT_EQ(conclude(failure(ErrorCode::StickFull, "full"), view_), 6);
    EXPECT_EQ(view_.failure->sentence, "full");
}

}  // namespace
}  // namespace vxclone
