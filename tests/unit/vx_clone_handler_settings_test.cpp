// The settings snapshot.

#include <algorithm>
#include <map>

#include "engine_test.h"
#include "expected_settings.h"

namespace vxtest {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kFile = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/vconf/Vconf.json";

class SettingsTest : public EngineTest {
 protected:
    SettingsTest() {
        int number = 100;
        for (const SettingKey& row : kExpectedSettings) {
            ++number;
            switch (row.type) {
                case SettingType::Int:
                    tv.setSetting(row.key, number);
                    break;
                case SettingType::String:
                    tv.setSetting(row.key, "text " + std::to_string(number));
                    break;
                case SettingType::Bool:
                    tv.setSetting(row.key, BoolSetting{1});
                    break;
            }
        }
    }

    /// The expected file: members sorted by name, tabs, no line end after the last brace.
    std::string expectedFile() const {
        std::map<std::string, std::string> members;
        for (const SettingKey& row : kExpectedSettings) {
            const Setting value = tv.setting(row.key);
            members[row.key] = row.type == SettingType::Int
                                   ? "\"int\" : " + std::to_string(std::get<int>(value))
                               : row.type == SettingType::Bool
                                   ? "\"bool\" : " + std::to_string(std::get<BoolSetting>(value).value)
                                   : "\"string\" : \"" + std::get<std::string>(value) + "\"";
        }
        std::string text = "{";
        for (const auto& [key, value] : members) {
            text += (text == "{" ? "\n\t\"" : ",\n\t\"") + key + "\" : \n\t{\n\t\t" + value + "\n\t}";
        }
        return text + "\n}";
    }

    bool restoreOf(const std::string& content) {
        fs::create_directories(kVconfDirectory);
        writeFile(kFile, content);
        return restore();
    }

    bool restore() {
        VXCloneHandler::m_ecloneType = kDirectionRestore;
        return engine.m_VCONFDataClone();
    }

    int intSetting(const char* key) const { return std::get<int>(tv.setting(key)); }
    int boolSetting(const char* key) const { return std::get<BoolSetting>(tv.setting(key)).value; }
    std::string stringSetting(const char* key) const { return std::get<std::string>(tv.setting(key)); }

    std::vector<std::string> setCalls() const {
        std::vector<std::string> result;
        for (const std::string& call : tv.calls()) {
            if (call.rfind("vconf_set_", 0) == 0) {
                result.push_back(call);
            }
        }
        return result;
    }

    static constexpr const char* kAlarmMode = "db/vxmenu/system/Alarm/Mode";
    static constexpr const char* kDoorEye = "db/hotel/dooreye";
    static constexpr const char* kWelcome = "db/vxhotel/hotelmenu/welcomemessage";
};

TEST_F(SettingsTest, backupReadsEveryKeyInOrderWithItsType) {
    engine.m_VCONFDataClone();
    std::vector<std::string> expected;
    for (const SettingKey& row : kExpectedSettings) {
        const std::string call = row.type == SettingType::Int      ? "vconf_get_int"
                                 : row.type == SettingType::String ? "vconf_get_str"
                                                                   : "vconf_get_bool";
        expected.push_back(call + "(\"" + row.key + "\")");
    }
    EXPECT_EQ(tv.calls(), expected);
}

TEST_F(SettingsTest, backupWritesTheExactFileAndIsFalse) {
    EXPECT_FALSE(engine.m_VCONFDataClone());
    EXPECT_EQ(readFile(kFile), expectedFile());
    EXPECT_THAT(
        tv.describedLog(),
        ElementsAre(
            "E/35 m_CreateDir: Directory Path[/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/vconf/]"));
    EXPECT_TRUE(VXCloneHandler::m_jscloneParam.empty());
}

TEST_F(SettingsTest, backupReportsNoResult) {
    engine.m_VCONFDataClone();
    EXPECT_EQ(results(), "stale");
}

TEST_F(SettingsTest, backupOfABoolWritesItsInteger) {
    tv.setSetting(kDoorEye, BoolSetting{0});
    engine.m_VCONFDataClone();
    EXPECT_THAT(readFile(kFile), testing::HasSubstr("\t\"db/hotel/dooreye\" : \n\t{\n\t\t\"bool\" : 0\n\t}"));
}

TEST_F(SettingsTest, backupLeavesOutKeysThatFailAndGoesOn) {
    tv.eraseSetting(kWelcome);
    tv.eraseSetting(kDoorEye);
    tv.eraseSetting(kAlarmMode);
    engine.m_VCONFDataClone();
    EXPECT_EQ(tv.calls().size(), 54U);
    const std::string file = readFile(kFile);
    for (const char* key : {kWelcome, kDoorEye, kAlarmMode}) {
        EXPECT_THAT(file, Not(testing::HasSubstr(key)));
    }
    const auto log = tv.describedLog();
    EXPECT_THAT(std::vector<std::string>(log.begin() + 1, log.end()),
                ElementsAre("E/35 m_GetVconfValues: GET VCONF STRING FAILED!!!",
                            "E/35 m_GetVconfValues: GET VCONF BOOL FAILED!!!",
                            "E/35 m_GetVconfValues: GET VCONF INT FAILED!!!"));
}

TEST_F(SettingsTest, backupOfANumberThatTheStoreLeavesAsItWasWritesZero) {
    tv.answer("vconf_get_int", 0);
    tv.answer("vconf_get_bool", 0);
    engine.m_VCONFDataClone();
    EXPECT_THAT(readFile(kFile), HasSubstr("\"int\" : 0\n"));
    EXPECT_THAT(readFile(kFile), HasSubstr("\"bool\" : 0\n"));
    EXPECT_THAT(readFile(kFile), Not(HasSubstr("\"int\" : 1")));
}

TEST_F(SettingsTest, backupWhereNothingCanBeReadWritesAnEmptyDocument) {
    for (const char* call : {"vconf_get_int", "vconf_get_bool", "vconf_get_str"}) {
        tv.answer(call, -1);
    }
    engine.m_VCONFDataClone();
    EXPECT_EQ(readFile(kFile), "null");
}

TEST_F(SettingsTest, backupAfterABackupStartsEmpty) {
    engine.m_VCONFDataClone();
    tv.eraseSetting(kDoorEye);
    engine.m_VCONFDataClone();
    EXPECT_THAT(readFile(kFile), Not(testing::HasSubstr(kDoorEye)));
}

TEST_F(SettingsTest, backupOverALongerFileTruncatesIt) {
    fs::create_directories(kVconfDirectory);
    writeFile(kFile, std::string(100000, 'x'));
    engine.m_VCONFDataClone();
    EXPECT_EQ(readFile(kFile), expectedFile());
}

TEST_F(SettingsTest, backupWithoutCloneDirectoryFailsToMakeItsOwn) {
    fs::remove_all(kCloneDirectory);
    EXPECT_FALSE(engine.m_VCONFDataClone());
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_VCONFDataClone: Vconf make directory failed");
    EXPECT_THAT(tv.calls(), IsEmpty());
}

TEST_F(SettingsTest, backupOntoASymbolicLinkIsRefused) {
    fs::create_directories(kVconfDirectory);
    writeFile(work("target"), "kept");
    fs::create_symlink(work("target"), kFile);
    EXPECT_FALSE(engine.m_VCONFDataClone());
    EXPECT_THAT(tv.transcript(),
                ElementsAre(std::string("E/35 m_VCONFDataClone: ") + kFile + " is symbolic link"));
    EXPECT_EQ(readFile(work("target")), "kept");
}

TEST_F(SettingsTest, backupOfAFileThatDoesNotOpenStillReadsEverything) {
    fs::create_directories(kFile);
    EXPECT_FALSE(engine.m_VCONFDataClone());
    EXPECT_EQ(tv.calls().size(), 54U);
    EXPECT_THAT(tv.describedLog(), IsEmpty());
    EXPECT_TRUE(VXCloneHandler::m_jscloneParam.empty());
}

TEST_F(SettingsTest, restoreOfABackupWritesEveryKeyInOrder) {
    engine.m_VCONFDataClone();
    std::vector<std::string> expected;
    for (const SettingKey& row : kExpectedSettings) {
        const Setting value = tv.setting(row.key);
        const std::string key = std::string("\"") + row.key + "\", ";
        expected.push_back(row.type == SettingType::Int
                               ? "vconf_set_int(" + key + std::to_string(std::get<int>(value)) + ")"
                           : row.type == SettingType::String
                               ? "vconf_set_str(" + key + "\"" + std::get<std::string>(value) + "\")"
                               : "vconf_set_bool(" + key + "1)");
    }
    EXPECT_TRUE(restore());
    EXPECT_EQ(setCalls(), expected);
    EXPECT_EQ(results(), "stale");
    const auto log = tv.describedLog();
    EXPECT_THAT(std::vector<std::string>(log.end() - 2, log.end()),
                ElementsAre("E/35 m_VCONFDataClone: ", "E/35 m_SetVconfValues: "));
}

TEST_F(SettingsTest, restoreOntoAnotherTelevisionGivesItTheSettings) {
    engine.m_VCONFDataClone();
    tv.setSetting(kWelcome, std::string("other"));
    tv.setSetting(kDoorEye, BoolSetting{0});
    tv.setSetting(kAlarmMode, -7);
    EXPECT_TRUE(restore());
    EXPECT_EQ(stringSetting(kWelcome), "text 101");
    EXPECT_EQ(boolSetting(kDoorEye), 1);
    EXPECT_EQ(intSetting(kAlarmMode), 104);
}

TEST_F(SettingsTest, restoreWritesKeysThatTheFileLacksAsZeroOrEmpty) {
    EXPECT_TRUE(restoreOf("{}"));
    EXPECT_EQ(setCalls().size(), 54U);
    EXPECT_EQ(stringSetting(kWelcome), "");
    EXPECT_EQ(boolSetting(kDoorEye), 0);
    EXPECT_EQ(intSetting(kAlarmMode), 0);
}

TEST_F(SettingsTest, restoreOfAMemberOfAnotherTypeNameCountsAsLacking) {
    EXPECT_TRUE(restoreOf(R"({"db/vxmenu/system/Alarm/Mode": {"string": "5"}})"));
    EXPECT_EQ(intSetting(kAlarmMode), 0);
}

TEST_F(SettingsTest, restoreTakesNoKeyOutsideTheList) {
    tv.setSetting("db/secret", 1);
    EXPECT_TRUE(restoreOf(R"({"db/secret": {"int": 2}})"));
    EXPECT_EQ(intSetting("db/secret"), 1);
}

TEST_F(SettingsTest, restoreOfABooleanTrueWritesOne) {
    EXPECT_TRUE(restoreOf(R"({"db/hotel/dooreye": {"bool": true}})"));
    EXPECT_THAT(tv.calls(), Contains("vconf_set_bool(\"db/hotel/dooreye\", 1)"));
}

TEST_F(SettingsTest, restoreOfANumberUnderAStringKeyWritesItsText) {
    EXPECT_TRUE(restoreOf(R"({"db/vxhotel/hotelmenu/welcomemessage": {"string": 42}})"));
    EXPECT_EQ(stringSetting(kWelcome), "42");
}

TEST_F(SettingsTest, restoreThatTheStoreRefusesLogsEachKeyByType) {
    for (const char* call : {"vconf_set_int", "vconf_set_bool", "vconf_set_str"}) {
        tv.answer(call, -1);
    }
    EXPECT_TRUE(restoreOf("{}"));
    const auto log = tv.describedLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), "E/35 m_SetVconfValues: SET VCONF INT FAILED!!!"), 23);
    EXPECT_EQ(std::count(log.begin(), log.end(), "E/35 m_SetVconfValues: SET VCONF STRING FAILED!!!"), 29);
    EXPECT_EQ(std::count(log.begin(), log.end(), "E/35 m_SetVconfValues: SET VCONF BOOL FAILED!!!"), 2);
    EXPECT_EQ(log.size(), 56U);
}

TEST_F(SettingsTest, restoreWithoutFileIsFalseAndWritesNothing) {
    EXPECT_FALSE(restore());
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 m_VCONFDataClone: ", "E/35 m_VCONFDataClone: FILE IS NULL"));
}

TEST_F(SettingsTest, anotherDirectionIsFalseInSilence) {
    VXCloneHandler::m_ecloneType = 2;
    EXPECT_FALSE(engine.m_VCONFDataClone());
    EXPECT_THAT(tv.transcript(), IsEmpty());
}

/// Files that must be refused completely.
class UnreadableFileTest : public SettingsTest,
                           public testing::WithParamInterface<std::pair<const char*, std::string>> {};

TEST_P(UnreadableFileTest, restoreIsAParseErrorAndWritesNothing) {
    EXPECT_FALSE(restoreOf(GetParam().second));
    EXPECT_EQ(tv.describedLog().back(), "E/35 m_VCONFDataClone: Parse error");
    EXPECT_THAT(tv.calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Files, UnreadableFileTest,
                         testing::Values(std::pair{"empty", std::string()},
                                         std::pair{"truncated", std::string("{\"db/hotel/dooreye\" : {")},
                                         std::pair{"text", std::string("not json")},
                                         std::pair{"binary", std::string("\0\xff\xfe\0", 4)},
                                         std::pair{"deepArrays", std::string(100000, '[')},
                                         std::pair{"deepClosedArrays",
                                                   std::string(2000, '[') + std::string(2000, ']')}),
                         [](const auto& test) { return test.param.first; });

TEST_F(SettingsTest, restoreOfADirectoryInPlaceOfTheFileIsAParseError) {
    fs::create_directories(kFile);
    EXPECT_FALSE(restore());
    EXPECT_EQ(tv.messages().back(), "Parse error");
}

/// Values that cannot be converted. Only their own key fails.
struct BadMember {
    const char* name;
    const char* key;
    const char* json;
    const char* message;
};

class BadMemberTest : public SettingsTest, public testing::WithParamInterface<BadMember> {};

TEST_P(BadMemberTest, restoreSkipsTheKeyWithItsMessageAndWritesTheOthers) {
    const BadMember& bad = GetParam();
    EXPECT_TRUE(restoreOf(std::string("{\"") + bad.key + "\": " + bad.json + "}"));
    EXPECT_EQ(setCalls().size(), 53U);
    EXPECT_THAT(setCalls(), Each(Not(testing::HasSubstr(bad.key))));
    EXPECT_THAT(tv.describedLog(), ElementsAre("E/35 m_VCONFDataClone: ", "E/35 m_SetVconfValues: ",
                                               std::string("E/35 m_SetVconfValues: ") + bad.message));
}

constexpr const char* kIntFailed = "SET VCONF INT FAILED!!!";
constexpr const char* kStringFailed = "SET VCONF STRING FAILED!!!";
constexpr const char* kBoolFailed = "SET VCONF BOOL FAILED!!!";

INSTANTIATE_TEST_SUITE_P(
    Members, BadMemberTest,
    testing::Values(BadMember{"intHoldsText", "db/sdk/develop/mode", R"({"int": "five"})", kIntFailed},
                    BadMember{"intHoldsObject", "db/sdk/develop/mode", R"({"int": {"a": 1}})", kIntFailed},
                    BadMember{"intHoldsArray", "db/sdk/develop/mode", R"({"int": [1]})", kIntFailed},
                    BadMember{"intIsTooLarge", "db/sdk/develop/mode", R"({"int": 2147483648})", kIntFailed},
                    BadMember{"intIsHuge", "db/sdk/develop/mode", R"({"int": 1e300})", kIntFailed},
                    BadMember{"intKeyIsScalar", "db/sdk/develop/mode", "7", kIntFailed},
                    BadMember{"intKeyIsArray", "db/sdk/develop/mode", "[7]", kIntFailed},
                    BadMember{"stringHoldsObject", "db/sdk/develop/ip", R"({"string": {}})", kStringFailed},
                    BadMember{"stringHoldsArray", "db/sdk/develop/ip", R"({"string": ["a"]})", kStringFailed},
                    BadMember{"stringKeyIsText", "db/sdk/develop/ip", R"("10.0.0.1")", kStringFailed},
                    BadMember{"boolHoldsText", "db/hotel/dooreye", R"({"bool": "true"})", kBoolFailed},
                    BadMember{"boolHoldsArray", "db/hotel/dooreye", R"({"bool": []})", kBoolFailed},
                    BadMember{"boolKeyIsTrue", "db/hotel/dooreye", "true", kBoolFailed}),
    [](const auto& test) { return test.param.name; });

/// Documents that are not an object: every key fails, none is written, and the restore continues.
class RootTest : public SettingsTest,
                 public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(RootTest, restoreOfARootThatIsNoObjectSkipsEveryKey) {
    EXPECT_TRUE(restoreOf(GetParam().second));
    EXPECT_THAT(setCalls(), IsEmpty());
    EXPECT_EQ(tv.messages().size(), 56U);
    EXPECT_EQ(stringSetting(kWelcome), "text 101");
}

INSTANTIATE_TEST_SUITE_P(Roots, RootTest,
                         testing::Values(std::pair{"number", "5"}, std::pair{"text", "\"abc\""},
                                         std::pair{"boolean", "true"}, std::pair{"array", "[{}]"}),
                         [](const auto& test) { return test.param.first; });

TEST_F(SettingsTest, restoreOfANullRootWritesEveryKeyAsLacking) {
    EXPECT_TRUE(restoreOf("null"));
    EXPECT_EQ(setCalls().size(), 54U);
    EXPECT_EQ(stringSetting(kWelcome), "");
}

TEST_F(SettingsTest, restoreOfNestingThatTheParserStillTakesSkipsTheKeyAlone) {
    const std::string deep = std::string(900, '[') + std::string(900, ']');
    EXPECT_TRUE(restoreOf("{\"db/sdk/develop/mode\": {\"int\": " + deep + "}}"));
    EXPECT_EQ(setCalls().size(), 53U);
}

}  // namespace
}  // namespace vxtest
