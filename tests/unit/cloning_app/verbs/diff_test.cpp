#include <gmock/gmock.h>

#include <csignal>

#include "cloning_app/record/run_record.h"
#include "tests/unit/cloning_app/json_schema.h"
#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/verbs/looking_test.h"

namespace vxclone {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kNotChecked = "Not checked: manifest and seal; vxclone verify does that.\n";
/// The beginning of all sentences about the packages of these tests.
constexpr const char* kNotHeldAndLacking =
    "The package holds nothing of: mbr-logo.\nThe package is not complete. It lacks: home-data, was, "
    "settings-keys (";
constexpr const char* kOrvel = "org.vorta.orvel-app";

/// A television and two packages with the same content. The folder `saves` holds what its services save.
class DiffTest : public LookingTest {
 protected:
    DiffTest() {
        FakeSettingsStore& store = FakeSettingsStore::instance();
        store.set("a/volume", 12);
        store.set("b/on", FakeSettingsStore::Bool{true});
        store.set("c/text", std::string("hello"));
        store.set(kPinSetting, std::string("4711"));
        FakePaths::instance() = {folder_ / "tv/boot", folder_ / "tv/mbr", folder_ / "tv/home"};
        writeFile(folder_ / "tv/home/menu.json", "menu");
        writeFile(folder_ / "tv/boot/logo.png", "boot");
        for (const char* const file : {"avoc.db", "picture-and-sound.backup", "factory.backup",
                                       "tvs-chms/tvs-chms.zip", "org.vorta.orvel-app/hotel.db"}) {
            writeFile(saves_ / file, "a");
        }
        engine_.save = [this] { save(); };
        for (const auto& package : {package_, second_}) {
            std::filesystem::copy(
                saves_, package,
                std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
            fill(package);
        }
    }

    /// The library's part of a backup.
    void save() const {
        for (const auto& entry : std::filesystem::directory_iterator(root_)) {
            std::filesystem::remove_all(entry);
        }
        std::filesystem::copy(saves_, root_, std::filesystem::copy_options::recursive);
        writeFile(root_ / "vconf/Vconf.json", "{}");
        FakeEngine::report(reported_, 0);
    }

    std::string diff(bool quick = false) { return said(diffWithTelevision(context(), package_, quick)); }
    std::string diffOfTwo() { return said(diffPackages(package_, second_)); }

    /// The results and the summary of a comparison with the television. Each must match the schema.
    std::vector<nlohmann::json> comparison(bool quick = false) {
        auto all = lines(diffWithTelevision(context(), package_, quick));
        std::erase_if(all, [](const nlohmann::json& line) { return line.at("event") == "finding"; });
        for (const nlohmann::json& line : all) {
            EXPECT_THAT(schemaComplaint(line), IsEmpty());
        }
        return all;
    }

    /// The findings; each line must match the schema.
    std::vector<nlohmann::json> findings(const Result<Output>& output) {
        auto all = lines(output);
        std::erase_if(all, [](const nlohmann::json& line) { return line.at("event") != "finding"; });
        for (const nlohmann::json& line : all) {
            EXPECT_THAT(schemaComplaint(line), IsEmpty());
        }
        return all;
    }

    std::map<std::string, std::string> dataContent() const { return contentOf(root_.parent_path()); }

    const std::filesystem::path second_ = folder_ / "stick/second";
    const std::filesystem::path saves_ = folder_ / "tv/saves";
    std::string reported_ = kWholeReport;
};

TEST_F(DiffTest, televisionThatHoldsWhatThePackageHoldsIsTheSame) {
    EXPECT_THAT(diff(), AllOf(StartsWith("this television -> " + package_.string() + "\nNo difference.\n" +
                                         kNotHeldAndLacking),
                              EndsWith(kNotChecked)));
    EXPECT_EQ(status_, 0);
    EXPECT_EQ(engine_.backups, 1);
}

TEST_F(DiffTest, televisionAndCloneFolderAreAfterwardsAsTheyWere) {
    writeFile(root_ / "of-the-last-run/file", "x");
    FakeEngine::report("VXCLONE_AV_SETTINGS-FAIL\n", 60);
    const auto before = dataContent();
    diff();
    EXPECT_EQ(engine_.backups, 1);
    EXPECT_EQ(dataContent(), before);
    EXPECT_EQ(store::readString(kResultKey), "VXCLONE_AV_SETTINGS-FAIL\n");
    EXPECT_EQ(store::readInt(kProgressKey), 60);
}

TEST_F(DiffTest, everyCategoryIsCompared) {
    for (const char* const file : {"picture-and-sound.backup", "factory.backup", "tvs-chms/tvs-chms.zip"}) {
        writeFile(saves_ / file, "b");
    }
    writeFile(saves_ / "tvs-chms/hotel-channels.backup", "b");
    EXPECT_THAT(diff(), StartsWith("this television -> " + package_.string() +
                                   "\nav\n  picture-and-sound.backup  other content\n"
                                   "channels\n  tvs-chms/hotel-channels.backup  only in this television\n"
                                   "  tvs-chms/tvs-chms.zip  other content\n"
                                   "factory\n  factory.backup  other content\n"
                                   "0 settings and 4 files differ.\n" +
                                   kNotHeldAndLacking));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, settingsAreNamedWithBothValuesTheTelevisionsFirst) {
    FakeSettingsStore::instance().set("a/volume", 20);
    FakeSettingsStore::instance().set("c/text", 1);
    EXPECT_THAT(diff(), AllOf(HasSubstr("settings-keys\n  a/volume  20 -> 12\n"),
                              HasSubstr("c/text  (no value) -> \"hello\""), Not(HasSubstr("b/on")),
                              HasSubstr("2 settings and 0 files differ.")));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, secretThatDiffersIsNamedWithoutEitherValue) {
    FakeSettingsStore::instance().set(kPinSetting, std::string("0815"));
    const std::string text = diff();
    EXPECT_THAT(text, HasSubstr(std::string(kPinSetting) + "  differs"));
    EXPECT_THAT(text, Not(HasSubstr("0815")));
    for (const auto& line : comparison()) {
        EXPECT_THAT(line.dump(), Not(HasSubstr("0815")));
    }
}

TEST_F(DiffTest, filesOfTheTelevisionAreComparedByTheirContent) {
    writeFile(folder_ / "tv/home/menu.json", "mehu");
    writeFile(folder_ / "tv/home/new.png", "x");
    writeFile(folder_ / "tv/home/more/does-not-travel.png", "x");
    std::filesystem::remove(folder_ / "tv/boot/logo.png");
    EXPECT_THAT(diff(), AllOf(HasSubstr("home-menu\n  VXHotel/menu.json  other content\n"),
                              HasSubstr("VXHotel/new.png  only in this television"),
                              Not(HasSubstr("does-not-travel")),
                              HasSubstr("boot-logo\n  logo/logo.png  only in " + package_.string())));
}

TEST_F(DiffTest, otherBytesOfAnApplicationAreNamedAsSuchAndNeverCalledTheSame) {
    writeFile(saves_ / kOrvel / "hotel.db", "b");
    EXPECT_THAT(diff(), AllOf(HasSubstr("apps (org.vorta.orvel-app)\n  org.vorta.orvel-app/hotel.db  other "
                                        "bytes; only the application can compare\n"),
                              Not(HasSubstr("No difference"))));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, categoryThatTheTelevisionCouldNotSaveIsNotComparedAndNoSuccess) {
    reported_.replace(reported_.find("VXCLONE_AV_SETTINGS-SUCCESS"), 27, "VXCLONE_AV_SETTINGS-FAIL");
    EXPECT_THAT(diff(), AllOf(HasSubstr("\nNo difference in what was compared.\nNot compared, because the "
                                        "television could not save it: av.\n"),
                              Not(HasSubstr("No difference."))));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, categoryThatTheLibraryDidNotReportIsNotCompared) {
    reported_.erase(reported_.find("VXCLONE_BROADCAST_TVS-SUCCESS\n"), 30);
    EXPECT_THAT(diff(), HasSubstr("Not compared, because the television could not save it: channels.\n"));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, categoryOfWhichNothingWasSavedIsNotCompared) {
    for (const char* const file : {"factory.backup", "tvs-chms/tvs-chms.zip", "avoc.db"}) {
        std::filesystem::remove(saves_ / file);
    }
    writeFile(saves_ / "tvs-chms/hotel-channels.backup", "a");
    EXPECT_THAT(diff(), HasSubstr("Not compared, because the television could not save it: channels, "
                                  "factory, avoc.db.\n"));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, applicationThatFailedOrLeftNothingOrMayBeAnotherIsNotComparedUnlessItsBytesAreTheSame) {
    const std::string notCompared =
        "Not compared, because the television could not save it: apps (org.vorta.orvel-app).\n";
    const std::string good = reported_;
    reported_.replace(good.find("FIRSTSCREEN_DATA-SUCCESS"), 24, "FIRSTSCREEN_DATA-FAIL");
    EXPECT_THAT(diff(), HasSubstr(notCompared));
    reported_ = good;
    FakeSettingsStore::instance().set("db/first_screen/type", std::string("org.first"));
    EXPECT_THAT(diff(), HasSubstr("\nNo difference.\n")) << "one outcome of two applications, the same bytes";
    const std::string held = readFile(saves_ / kOrvel / "hotel.db");
    writeFile(saves_ / kOrvel / "hotel.db", held + "x");
    EXPECT_THAT(diff(), HasSubstr(notCompared)) << "one outcome of two applications, other bytes";
    writeFile(saves_ / kOrvel / "hotel.db", held);
    reported_ += "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n";
    EXPECT_THAT(diff(), HasSubstr("\nNo difference.\n"));
    std::filesystem::remove_all(saves_ / kOrvel);
    EXPECT_THAT(diff(), HasSubstr(notCompared));
}

TEST_F(DiffTest, whatTheTelevisionHasOfACategoryThatThePackageDoesNotHoldIsNoDifference) {
    writeFile(saves_ / "tvtimer/timers.backup", "a");
    writeFile(saves_ / "of-another-service", "a");
    writeFile(folder_ / "tv/mbr/icon.png", "a");
    EXPECT_THAT(diff(), HasSubstr(std::string("\nNo difference.\n") + kNotHeldAndLacking));
    EXPECT_EQ(status_, 0);
}

TEST_F(DiffTest, folderThatTheTelevisionDoesNotNameIsNotComparedAndNotAnEmptyOne) {
    FakePaths::instance().homeMenu.clear();
    EXPECT_THAT(diff(),
                AllOf(HasSubstr("Not compared, because the television does not say where its logos and "
                                "its home menu are; switch it off and on, then try again: home-menu."),
                      Not(HasSubstr("only in"))));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, quickOneComparesSettingsAndPicturesWithoutARunAndSaysWhatItDidNotLookAt) {
    writeFile(saves_ / "factory.backup", "b");
    EXPECT_THAT(
        diff(true),
        StartsWith("this television -> " + package_.string() +
                   "\nNo difference in settings and pictures.\nNot compared, because of --quick: apps "
                   "(org.vorta.orvel-app), av, channels, factory, avoc.db.\n" +
                   kNotHeldAndLacking));
    EXPECT_EQ(status_, 0);
    EXPECT_EQ(engine_.backups + engine_.runs, 0);
    EXPECT_FALSE(std::filesystem::exists(root_));
    writeFile(folder_ / "tv/home/menu.json", "mehu");
    FakeSettingsStore::instance().set("a/volume", 20);
    EXPECT_THAT(diff(true), HasSubstr("1 setting and 1 file differ.\nNot compared, because of --quick: "));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, packageOfWhichNothingCanBeComparedIsNotCalledTheSame) {
    std::filesystem::remove_all(package_);
    writeFile(package_ / "tvtimer/timers.backup", "a");
    EXPECT_THAT(diff(true), HasSubstr("Nothing was compared."));
    EXPECT_EQ(status_, 1);
}

TEST_F(DiffTest, televisionWithoutRoomIsToldBeforeTheLibraryBegins) {
    const bool allowed = withOwnMounts([this] {
        std::filesystem::create_directories(root_.parent_path());
        ASSERT_EQ(mount("tmpfs", root_.parent_path().c_str(), "tmpfs", 0, "size=256k"), 0);
        writeFile(root_ / "of-the-last-run", "x");
        writeFile(folder_ / "tv/home/film", std::string(300'000, 'f'));
        EXPECT_THAT(diff(), AllOf(HasSubstr("vxclone: the television cannot be saved for a comparison: the "
                                            "package needs "),
                                  EndsWith("; free some space on the television, or compare less with "
                                           "--quick\n")));
        EXPECT_EQ(status_, 6);
        EXPECT_EQ(engine_.backups, 0);
        EXPECT_EQ(dataContent(),
                  (std::map<std::string, std::string>{{"Clone", "/"}, {"Clone/of-the-last-run", "x"}}));
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

TEST_F(DiffTest, stopEndsItAfterTheLibrarysRunAndPutsEverythingBack) {
    writeFile(root_ / "of-the-last-run", "x");
    const auto before = dataContent();
    engine_.save = [this] {
        save();
        stop_.raise(SIGINT);
    };
    diff();
    EXPECT_EQ(status_, 8);
    EXPECT_EQ(dataContent(), before);
}

TEST_F(DiffTest, resultListThatCannotBeKeptKeepsTheLibraryFromBeginning) {
    FakeSettingsStore::instance().set(kResultKey, 1);
    EXPECT_THAT(diff(), HasSubstr("the television's settings store refuses db/hotel/clone_result"));
    EXPECT_EQ(status_, 10);
    EXPECT_EQ(engine_.backups, 0);
}

TEST_F(DiffTest, runThatGoesOnIsNamedAndNothingIsTouched) {
    const auto run = RunRecorder::begin(root_.parent_path(),
                                        {RunKind::Restore, RunPhase::Staging, "/media/usb/other", "", 1});
    ASSERT_TRUE(run);
    EXPECT_THAT(diff(), HasSubstr("restore from /media/usb/other"));
    EXPECT_EQ(status_, 9);
    EXPECT_EQ(engine_.backups, 0);
    diff(true);
    EXPECT_EQ(status_, 0) << "a quick one does not need the television for itself";
}

TEST_F(DiffTest, lookThatGoesOnIsNamed) {
    const auto look = LookHold::begin(root_.parent_path());
    ASSERT_TRUE(look);
    EXPECT_EQ(diff(),
              "vxclone: another vxclone looks at this television (diff, verify or a dry run); wait for "
              "its end\n");
    EXPECT_EQ(status_, 9);
}

TEST_F(DiffTest, twoPackagesAreComparedWholeAndApplicationsAreNamed) {
    EXPECT_THAT(diffOfTwo(), HasSubstr("\nNo difference.\n"));
    EXPECT_EQ(status_, 0);
    fill(second_, "20");
    writeFile(second_ / "avoc.db", "b");
    writeFile(second_ / "org.some.app/data", "b");
    writeFile(second_ / kOrvel / "hotel.db", "b");
    std::filesystem::remove(second_ / "logo/logo.png");
    std::filesystem::remove(package_ / "tvs-chms/tvs-chms.zip");
    EXPECT_THAT(diffOfTwo(),
                AllOf(StartsWith(package_.string() + " -> " + second_.string() +
                                 "\napps (org.some.app)\n  org.some.app/data  only in " + second_.string() +
                                 "\napps (org.vorta.orvel-app)\n  org.vorta.orvel-app/hotel.db  other bytes; "
                                 "only the application can compare\nboot-logo\n  logo/logo.png  only in " +
                                 package_.string() + "\nchannels\n  tvs-chms/tvs-chms.zip  only in " +
                                 second_.string() +
                                 "\nfiles of the television's services\n  avoc.db  other "
                                 "content\nsettings-keys\n  a/volume  12 -> 20\n"
                                 "1 setting and 5 files differ.\n" +
                                 package_.string() + " is not complete. It lacks: home-data, was, "),
                      HasSubstr("\n" + second_.string() + " is not complete. It lacks: home-data, was, "),
                      EndsWith(kNotChecked)));
    EXPECT_EQ(status_, 1);
    EXPECT_EQ(engine_.backups, 0);
}

TEST_F(DiffTest, settingsThatOnePackageLacksAreNamed) {
    writeFile(second_ / "vconf/Vconf.json", R"({"a/volume":{"int":12},"d":{"int":1}})");
    EXPECT_THAT(diffOfTwo(), AllOf(HasSubstr("b/on  true -> (not there)"), HasSubstr("d  (not there) -> 1")));
}

TEST_F(DiffTest, identitiesOfTwoPackagesAreComparedToo) {
    writeFile(second_ / "ProductCloneInfo.txt", "T\nM\n1\n");
    EXPECT_THAT(diffOfTwo(), HasSubstr("identity\n  ProductCloneInfo.txt  other content"));
}

TEST_F(DiffTest, packageThatCannotBeUnderstoodIsAnErrorBeforeTheTelevisionIsAsked) {
    writeFile(package_ / "vconf/Vconf.json", "[");
    diff();
    EXPECT_EQ(status_, 3);
    diffOfTwo();
    EXPECT_EQ(status_, 3);
    said(diffPackages(second_, folder_ / "none"));
    EXPECT_EQ(status_, 3);
    EXPECT_EQ(engine_.backups, 0);
}

TEST_F(DiffTest, jsonNamesEachDifferenceWithItsValuesAndWhatBecameOfEachPart) {
    FakeSettingsStore::instance().set("a/volume", 20);
    writeFile(folder_ / "tv/home/menu.json", "mehu");
    writeFile(saves_ / kOrvel / "hotel.db", "b");
    std::filesystem::remove(saves_ / "factory.backup");
    std::map<std::string, std::string> results;
    const auto all = comparison();
    for (const nlohmann::json& line : all) {
        if (line.value("kind", "") == "category") {
            results[line.at("category")] = line.at("result");
        }
    }
    EXPECT_EQ(all[0].at("path"), "org.vorta.orvel-app/hotel.db");
    EXPECT_EQ(all[0].at("category"), "apps");
    EXPECT_EQ(all[0].at("application"), kOrvel);
    EXPECT_EQ(all[1].at("path"), "VXHotel/menu.json");
    EXPECT_EQ(all[1].at("category"), "home-menu");
    EXPECT_EQ(all[2].at("setting"), "a/volume");
    EXPECT_EQ(all[2].at("first"), 20);
    EXPECT_EQ(all[2].at("second"), 12);
    EXPECT_EQ(results, (std::map<std::string, std::string>{{"apps", "differs"},
                                                           {"av", "same"},
                                                           {"boot-logo", "same"},
                                                           {"channels", "same"},
                                                           {"factory", "not-compared"},
                                                           {"home-data", "not-held"},
                                                           {"home-menu", "differs"},
                                                           {"mbr-logo", "not-held"},
                                                           {"other", "same"},
                                                           {"settings", "not-held"},
                                                           {"settings-keys", "differs"},
                                                           {"timers", "not-held"},
                                                           {"was", "not-held"}}));
    EXPECT_EQ(all.back().at("exit"), 1);
    EXPECT_EQ(all.back().at("notCompared"), nlohmann::json({"factory"}));
    EXPECT_EQ(all.back().at("notHeld").size(), 5U);
}

TEST_F(DiffTest, whatThePackageLacksIsSaidAndNoDifference) {
    std::filesystem::remove_all(saves_);
    std::filesystem::remove_all(package_);
    writeWholePackage(saves_);
    writeWholePackage(package_, {{kVolume, ""}});
    std::filesystem::remove(package_ / "web-applications.backup");
    sealFolder(package_);
    loadSettings(package_);
    EXPECT_EQ(diff(), "this television -> " + package_.string() +
                          "\nNo difference.\nThe package holds nothing of: boot-logo, home-menu, mbr-logo.\n"
                          "The package is not complete. It lacks: was, settings-keys (" +
                          kVolume + ").\n" + kNotChecked);
    EXPECT_EQ(status_, 0);
    const auto found = findings(diffWithTelevision(context(), package_, false));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0], nlohmann::json::parse(R"({"version": 1, "event": "finding", "check": "completeness",
        "result": "lacking", "category": "was"})"));
    EXPECT_EQ(found[1].at("category"), "settings-keys");
    EXPECT_EQ(found[1].at("what"), kVolume);
}

TEST_F(DiffTest, jsonOfTwoPackagesSaysWhichOfThemLacksWhat) {
    std::map<std::string, std::set<std::string>> lacking;
    writeFile(second_ / "web-applications.backup", "a");
    for (const nlohmann::json& line : findings(diffPackages(package_, second_))) {
        lacking[line.at("path")].insert(line.at("category"));
    }
    EXPECT_EQ(lacking,
              (std::map<std::string, std::set<std::string>>{
                  {package_, {"home-data", "settings", "settings-keys", "timers", "was", "channels"}},
                  {second_, {"home-data", "settings", "settings-keys", "timers", "channels"}}}));
}

TEST_F(DiffTest, jsonOfAQuickOneNamesWhatWasNotCompared) {
    const auto summary = comparison(true).back();
    EXPECT_EQ(summary.at("exit"), 0);
    EXPECT_EQ(summary.at("notCompared"), nlohmann::json({"apps", "av", "channels", "factory", "other"}));
}

}  // namespace
}  // namespace vxclone
