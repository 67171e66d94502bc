#include "cloning_app/package/settings_file.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <csignal>

#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/fake_settings_store.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SettingsFileTest : public testing::Test {
 protected:
    SettingsFileTest() { FakeSettingsStore::instance().reset(); }

    Result<std::optional<std::vector<Setting>>> read() {
        const Descriptor opened(open(package_.path().c_str(), O_RDONLY | O_DIRECTORY));
        return readSettings({opened.get(), package_.path().string(), Place::Stick});
    }

    std::vector<Setting> readText(const std::string& text) {
        writeFile(package_ / "vconf/Vconf.json", text);
        const auto settings = read();
        EXPECT_TRUE(settings && *settings);
        return settings && *settings ? **settings : std::vector<Setting>();
    }

    ErrorCode errorOf(const std::string& text) {
        writeFile(package_ / "vconf/Vconf.json", text);
        const auto settings = read();
        EXPECT_FALSE(settings);
        return settings ? ErrorCode::Internal : settings.error().code;
    }

    TestFolder package_;
};

TEST_F(SettingsFileTest, packageWithoutTheFileHasNone) {
    const auto settings = read();
    ASSERT_TRUE(settings);
    EXPECT_FALSE(*settings);
}

TEST_F(SettingsFileTest, settingsThatAreTakenOutLeaveTheOthersAsTheLibraryWritesThem) {
    writeFile(package_ / "vconf/Vconf.json",
              "{\n\t\"a\" : \n\t{\n\t\t\"string\" : \"caf\\u00e9 \\\"x\\\"\"\n\t},\n\t\"b\" : "
              "\n\t{\n\t\t\"int\" : 7\n\t},\n\t\"c\" : \n\t{\n\t\t\"bool\" : 1\n\t}\n}");
    const Descriptor opened(open(package_.path().c_str(), O_RDONLY | O_DIRECTORY));
    const Tree tree{opened.get(), package_.path().string(), Place::Television};
    ASSERT_TRUE(takeOutSettings(tree, {"b", "not-there"}));
    EXPECT_EQ(readFile(package_ / "vconf/Vconf.json"),
              "{\n\t\"a\" : \n\t{\n\t\t\"string\" : \"caf\\u00e9 \\\"x\\\"\"\n\t},\n\t\"c\" : "
              "\n\t{\n\t\t\"bool\" : 1\n\t}\n}");
    ASSERT_TRUE(takeOutSettings(tree, {"a", "c"}));
    EXPECT_THAT(readText(readFile(package_ / "vconf/Vconf.json")), IsEmpty());
}

TEST_F(SettingsFileTest, settingsOfNoFileCannotBeTakenOut) {
    const Descriptor opened(open(package_.path().c_str(), O_RDONLY | O_DIRECTORY));
    EXPECT_FALSE(takeOutSettings({opened.get(), package_.path().string(), Place::Television}, {"a"}));
    EXPECT_FALSE(std::filesystem::exists(package_ / "vconf"));
}

TEST_F(SettingsFileTest, damagedFileIsRefused) {
    for (const char* const text : {"", "null", "[]", "{", "{\"a\":{\"int\":1}} x", "\x01"}) {
        EXPECT_EQ(errorOf(text), ErrorCode::SettingsDamaged) << text;
    }
}

TEST_F(SettingsFileTest, veryDeepFileIsRefusedWithoutACrash) {
    EXPECT_EQ(errorOf(std::string(1'000'000, '[')), ErrorCode::SettingsDamaged);
}

TEST_F(SettingsFileTest, fileAboveTheLimitIsRefused) {
    EXPECT_EQ(errorOf("{}" + std::string(kMostSettingsBytes, ' ')), ErrorCode::SettingsDamaged);
    EXPECT_THAT(readText("{}" + std::string(kMostSettingsBytes - 2, ' ')), IsEmpty());
}

std::string settingsText(std::size_t count) {
    std::string text = "{";
    for (std::size_t index = 0; index < count; ++index) {
        text += (index == 0 ? "\"k" : ",\"k") + std::to_string(index) + R"(":{"int":1})";
    }
    return text + "}";
}

TEST_F(SettingsFileTest, moreSettingsThanAnyTelevisionHasAreRefused) {
    EXPECT_EQ(readText(settingsText(kMostSettings)).size(), kMostSettings);
    writeFile(package_ / "vconf/Vconf.json", settingsText(60'000));
    const auto settings = read();
    ASSERT_FALSE(settings);
    EXPECT_EQ(settings.error().code, ErrorCode::SettingsDamaged);
    EXPECT_EQ(settings.error().sentence,
              (package_ / "vconf/Vconf.json").string() +
                  " is damaged: the whole has more than 40001 names and values; make the package again with "
                  "vxclone backup");
}

TEST_F(SettingsFileTest, readingEndsWhenItShallStop) {
    writeFile(package_ / "vconf/Vconf.json", settingsText(kMostSettings));
    StopFlag stop;
    stop.raise(SIGTERM);
    const Descriptor opened(open(package_.path().c_str(), O_RDONLY | O_DIRECTORY));
    const auto settings = readSettings({opened.get(), package_.path().string(), Place::Stick}, &stop);
    ASSERT_FALSE(settings);
    EXPECT_EQ(settings.error().code, ErrorCode::Terminated);
}

TEST_F(SettingsFileTest, linkInsteadOfTheFileOrItsFolderIsNotFollowed) {
    const TestFolder elsewhere;
    writeFile(elsewhere / "Vconf.json", "{}");
    std::filesystem::create_directory_symlink(elsewhere.path(), package_ / "vconf");
    EXPECT_FALSE(read());
    std::filesystem::remove(package_ / "vconf");
    std::filesystem::create_directory(package_ / "vconf");
    std::filesystem::create_symlink(elsewhere / "Vconf.json", package_ / "vconf/Vconf.json");
    EXPECT_FALSE(read());
}

TEST_F(SettingsFileTest, fifoInsteadOfTheFileIsRefusedWithoutWaiting) {
    std::filesystem::create_directory(package_ / "vconf");
    ASSERT_EQ(mkfifo((package_ / "vconf/Vconf.json").c_str(), 0600), 0);
    EXPECT_FALSE(read());
}

TEST_F(SettingsFileTest, valuesThatTheStoreHoldsAreApplied) {
    auto& store = FakeSettingsStore::instance();
    store.set("a", 7);
    store.set("b", FakeSettingsStore::Bool{true});
    store.set("c", std::string("hello"));
    store.set("d", FakeSettingsStore::Bool{true});
    store.set("e", 0);
    const auto settings = readText(
        R"({"a":{"int":7},"b":{"bool":1},"c":{"string":"hello"},"d":{"bool":true},"e":{"int":null}})");
    EXPECT_EQ(settings.size(), 5U);
    EXPECT_THAT(settingsNotApplied(settings), IsEmpty());
}

TEST_F(SettingsFileTest, stringWithANulIsAppliedUpToIt) {
    FakeSettingsStore::instance().set("a", std::string("cut"));
    EXPECT_THAT(settingsNotApplied(readText(R"({"a":{"string":"cut\u0000off"}})")), IsEmpty());
}

TEST_F(SettingsFileTest, valuesThatTheStoreDoesNotHoldAreNamed) {
    auto& store = FakeSettingsStore::instance();
    store.set("a", 8);
    store.set("b", FakeSettingsStore::Bool{false});
    store.set("c", std::string("hello!"));
    store.set("e", std::string("7"));
    const auto settings =
        readText(R"({"a":{"int":7},"b":{"bool":1},"c":{"string":"hello"},"d":{"int":1},"e":{"int":7}})");
    EXPECT_THAT(settingsNotApplied(settings), ElementsAre("a", "b", "c", "d", "e"));
}

TEST_F(SettingsFileTest, boolThatTheStoreRefusesIsNotApplied) {
    FakeSettingsStore::instance().set("a", FakeSettingsStore::Bool{true});
    EXPECT_THAT(settingsNotApplied(readText(R"({"a":{"bool":5}})")), ElementsAre("a"));
    EXPECT_THAT(settingsNotApplied(readText(R"({"a":{"bool":-1}})")), ElementsAre("a"));
}

TEST_F(SettingsFileTest, valuesThatNoSettingHasAreNotApplied) {
    auto& store = FakeSettingsStore::instance();
    for (const char* const key : {"a", "b", "c", "d"}) {
        store.set(key, 0);
    }
    const auto settings =
        readText(R"({"a":{"int":"x"},"b":{"int":99999999999},"c":{"float":0},"d":0,"e":{"string":[]}})");
    EXPECT_THAT(settingsNotApplied(settings), ElementsAre("a", "b", "c", "d", "e"));
}

}  // namespace
}  // namespace vxclone
