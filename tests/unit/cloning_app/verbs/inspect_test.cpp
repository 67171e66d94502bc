#include <gmock/gmock.h>

#include "tests/unit/cloning_app/verbs/looking_test.h"

namespace vxclone {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class InspectTest : public LookingTest {
 protected:
    std::string inspect(bool everyFile = false) {
        const auto before = contentOf(package_);
        std::string text = said(inspectPackage(package_, everyFile));
        EXPECT_EQ(contentOf(package_), before);
        return text;
    }
};

TEST_F(InspectTest, packageIsShownWithOriginDigestAndSize) {
    const std::string digest = fill(package_);
    EXPECT_THAT(inspect(),
                AllOf(HasSubstr("Room 101"), HasSubstr("2026-03-01T12:30:00Z"), HasSubstr("vxclone 1.0.0"),
                      HasSubstr("VX55R1"), HasSubstr("VX-R1-EU"), HasSubstr(digest), HasSubstr("7 files, ")));
    EXPECT_EQ(status_, 0);
}

TEST_F(InspectTest, categoriesShowWhatTheyReported) {
    EXPECT_THAT(inspect(), AllOf(HasSubstr("org.vorta.orvel-app"), HasSubstr("done: it answered")));
}

TEST_F(InspectTest, settingsAreShownWithTheirValuesAndSecretsWithoutThem) {
    EXPECT_THAT(inspect(), AllOf(HasSubstr("a/volume"), HasSubstr("12"), HasSubstr("\"hello\""),
                                 HasSubstr(kPinSetting), HasSubstr("(set)")));
}

TEST_F(InspectTest, filesAreNamedOnRequestTheSealAndTheManifestToo) {
    EXPECT_THAT(inspect(), Not(HasSubstr("VXHotel/menu.json")));
    EXPECT_THAT(inspect(true),
                AllOf(HasSubstr("VXHotel/menu.json"), HasSubstr("manifest.json"), HasSubstr("validate.txt")));
}

TEST_F(InspectTest, sizeIsThatOfAllFilesOnTheStick) {
    std::uintmax_t files = 0;
    std::uintmax_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(package_)) {
        files += entry.is_regular_file() ? 1U : 0U;
        bytes += entry.is_regular_file() ? entry.file_size() : 0U;
    }
    const auto shown = lines(inspectPackage(package_, false)).front();
    EXPECT_EQ(shown.at("files"), files);
    EXPECT_EQ(shown.at("bytes"), bytes);
}

TEST_F(InspectTest, noLineIsLongerThanTheTerminalAndNothingIsLost) {
    FakeSystemInfo::instance().model = "VX75C2";
    for (const std::size_t columns : {60U, 80U, 120U}) {
        screen_ = {columns, true, false};
        const std::string text = inspect(true);
        EXPECT_LE(widestLine(text), columns) << text;
        EXPECT_THAT(text, AllOf(HasSubstr("VXHotel/menu.json"), HasSubstr(kPinSetting)));
    }
}

TEST_F(InspectTest, televisionWithoutKeysShowsItAllTheSame) {
    FakeSecureStorage::instance().packageKey.reset();
    EXPECT_THAT(inspect(), AllOf(HasSubstr("Room 101"), HasSubstr("package-key")));
    EXPECT_EQ(status_, 0);
}

TEST_F(InspectTest, packageOfAnotherKindIsShownWithBothValues) {
    FakeSystemInfo::instance().model = "VX75C2";
    EXPECT_THAT(inspect(), HasSubstr("this television VX75C2, the package VX55R1"));
    EXPECT_EQ(status_, 0);
}

TEST_F(InspectTest, alteredManifestIsShownAndFails) {
    std::string text = readFile(package_ / "manifest.json");
    text.replace(text.find("Room 101"), 8, "Room 102");
    writeFile(package_ / "manifest.json", text);
    EXPECT_THAT(inspect(), AllOf(HasSubstr("Room 102"), HasSubstr("altered: manifest.json")));
    EXPECT_EQ(status_, 5);
    writeFile(package_ / "manifest.json", "{");
    EXPECT_THAT(inspect(), HasSubstr("altered: manifest.json"));
    EXPECT_EQ(status_, 5);
}

TEST_F(InspectTest, packageOfAnotherToolIsShownWithoutAManifest) {
    sealFolderWithoutManifest(package_);
    EXPECT_THAT(inspect(), HasSubstr("checked by the seal alone"));
    EXPECT_EQ(status_, 0);
}

TEST_F(InspectTest, damagedSettingsAreSaidAndTheRestIsShown) {
    writeFile(package_ / "vconf/Vconf.json", "[");
    EXPECT_THAT(inspect(), AllOf(HasSubstr("Room 101"), HasSubstr("is damaged")));
    EXPECT_EQ(status_, 3);
}

TEST_F(InspectTest, whatIsNoPackageOrNewerIsAnError) {
    writeFile(package_ / "manifest.json", R"({"format":"2.0"})");
    EXPECT_THAT(inspect(), HasSubstr("later vxclone"));
    EXPECT_EQ(status_, 3);
    said(inspectPackage(folder_ / "none/at/all", false));
    EXPECT_EQ(status_, 6);
    said(inspectPackage(folder_ / "none", false));
    EXPECT_EQ(status_, 3);
}

TEST_F(InspectTest, unsafeEntryIsAnError) {
    std::filesystem::create_symlink("/etc/passwd", package_ / "link");
    inspect();
    EXPECT_EQ(status_, 3);
}

TEST_F(InspectTest, hostileTextDoesNotSteerTheTerminal) {
    writeFile(package_ / "vconf/Vconf.json", R"({"k\u001b[31m":{"string":"v\u001b[2J"}})");
    writeFile(package_ / "ProductCloneInfo.txt",
              "\x1b[31mtag\nmo\x07"
              "del\n3\n");
    EXPECT_EQ(inspect(true).find_first_of("\x1b\x07"), std::string::npos);
}

TEST_F(InspectTest, jsonHasALineForEachThing) {
    std::map<std::string, int> kinds;
    for (const auto& line : lines(inspectPackage(package_, false))) {
        const bool isLack = line.value("check", "") == "completeness";
        ++kinds[isLack ? "lack" : line.value("kind", line.at("event").get<std::string>())];
        if (line.value("setting", "") == kPinSetting) {
            EXPECT_EQ(line.at("value"), "(set)");
            EXPECT_EQ(line.at("settingKind"), "secret");
        }
    }
    EXPECT_EQ(kinds, (std::map<std::string, int>{{"package", 1},
                                                 {"finding", 4},
                                                 {"lack", 61},
                                                 {"category", 2},
                                                 {"file", 7},
                                                 {"setting", 4},
                                                 {"summary", 1}}));
}

TEST_F(InspectTest, whatThePackageLacksIsNamedSettingBySetting) {
    writeWholePackage(package_, {{kVolume, ""}});
    std::filesystem::remove(package_ / "factory.backup");
    sealFolder(package_);
    EXPECT_THAT(inspect(),
                HasSubstr(std::string("The package is not complete. It lacks: factory, settings-keys (") +
                          kVolume + ")."));
    EXPECT_EQ(status_, 0);
}

TEST_F(InspectTest, jsonOfAnErrorIsOneLine) {
    const auto all = lines(inspectPackage(folder_ / "none", false));
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].at("event"), "error");
    EXPECT_EQ(all[0].at("exit"), 3);
}

}  // namespace
}  // namespace vxclone
