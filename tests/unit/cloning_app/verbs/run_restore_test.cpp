#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>

#include "cloning_app/record/run_record.h"
#include "cloning_app/run/library_run.h"
#include "tests/unit/cloning_app/run_test.h"
#include "tests/unit/cloning_app/sealed_package.h"

namespace vxclone {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class RunRestoreTest : public RunTest {
 protected:
    RunRestoreTest() {
        writeFile(root_ / "stale", "x");
        writeWholePackage(package_);
        writeFile(package_ / "logo/logo.png", "boot");
        writeFile(package_ / "VXMBRLogo/stb_app_icon.png", "icon");
        engine_.work = [this] {
            loadSettings(root_);
            FakeEngine::report(kWholeReport, 100);
        };
    }

    /// Seals the current content of the package and restores it.
    Result<Report> restore(const std::vector<VXClone>& list = allCategories()) {
        sealFolder(package_);
        return restoreAsItIs({list});
    }

    /// Restores without safety backup and read-back.
    Result<Report> restoreAsItIs(RestoreOptions options = {allCategories()}) {
        options.safety = false;
        options.readBack = false;
        return runRestore(context(), package_, options);
    }

    /// Expects that the restore is refused with the code before anything was changed, including the clone
    /// folder.
    void expectRefused(ErrorCode code) {
        const auto before = contentBesideTheRecord();
        const auto report = restoreAsItIs();
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, code) << report.error().sentence;
        EXPECT_EQ(engine_.runs, 0);
        EXPECT_EQ(contentBesideTheRecord(), before);
    }

    /// Everything except the record, because every run is recorded, even one that is refused.
    std::map<std::string, std::string> contentBesideTheRecord() const {
        auto content = contentOf(folder_.path());
        const auto data = recordFolderOf(root_).lexically_relative(folder_.path());
        content.erase((data / "run.json").string());
        content.erase((data / "run.lock").string());
        return content;
    }

    /// Expects that the restore is refused with the code after the package was staged, and that nothing of it
    /// stays.
    std::string refusalOfStaged(ErrorCode code, const RestoreOptions& options = {allCategories()}) {
        const auto before = contentOf(package_);
        const auto report = restoreAsItIs(options);
        EXPECT_FALSE(report);
        EXPECT_EQ(contentOf(package_), before);
        EXPECT_EQ(engine_.runs, 0);
        EXPECT_TRUE(std::filesystem::is_empty(root_));
        // The value of the previous run: a refused restore has not even reset the keys.
        EXPECT_EQ(std::get<int>(*FakeSettingsStore::instance().get(kProgressKey)), 100);
        EXPECT_EQ(report ? ErrorCode::Internal : report.error().code, code);
        return report ? "" : report.error().sentence;
    }
};

TEST_F(RunRestoreTest, goodPackageReplacesTheCloneFolderAndIsReadBack) {
    const auto report = restore();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(contentOf(root_), contentOf(package_));
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).detail, "applied, 54 settings");
    EXPECT_EQ(engine_.list, allCategories());
    EXPECT_THAT(shownOf(ShownPhase::Load), ElementsAre(30, 86));
    EXPECT_THAT(shownOf(ShownPhase::Closing), ElementsAre(90, 100));
    EXPECT_TRUE(std::is_sorted(view_.percents.begin(), view_.percents.end()));
}

TEST_F(RunRestoreTest, settingsThatTheTelevisionDoesNotHoldAreAFailureThatNamesThem) {
    engine_.work = [this] {
        loadSettings(root_);
        FakeSettingsStore::instance().set(kVolume, 9);
    };
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    const Row& row = rowFor(*report, VXCLONE_VCONF_DATA);
    EXPECT_EQ(row.verdict, Verdict::Failed);
    EXPECT_EQ(row.detail, std::string("53 of 54 applied; not ") + kVolume);
}

TEST_F(RunRestoreTest, manySettingsNotAppliedAreCounted) {
    engine_.work = [] { FakeEngine::report(kWholeReport, 100); };
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).detail,
              "0 of 54 applied; not db/home/url_launcher/AppID db/home/url_launcher/change_url "
              "db/homesettings/URLLauncher/AppTitle and 51 more");
}

TEST_F(RunRestoreTest, chosenCategoriesLeaveTheOthersAndTheSettingsUnread) {
    engine_.work = [] { FakeEngine::report("VXCLONE_BROADCAST_TVS-SUCCESS\n", 100); };
    const auto report = restore({VXCLONE_BROADCAST_TVS});
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(engine_.list, std::vector<VXClone>{VXCLONE_BROADCAST_TVS});
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).verdict, Verdict::NotChosen);
    EXPECT_EQ(rowFor(*report, VXCLONE_BROADCAST_TVS).verdict, Verdict::Done);
}

TEST_F(RunRestoreTest, categoryThatThePackageLacksIsNotLoadedAndAFailure) {
    std::filesystem::remove(package_ / "web-applications.backup");
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(engine_.list, testing::Not(Contains(VXCLONE_WAS_API_DATA)));
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_WAS_API_DATA)),
              "lacking: the package holds no web applications; this television keeps its own");
    EXPECT_THAT(report->closing, Contains("The package is not complete. It lacks: was."));
    EXPECT_THAT(report->closing, Contains(HasSubstr("not all of it (failed or different: was)")));
}

TEST_F(RunRestoreTest, packageThatHoldsNothingOfWhatWasChosenChangesNothing) {
    std::filesystem::remove(package_ / "web-applications.backup");
    const auto report = restore({VXCLONE_WAS_API_DATA});
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::CategoryFailed);
    EXPECT_THAT(report.error().sentence,
                HasSubstr("holds nothing of the chosen categories; nothing was changed"));
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunRestoreTest, channelMapWithoutTheHotelsListIsNotLoaded) {
    std::filesystem::remove(package_ / "tvs-chms/hotel-channels.backup");
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(engine_.list, testing::Not(Contains(VXCLONE_BROADCAST_TVS)));
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_BROADCAST_TVS)),
              "lacking: the package holds no tvs-chms/hotel-channels.backup; this television keeps its own");
}

TEST_F(RunRestoreTest, settingThatThePackageLacksIsLeftAsItWas) {
    FakeSettingsStore::instance().set(kVolume, 7);
    writeFile(package_ / "vconf/Vconf.json", wholeSettings({{kVolume, ""}}));
    const auto report = restore();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_EQ(std::get<int>(*FakeSettingsStore::instance().get(kVolume)), 7);
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_VCONF_DATA)),
              std::string("lacking: applied, 53 settings; left as they were: ") + kVolume);
}

TEST_F(RunRestoreTest, settingThatWasDeclaredAsNotThereIsLeftAsItWasAndNoFailure) {
    FakeSettingsStore::instance().set(kVolume, 7);
    writeFile(package_ / "vconf/Vconf.json", wholeSettings({{kVolume, ""}}));
    PackageOrigin origin = originHere();
    origin.lacks = {{"settings-keys", kVolume, true}};
    sealFolder(package_, origin);
    const auto report = restoreAsItIs();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(std::get<int>(*FakeSettingsStore::instance().get(kVolume)), 7);
}

TEST_F(RunRestoreTest, settingThatNeitherTellsKeepsTheRestoreFromBeginning) {
    writeFile(package_ / "vconf/Vconf.json", wholeSettings({{kVolume, ""}}));
    sealFolder(package_);
    EXPECT_THAT(refusalOfStaged(ErrorCode::SettingsRefused), HasSubstr(std::string("--without ") + kVolume));
    RestoreOptions options{allCategories()};
    options.without = *Declared::parse(kVolume);
    EXPECT_TRUE(restoreAsItIs(options));
}

TEST_F(RunRestoreTest, settingThatTheStoreDoesNotTakeBackIsAFailure) {
    FakeSettingsStore::instance().set(kVolume, 7);
    writeFile(package_ / "vconf/Vconf.json", wholeSettings({{kVolume, ""}}));
    engine_.work = [this] {
        loadSettings(root_);
        FakeSettingsStore::instance().refuseWriting(kVolume);
        FakeEngine::report(kWholeReport, 100);
    };
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).verdict, Verdict::Failed);
    EXPECT_THAT(rowFor(*report, VXCLONE_VCONF_DATA).detail, HasSubstr(std::string("not kept: ") + kVolume));
}

TEST_F(RunRestoreTest, networkTimeIsNotPutIntoEffectWithoutItsSettings) {
    const char* const server = "db/menu/system/time/ntp/server_url";
    FakeSettingsStore::instance().set(server, std::string("own"));
    writeFile(package_ / "vconf/Vconf.json", wholeSettings({{server, ""}}));
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_THAT(engine_.list, testing::Not(Contains(VXCLONE_NTP_SETTINGS_DATA)));
    EXPECT_EQ(rowFor(*report, VXCLONE_NTP_SETTINGS_DATA).verdict, Verdict::Lacking);
}

/// Nobody reports the restore of the home data. The next save of the television has `content` in it.
class UnreportedRestoreTest : public RunRestoreTest {
 protected:
    Row rowAfter(const std::string& content) {
        engine_.work = [this] {
            loadSettings(root_);
            std::string reported = kWholeReport;
            const std::string line = "VXCLONE_HOME_INTERNAL_API_DATA-SUCCESS\n";
            FakeEngine::report(reported.erase(reported.find(line), line.size()), 100);
        };
        engine_.save = [this, content] {
            writeWholePackage(root_);
            writeFile(root_ / kHomeData, content);
            FakeEngine::report(kWholeReport, 100);
        };
        const auto report = restore();
        exitStatus_ = report ? report->exitStatus : -1;
        return report ? rowFor(*report, VXCLONE_HOME_INTERNAL_API_DATA) : Row{};
    }

    static constexpr const char* kHomeData = "org.vorta.homedatacontrol-service/home-data.backup";
    int exitStatus_ = -1;
};

TEST_F(UnreportedRestoreTest, categoryThatTheTelevisionHoldsIsNoFailureAlsoWithoutAReadBack) {
    const Row row = rowAfter(kHomeData);
    EXPECT_EQ(engine_.backups, 1);
    EXPECT_EQ(row.readBack, ReadBack::Same);
    EXPECT_EQ(exitStatus_, 0);
}

TEST_F(UnreportedRestoreTest, categoryThatTheTelevisionDoesNotHoldIsAFailure) {
    const Row row = rowAfter("other");
    EXPECT_EQ(row.readBack, ReadBack::Differs);
    EXPECT_EQ(exitStatus_, 1);
}

TEST_F(RunRestoreTest, withoutAReadBackNothingIsSavedAgainWhereAllIsReported) {
    engine_.save = [] { ADD_FAILURE() << "the television was saved again"; };
    EXPECT_TRUE(restore());
    EXPECT_EQ(engine_.backups, 0);
}

TEST_F(RunRestoreTest, applicationOfWhichThePackageHoldsNothingKeepsItsDataAndIsNoFailure) {
    FakeSettingsStore::instance().set("db/first_screen/type", std::string("org.harbour.first"));
    engine_.work = [this] {
        loadSettings(root_);
        FakeEngine::report(std::string(kWholeReport) + "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-FAIL\n", 100);
    };
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 0);
    const auto row = std::find_if(report->rows.begin(), report->rows.end(),
                                  [](const Row& each) { return each.subject == "org.harbour.first"; });
    ASSERT_NE(row, report->rows.end());
    EXPECT_EQ(textOf(*row), "not there: the package holds none of its data; this television keeps its own");
}

TEST_F(RunRestoreTest, packageWithoutABootLogoLeavesTheTelevisionsOwn) {
    std::filesystem::remove_all(package_ / "logo");
    sealFolder(package_);
    const auto whole = restoreAsItIs({allCategories(), false, true});
    ASSERT_TRUE(whole);
    EXPECT_THAT(engine_.list, testing::Not(Contains(VXCLONE_HOSPITALITY_LOGO)));
    EXPECT_EQ(engine_.list.size(), kCategoryCount - 1);
    EXPECT_EQ(textOf(rowFor(*whole, VXCLONE_HOSPITALITY_LOGO)),
              "not there: the package holds no boot logo; this television keeps its own");
    EXPECT_EQ(whole->exitStatus, 0);

    engine_.runs = 0;
    const auto named = restoreAsItIs({{VXCLONE_HOSPITALITY_LOGO}, false, false});
    ASSERT_FALSE(named);
    EXPECT_EQ(named.error().code, ErrorCode::CategoryFailed);
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunRestoreTest, packageWithABootLogoRestoresIt) {
    sealFolder(package_);
    ASSERT_TRUE(restoreAsItIs({allCategories(), false, true}));
    EXPECT_EQ(engine_.list, allCategories());
}

TEST_F(RunRestoreTest, applicationsHaveALineEach) {
    FakeSettingsStore::instance().set("db/first_screen/type", std::string("org.harbour.first"));
    writeFile(package_ / "org.harbour.first/data", "x");
    engine_.work = [] {
        FakeEngine::report(
            "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\nVXCLONE_VXHOTEL_FIRSTSCREEN_DATA-FAIL\n", 100);
    };
    const auto report = restore({VXCLONE_VXHOTEL_FIRSTSCREEN_DATA});
    ASSERT_TRUE(report);
    std::vector<std::string> lines;
    for (const Row& row : report->rows) {
        if (!row.subject.empty()) {
            lines.push_back(row.subject + " " + textOf(row));
        }
    }
    EXPECT_THAT(lines, testing::ElementsAre("org.vorta.orvel-app done", "org.harbour.first failed"));
}

TEST_F(RunRestoreTest, listOfWhatNoRestoreLoadsIsRefused) {
    const auto report =
        runRestore(context(), package_, {{VXCLONE_BROADCAST_IPG_DATA, VXCLONE_VXHOTEL_AMBIENT_APP_DATA}});
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::BadArguments);
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunRestoreTest, packageWithoutSettingsFailsOnlyThese) {
    std::filesystem::remove_all(package_ / "vconf");
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).verdict, Verdict::Lacking);
    EXPECT_EQ(failedNames(report->rows), "settings-keys");
    EXPECT_THAT(engine_.list, testing::Not(Contains(VXCLONE_VCONF_DATA)));
    EXPECT_EQ(report->exitStatus, 1);
}

TEST_F(RunRestoreTest, folderThatIsNoPackageChangesNothing) {
    std::filesystem::remove_all(package_);
    writeFile(package_ / "photo.jpg", "x");
    expectRefused(ErrorCode::NotAPackage);
}

TEST_F(RunRestoreTest, missingFolderChangesNothing) {
    std::filesystem::remove_all(package_);
    expectRefused(ErrorCode::NotAPackage);
    std::filesystem::remove_all(package_.parent_path());
    expectRefused(ErrorCode::StickMissing);
}

TEST_F(RunRestoreTest, damagedSettingsChangeNothing) {
    writeFile(package_ / "vconf/Vconf.json", "{\"a\":");
    sealFolder(package_);
    refusalOfStaged(ErrorCode::SettingsDamaged);
}

TEST_F(RunRestoreTest, damagedSettingsThatAreNotChosenDoNotMatter) {
    writeFile(package_ / "vconf/Vconf.json", "{\"a\":");
    EXPECT_TRUE(restore({VXCLONE_AV_SETTINGS}));
}

TEST_F(RunRestoreTest, linkOrFifoInThePackageChangesNothing) {
    std::filesystem::create_symlink("/etc/passwd", package_ / "link");
    expectRefused(ErrorCode::UnsafeEntry);
    std::filesystem::remove(package_ / "link");
    ASSERT_EQ(mkfifo((package_ / "zzz").c_str(), 0600), 0);
    const auto report = restoreAsItIs();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::UnsafeEntry);
}

TEST_F(RunRestoreTest, televisionsOwnFolderIsRefusedAndKept) {
    writeFile(root_ / "vconf/Vconf.json", "{}");
    const auto report = runRestore(context(), root_, {allCategories()});
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::BadArguments);
    EXPECT_TRUE(std::filesystem::exists(root_ / "vconf/Vconf.json"));
}

TEST_F(RunRestoreTest, stopBeforeTheRunLeavesNoHalfPackage) {
    stop_.raise(SIGINT);
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::Interrupted);
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_TRUE(std::filesystem::is_empty(root_));
}

TEST_F(RunRestoreTest, stopDuringTheRunEndsWithTheSignalAfterTheTable) {
    const auto work = engine_.work;
    engine_.work = [this, work] {
        work();
        stop_.raise(SIGTERM);
    };
    const auto report = restore();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 8);
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).verdict, Verdict::Done);
}

TEST_F(RunRestoreTest, storeThatRefusesTheProgressKeyChangesNothing) {
    FakeSettingsStore::instance().refuseWriting(kProgressKey);
    sealFolder(package_);
    refusalOfStaged(ErrorCode::SettingsRefused);
}

TEST_F(RunRestoreTest, engineThatBreaksOffIsAnError) {
    engine_.end = failure(ErrorCode::Internal, "broke off");
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::Internal);
}

TEST_F(RunRestoreTest, packageWithoutIdentityOrSealIsNotComplete) {
    EXPECT_THAT(refusalOfStaged(ErrorCode::NotComplete),
                HasSubstr("holds no ProductCloneInfo.txt, validate.txt; make a new backup"));
    sealFolder(package_);
    std::filesystem::remove(package_ / "validate.txt");
    EXPECT_THAT(refusalOfStaged(ErrorCode::NotComplete), HasSubstr("holds no validate.txt;"));
}

TEST_F(RunRestoreTest, alteredPackageIsRefused) {
    sealFolder(package_);
    writeFile(package_ / "picture-and-sound.backup", "b");
    EXPECT_THAT(refusalOfStaged(ErrorCode::Altered), HasSubstr("(picture-and-sound.backup altered)"));
    writeFile(package_ / "vconf/Vconf.json", "{\"a\":");
    EXPECT_THAT(refusalOfStaged(ErrorCode::Altered), HasSubstr("vconf/Vconf.json"));
}

TEST_F(RunRestoreTest, televisionWithoutTheKeyRefuses) {
    sealFolder(package_);
    engine_.key = false;
    refusalOfStaged(ErrorCode::NoKey);
}

TEST_F(RunRestoreTest, otherModelIsRefusedNamingBothAndTheWayAround) {
    sealFolder(package_);
    FakeSystemInfo::instance().model = "VX75C2";
    const std::string sentence = refusalOfStaged(ErrorCode::DoesNotFit);
    EXPECT_THAT(sentence, HasSubstr("this television VX75C2, the package VX55R1"));
    EXPECT_THAT(sentence, HasSubstr("--force-model"));
}

TEST_F(RunRestoreTest, otherModelIsRestoredWhenForcedWithAWarningNamingBoth) {
    sealFolder(package_);
    FakeSystemInfo::instance().model = "VX75C2";
    const auto report = restoreAsItIs({allCategories(), true});
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(engine_.runs, 1);
    EXPECT_THAT(view_.notices,
                Contains(testing::AllOf(HasSubstr("WARNING"), HasSubstr("VX75C2"), HasSubstr("VX55R1"))));
    std::vector<Finding> findings;
    for (const Check& check : report->checks) {
        findings.push_back(check.finding);
    }
    EXPECT_THAT(findings, testing::ElementsAre(Finding::Overridden, Finding::Same, Finding::Same,
                                               Finding::Verified, Finding::Verified));
}

TEST_F(RunRestoreTest, forcedModelForcesNothingElse) {
    sealFolder(package_);
    const RestoreOptions forced{allCategories(), true};
    FakeSystemInfo::instance() = {"VX75C2", "VX-R1-EU", 4, false};
    EXPECT_THAT(refusalOfStaged(ErrorCode::DoesNotFit, forced),
                HasSubstr("tuner type (this television 4, the package 3)"));
    FakeSystemInfo::instance() = {"VX75C2", "other", 3, false};
    EXPECT_THAT(refusalOfStaged(ErrorCode::DoesNotFit, forced), HasSubstr("product tag ("));
    FakeSystemInfo::instance() = {"VX75C2", "VX-R1-EU", 3, std::nullopt};
    EXPECT_THAT(refusalOfStaged(ErrorCode::DoesNotFit, forced), HasSubstr("tuner type not told"));
    FakeSystemInfo::instance() = {"VX75C2", "VX-R1-EU", 3, false};
    writeFile(package_ / "picture-and-sound.backup", "b");
    refusalOfStaged(ErrorCode::Altered, forced);
}

TEST_F(RunRestoreTest, forcedModelThatIsTheSameSaysNothing) {
    sealFolder(package_);
    const auto report = restoreAsItIs({allCategories(), true});
    ASSERT_TRUE(report);
    EXPECT_THAT(view_.notices, ElementsAre("Copying the package from the stick, and checking it."));
    ASSERT_EQ(report->checks.size(), 3U);
    for (const Check& check : report->checks) {
        EXPECT_EQ(textOf(check), "verified");
    }
}

TEST_F(RunRestoreTest, examinationThatBreaksOffEmptiesTheCloneFolder) {
    sealFolder(package_);
    engine_.key = failure(ErrorCode::Internal, "broke off");
    refusalOfStaged(ErrorCode::Internal);
}

TEST_F(RunRestoreTest, unknownEntriesAreCarriedAlong) {
    writeFile(package_ / "of-a-service/deep/file", "x");
    ASSERT_TRUE(restore());
    EXPECT_EQ(readFile(root_ / "of-a-service/deep/file"), "x");
}

TEST_F(RunRestoreTest, onlyThePackageThatIsExpectedIsLetIn) {
    const std::string digest = sealFolder(package_);
    for (const std::string& expected : {digest, digest.substr(0, 16)}) {
        const auto report = restoreAsItIs({allCategories(), false, false, expected});
        ASSERT_TRUE(report) << report.error().sentence;
        EXPECT_EQ(report->digest, digest);
    }
    FakeSettingsStore::instance().reset();
    engine_.runs = 0;
    const RestoreOptions other{allCategories(), false, false, std::string(16, '0')};
    EXPECT_THAT(refusalOfStaged(ErrorCode::Altered, other),
                testing::AllOf(HasSubstr(digest), HasSubstr("not 0000000000000000")));
    sealFolderWithoutManifest(package_);
    EXPECT_THAT(refusalOfStaged(ErrorCode::Altered, other), HasSubstr("no manifest"));
}

TEST_F(RunRestoreTest, packageOfAnotherToolIsRestoredAndSaidToBeWeaker) {
    sealFolderWithoutManifest(package_);
    const auto report = restoreAsItIs();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_THAT(textOf(report->checks.at(1)), HasSubstr("weaker"));
}

TEST_F(RunRestoreTest, noPackageKeyRefusesAPackageWithAManifest) {
    sealFolder(package_);
    FakeSecureStorage::instance().packageKey.reset();
    refusalOfStaged(ErrorCode::NoKey);
}

}  // namespace
}  // namespace vxclone
