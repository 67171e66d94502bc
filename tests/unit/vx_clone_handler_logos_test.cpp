// Boot logo, set-top box icons and home menu.

#include "cloner_test.h"

extern "C" {
/// Wrapped to record it among the calls. The real sync is not called.
void __wrap_sync(void) {
    vxtest::ScriptedPlatform::instance().decide("sync", "");
}
}

namespace vxtest {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string kPackage = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/";
const Lines kSync = {"sync()"};

class LogosTest : public ClonerTest {
 protected:
    LogosTest() { tv.setDirectories("/tmp/area/boot", "/tmp/area/mbr", "/tmp/area/home"); }

    static void give(const fs::path& file, const std::string& content = "x") { writeFile(file, content); }
    static unsigned modeOf(const fs::path& path) {
        return static_cast<unsigned>(fs::status(path).permissions());
    }
};

// The boot logo.

class BootLogoTest : public LogosTest {
 protected:
    bool clone(std::int32_t direction) { return run(&VXCloneHandler::m_HospitalityLogoClone, direction); }
    static fs::path package(const std::string& name) { return LogosTest::clone("logo") / name; }

    const Lines kBegun =
        joined(Lines{"vx_get_bootlogo_path()", "E/35 m_HospitalityLogoClone: Logo Path: [/tmp/area/boot]"},
               asked(kPackage + "logo/"));
    const Lines kFailed = reported("VXCLONE_HOSPITALITY_LOGO-FAIL");
};

TEST_F(BootLogoTest, anyDirectionButRestoreOnlyReportsAFailure) {
    give(work("boot/logo.jpg"));
    for (const std::int32_t direction : {0, 2}) {
        tv.setSetting(kCloneResultKey, std::string());
        EXPECT_FALSE(clone(direction));
    }
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kFailed, kFailed)));
    EXPECT_TRUE(fs::is_empty(kCloneDirectory));
    EXPECT_TRUE(fs::exists(work("boot/logo.jpg")));
}

TEST_F(BootLogoTest, restoreReplacesTheDirectory) {
    give(package("new.jpg"), "new");
    give(package("deep/below.jpg"));
    give(work("boot/old.jpg"));
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kBegun, removed("/tmp/area/boot"), kSync, made("/tmp/area/boot"),
                                        copied(kPackage + "logo/", "/tmp/area/boot", 2), kSync,
                                        reported("VXCLONE_HOSPITALITY_LOGO-SUCCESS"))));
    EXPECT_THAT(snapshot(work("boot")), ElementsAre(testing::Pair("new.jpg", "new")));
    EXPECT_EQ(modeOf(work("boot")), 0764U);
}

TEST_F(BootLogoTest, restoreWithoutLogoInThePackageTakesTheTelevisionsAway) {
    give(work("boot/old.jpg"));
    EXPECT_FALSE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, removed("/tmp/area/boot"), kSync, kFailed)));
    EXPECT_FALSE(fs::exists(work("boot")));
}

TEST_F(BootLogoTest, restoreWhoseDirectoryCannotBeMadeFailsWithoutCopying) {
    give(package("new.jpg"));
    tv.setDirectories("/tmp/area/missing/boot", "", "");
    EXPECT_FALSE(clone(1));
    const auto transcript = tv.transcript();
    ASSERT_EQ(transcript.size(), 10U);
    EXPECT_EQ(transcript[5], "sync()");
    EXPECT_THAT(transcript[6], testing::StartsWith("E/35 m_CreateDir: Filesystem error: "));
    EXPECT_THAT(Lines(transcript.begin() + 7, transcript.end()), ElementsAreArray(kFailed));
}

TEST_F(BootLogoTest, restoreUsesThePathAsTheTelevisionNamesIt) {
    give(package("new.jpg"), "new");
    tv.setDirectories("/tmp/area/boot/", "", "");
    EXPECT_TRUE(clone(1));
    EXPECT_EQ(tv.describedLog().front(), "E/35 m_HospitalityLogoClone: Logo Path: [/tmp/area/boot/]");
    EXPECT_EQ(readFile(work("boot/new.jpg")), "new");
}

TEST_F(BootLogoTest, restoreOfAFileInThePlaceOfTheLogosCountsAsNoLogo) {
    writeFile(LogosTest::clone("logo"), "no directory");
    writeFile(work("boot/old.jpg"), "old");
    EXPECT_FALSE(clone(1));
    EXPECT_FALSE(fs::exists(work("boot")));
}

TEST_F(BootLogoTest, restoreWhoseCopyFailsIsASuccess) {
    give(package("new.jpg"));
    tv.onCall("sync", [&] { fs::remove_all(LogosTest::clone("logo")); });
    EXPECT_TRUE(clone(1));
    EXPECT_TRUE(fs::is_empty(work("boot")));
}

// The set-top box icons.

class IconsTest : public LogosTest {
 protected:
    bool clone(std::int32_t direction) { return run(&VXCloneHandler::m_MBRLogoClone, direction); }
    static fs::path package(const std::string& name) { return LogosTest::clone("VXMBRLogo") / name; }

    IconsTest() { tv.setSources({{1, {"HDMI1", 31, 1}}, {2, {"STB", 32, 0}}, {3, {"HDMI2", 33, 0}}}); }

    static Lines sourceLine(const std::string& source) {
        return {"D/33 m_SetMBRCutomIcon: GetSourceList " + source};
    }
    static std::string registered(const std::string& source, const std::string& app) {
        return "CSourceAPI::SetCustomIconPath(32, \"/tmp/area/mbr/" + source + "\", \"/tmp/area/mbr/" + app +
               "\", \"/tmp/area/mbr/" + app + "\", 0)";
    }
    void giveIcons() {
        give(work("mbr/stb_source_icon.jpg"));
        give(work("mbr/stb_app_icon.jpg"));
    }

    const Lines kBegun = {"E/35 m_MBRLogoClone: Start MBR Icon Clone"};
    const Lines kIconPath = {"vx_get_mbrlogo_path()"};
    const Lines kSourceJpg = asked("/tmp/area/mbr/stb_source_icon.jpg");
    const Lines kAppJpg = asked("/tmp/area/mbr/stb_app_icon.jpg");
    const Lines kSourceList = {"CSourceAPI::Get()", "CSourceAPI::GetSourceList()"};
    /// Both icons are checked and found, each twice.
    const Lines kBothFound = joined(kIconPath, kSourceJpg, kAppJpg, kSourceJpg, kAppJpg);
    /// The second source gets the icons.
    const Lines kGiven =
        joined(kSourceList, sourceLine("HDMI1 31 1"), sourceLine("STB 32 0"), Lines{"CSourceAPI::Get()"},
               Lines{registered("stb_source_icon.jpg", "stb_app_icon.jpg")});
    const Lines kSucceeded = reported("VXCLONE_VXHOTEL_MBR_LOGO-SUCCESS");
    const Lines kFailed = reported("VXCLONE_VXHOTEL_MBR_LOGO-FAIL");
};

TEST_F(IconsTest, anyDirectionButRestoreIsInvalid) {
    giveIcons();
    for (const std::int32_t direction : {0, 2}) {
        tv.setSetting(kCloneResultKey, std::string());
        EXPECT_FALSE(clone(direction));
    }
    const Lines once = joined(kBegun, Lines{"E/35 m_MBRLogoClone: Invalid Case!!!"}, kFailed);
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(once, once)));
    EXPECT_TRUE(fs::is_empty(kCloneDirectory));
}

TEST_F(IconsTest, restoreReplacesTheDirectoryAndRegistersTheIcons) {
    give(package("stb_source_icon.jpg"), "source");
    give(package("stb_app_icon.jpg"), "app");
    give(work("mbr/old.jpg"));
    EXPECT_TRUE(clone(1));
    const Lines replaced =
        joined(asked(kPackage + "VXMBRLogo/"), Lines{"E/35 m_MBRLogoClone: MBR Icons Exist in Clone dir"},
               kIconPath, removed("/tmp/area/mbr"), kSync, made("/tmp/area/mbr"),
               copied(kPackage + "VXMBRLogo/", "/tmp/area/mbr", 2), kSync);
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, replaced, kBothFound, kGiven, kSucceeded)));
    EXPECT_THAT(snapshot(work("mbr")), ElementsAre(testing::Pair("stb_app_icon.jpg", "app"),
                                                   testing::Pair("stb_source_icon.jpg", "source")));
}

TEST_F(IconsTest, restoreWithoutIconsInThePackageKeepsAndRegistersTheTelevisions) {
    giveIcons();
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, asked(kPackage + "VXMBRLogo/"), kBothFound,
                                                         kGiven, kSucceeded)));
    EXPECT_TRUE(fs::exists(work("mbr/stb_source_icon.jpg")));
}

TEST_F(IconsTest, restoreWhoseDirectoryCannotBeMadeFailsForWantOfTheIcons) {
    give(package("stb_source_icon.jpg"));
    give(package("stb_app_icon.jpg"));
    tv.setDirectories("", "/tmp/area/missing/mbr", "");
    EXPECT_FALSE(clone(1));
    const auto log = tv.describedLog();
    EXPECT_THAT(log, testing::Contains("E/35 m_SetMBRCutomIcon: image icon not found").Times(1));
    EXPECT_THAT(log, testing::Contains(testing::HasSubstr("m_CopyDirectory")).Times(0));
    EXPECT_THAT(tv.callsOf("sync"), ElementsAre("sync()"));
    EXPECT_EQ(results(), "VXCLONE_VXHOTEL_MBR_LOGO-FAIL\n");
}

TEST_F(IconsTest, restoreWhoseRegistrationFailsIsReportedOnceAndKeepsTheFiles) {
    give(package("stb_source_icon.jpg"));
    give(package("stb_app_icon.jpg"));
    tv.answer("CSourceAPI::GetSourceList", 0);
    EXPECT_FALSE(clone(1));
    EXPECT_EQ(results(), "VXCLONE_VXHOTEL_MBR_LOGO-FAIL\n");
    EXPECT_TRUE(fs::exists(work("mbr/stb_app_icon.jpg")));
}

TEST_F(IconsTest, listThatIsPromisedAndNotGivenSetsNothingAndIsNoCrash) {
    give(package("stb_source_icon.jpg"));
    give(package("stb_app_icon.jpg"));
    tv.answer("CSourceAPI::GetSourceList", 1);
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.callsOf("CSourceAPI::SetCustomIconPath"), IsEmpty());
}

/// The existing files, and the expected result.
struct Icons {
    const char* name;
    std::vector<const char*> files;
    const char* source;  ///< the icons that are registered, or null
    const char* app;
};

class IconChoiceTest : public IconsTest, public testing::WithParamInterface<Icons> {};

TEST_P(IconChoiceTest, jpegWinsOverPngAndOtherNamesAreNotLookedAt) {
    const Icons& given = GetParam();
    fs::create_directories(work("mbr"));
    for (const char* const file : given.files) {
        give(work("mbr") / file);
    }
    EXPECT_EQ(engine.m_SetMBRCutomIcon(), given.source != nullptr);
    const auto set = tv.callsOf("CSourceAPI::SetCustomIconPath");
    if (given.source == nullptr) {
        EXPECT_THAT(set, IsEmpty());
        EXPECT_EQ(tv.describedLog().back(), "E/35 m_SetMBRCutomIcon: image icon not found");
    } else {
        EXPECT_THAT(set, ElementsAre(registered(given.source, given.app)));
    }
    EXPECT_EQ(results(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Files, IconChoiceTest,
    testing::Values(
        Icons{"all",
              {"stb_source_icon.jpg", "stb_source_icon.png", "stb_app_icon.jpg", "stb_app_icon.png"},
              "stb_source_icon.jpg",
              "stb_app_icon.jpg"},
        Icons{"appIsPng",
              {"stb_source_icon.jpg", "stb_app_icon.png"},
              "stb_source_icon.jpg",
              "stb_app_icon.png"},
        Icons{"sourceIsPng",
              {"stb_source_icon.png", "stb_app_icon.jpg"},
              "stb_source_icon.png",
              "stb_app_icon.jpg"},
        Icons{"bothArePng",
              {"stb_source_icon.png", "stb_app_icon.png"},
              "stb_source_icon.png",
              "stb_app_icon.png"},
        Icons{"noApp", {"stb_source_icon.jpg"}, nullptr, nullptr},
        Icons{"noSource", {"stb_app_icon.jpg"}, nullptr, nullptr}, Icons{"none", {}, nullptr, nullptr},
        Icons{"otherCase", {"STB_source_icon.jpg", "stb_app_icon.JPG"}, nullptr, nullptr},
        Icons{"otherExtension", {"stb_source_icon.jpeg", "stb_app_icon.gif"}, nullptr, nullptr}),
    [](const auto& test) { return test.param.name; });

TEST_F(IconsTest, registrationWithoutSourceIconDoesNotAskForTheAppIconAgain) {
    give(work("mbr/stb_app_icon.jpg"));
    EXPECT_FALSE(engine.m_SetMBRCutomIcon());
    EXPECT_THAT(
        tv.transcript(),
        ElementsAreArray(joined(kIconPath, kSourceJpg, kAppJpg, asked("/tmp/area/mbr/stb_source_icon.png"),
                                Lines{"E/35 m_SetMBRCutomIcon: image icon not found"})));
}

TEST_F(IconsTest, registrationOfALinkTakesThePng) {
    giveIcons();
    fs::remove(work("mbr/stb_source_icon.jpg"));
    fs::create_symlink(work("mbr/stb_app_icon.jpg"), work("mbr/stb_source_icon.jpg"));
    give(work("mbr/stb_source_icon.png"));
    EXPECT_TRUE(engine.m_SetMBRCutomIcon());
    EXPECT_THAT(tv.callsOf("CSourceAPI::SetCustomIconPath"),
                ElementsAre(registered("stb_source_icon.png", "stb_app_icon.jpg")));
}

TEST_F(IconsTest, registrationWhoseSourceListFailsIsFalse) {
    giveIcons();
    tv.answer("CSourceAPI::GetSourceList", 0);
    EXPECT_FALSE(engine.m_SetMBRCutomIcon());
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kBothFound, kSourceList,
                                        Lines{"E/35 m_SetMBRCutomIcon: SourceAPI GetSourceList fail"})));
}

TEST_F(IconsTest, registrationWithoutSourceThatTakesIconsSetsNothing) {
    giveIcons();
    tv.setSources({{7, {"HDMI1", 31, 1}}, {-2, {"TV", 30, 5}}});
    EXPECT_TRUE(engine.m_SetMBRCutomIcon());
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBothFound, kSourceList, sourceLine("TV 30 5"),
                                                         sourceLine("HDMI1 31 1"))));
}

TEST_F(IconsTest, registrationWithoutAnySourceIsTrue) {
    giveIcons();
    tv.setSources({});
    EXPECT_TRUE(engine.m_SetMBRCutomIcon());
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBothFound, kSourceList)));
}

TEST_F(IconsTest, registrationThatTheSourceServiceRefusesIsTrue) {
    giveIcons();
    tv.answer("CSourceAPI::SetCustomIconPath", 0);
    EXPECT_TRUE(engine.m_SetMBRCutomIcon());
    EXPECT_EQ(tv.callsOf("CSourceAPI::SetCustomIconPath").size(), 1U);
}

TEST_F(IconsTest, registrationAppendsASlashOfItsOwn) {
    giveIcons();
    tv.setDirectories("", "/tmp/area/mbr/", "");
    EXPECT_TRUE(engine.m_SetMBRCutomIcon());
    EXPECT_THAT(tv.callsOf("CSourceAPI::SetCustomIconPath"),
                ElementsAre("CSourceAPI::SetCustomIconPath(32, \"/tmp/area/mbr//stb_source_icon.jpg\", "
                            "\"/tmp/area/mbr//stb_app_icon.jpg\", \"/tmp/area/mbr//stb_app_icon.jpg\", 0)"));
}

// The home menu.

class HomeMenuTest : public LogosTest {
 protected:
    bool clone(std::int32_t direction) { return run(&VXCloneHandler::m_VXHotelHomeAppDataClone, direction); }
    static fs::path package(const std::string& name) { return LogosTest::clone("VXHotel") / name; }

    const Lines kBegun = {"vx_get_homemenu_path()"};
    const Lines kSucceeded = reported("VXCLONE_VXHOTEL_HOMEAPP_DATA-SUCCESS");
    const Lines kFailed = reported("VXCLONE_VXHOTEL_HOMEAPP_DATA-FAIL");
};

TEST_F(HomeMenuTest, backupCopiesTheTelevisionsFiles) {
    give(work("home/menu.xml"), "menu");
    give(work("home/deep/below.xml"));
    EXPECT_TRUE(clone(0));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, made(kPackage + "VXHotel/"),
                                                         copied("/tmp/area/home/", kPackage + "VXHotel/", 2),
                                                         kSync, kSucceeded)));
    EXPECT_THAT(snapshot(LogosTest::clone("VXHotel")), ElementsAre(testing::Pair("menu.xml", "menu")));
}

TEST_F(HomeMenuTest, restoreOverwritesAndKeepsOtherFiles) {
    give(package("menu.xml"), "new");
    give(work("home/menu.xml"), "old");
    give(work("home/kept.xml"), "kept");
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(
                    joined(kBegun, copied(kPackage + "VXHotel/", "/tmp/area/home/", 1), kSync, kSucceeded)));
    EXPECT_THAT(snapshot(work("home")),
                ElementsAre(testing::Pair("kept.xml", "kept"), testing::Pair("menu.xml", "new")));
}

TEST_F(HomeMenuTest, backupOfATelevisionWithoutHomeMenuIsASuccessWithAnEmptyDirectory) {
    EXPECT_TRUE(clone(0));
    const Lines notCopied = {
        "E/35 m_CopyDirectory: src = /tmp/area/home/, dst = " + kPackage + "VXHotel/",
        "E/35 m_CopyDirectory: srcPath(/tmp/area/home/) does not exist or is not a directory."};
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kBegun, made(kPackage + "VXHotel/"), notCopied, kSync, kSucceeded)));
    EXPECT_TRUE(fs::is_empty(LogosTest::clone("VXHotel")));
}

TEST_F(HomeMenuTest, restoreOntoATelevisionWithoutHomeMenuCopiesNothingAndIsASuccess) {
    give(package("menu.xml"));
    EXPECT_TRUE(clone(1));
    EXPECT_FALSE(fs::exists(work("home")));
    EXPECT_EQ(results(), "VXCLONE_VXHOTEL_HOMEAPP_DATA-SUCCESS\n");
}

TEST_F(HomeMenuTest, restoreOfAPackageWithoutHomeMenuMakesItAndIsASuccess) {
    give(work("home/kept.xml"), "kept");
    EXPECT_TRUE(clone(1));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, made(kPackage + "VXHotel/"),
                                                         copied(kPackage + "VXHotel/", "/tmp/area/home/", 0),
                                                         kSync, kSucceeded)));
    EXPECT_EQ(modeOf(LogosTest::clone("VXHotel")), 0764U);
}

TEST_F(HomeMenuTest, eitherDirectionWhoseDirectoryCannotBeMadeFails) {
    give(work("home/menu.xml"));
    fs::remove_all(kCloneDirectory);
    for (const std::int32_t direction : {0, 1}) {
        EXPECT_FALSE(clone(direction));
    }
    EXPECT_EQ(results(), "VXCLONE_VXHOTEL_HOMEAPP_DATA-FAIL\nVXCLONE_VXHOTEL_HOMEAPP_DATA-FAIL\n");
    EXPECT_THAT(tv.callsOf("sync"), IsEmpty());
    EXPECT_THAT(tv.messages(), testing::Contains(testing::StartsWith("src = ")).Times(0));
}

TEST_F(HomeMenuTest, anotherDirectionFails) {
    give(work("home/menu.xml"));
    EXPECT_FALSE(clone(2));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, kFailed)));
    EXPECT_TRUE(fs::is_empty(kCloneDirectory));
}

TEST_F(LogosTest, everyLineOfTheMembersNamesItsSource) {
    give(work("mbr/stb_source_icon.jpg"));
    give(work("mbr/stb_app_icon.jpg"));
    tv.setSources({{1, {"STB", 1, 0}}});
    run(&VXCloneHandler::m_HospitalityLogoClone, 1);
    run(&VXCloneHandler::m_MBRLogoClone, 1);
    std::size_t ours = 0;
    for (const LogLine& line : tv.log()) {
        if (line.function == "m_HospitalityLogoClone" || line.function == "m_MBRLogoClone" ||
            line.function == "m_SetMBRCutomIcon") {
            EXPECT_EQ(line.source, "VXCloneHandlerLogos.cpp");
            ++ours;
        }
    }
    EXPECT_EQ(ours, 3U);
}

}  // namespace
}  // namespace vxtest
