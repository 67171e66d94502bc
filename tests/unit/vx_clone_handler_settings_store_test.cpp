// The typed accessors of the settings store.

#include "engine_test.h"

namespace vxtest {
namespace {

using testing::ElementsAre;

class SettingsStoreAccessTest : public EngineTest {};

TEST_F(SettingsStoreAccessTest, accessorsPassValuesThroughAndLogNothing) {
    tv.setSetting("i", 1);
    tv.setSetting("b", BoolSetting{0});
    tv.setSetting("s", std::string("x"));
    int value = 0;
    std::string text;
    EXPECT_TRUE(engine.m_SetVConfInt("i", -5));
    EXPECT_TRUE(engine.m_GetVConfInt("i", value));
    EXPECT_EQ(value, -5);
    EXPECT_TRUE(engine.m_SetVConfBool("b", 1));
    EXPECT_TRUE(engine.m_GetVConfBool("b", value));
    EXPECT_EQ(value, 1);
    EXPECT_TRUE(engine.m_SetVConfString("s", "hello"));
    EXPECT_TRUE(engine.m_GetVConfString("s", text));
    EXPECT_EQ(text, "hello");
    EXPECT_THAT(tv.transcript(), ElementsAre("vconf_set_int(\"i\", -5)", "vconf_get_int(\"i\")",
                                             "vconf_set_bool(\"b\", 1)", "vconf_get_bool(\"b\")",
                                             "vconf_set_str(\"s\", \"hello\")", "vconf_get_str(\"s\")"));
}

TEST_F(SettingsStoreAccessTest, accessorsAreFalseForAnyStatusButZero) {
    for (const char* call :
         {"vconf_get_int", "vconf_set_int", "vconf_get_bool", "vconf_set_bool", "vconf_set_str"}) {
        tv.answer(call, 1);
    }
    int value = 77;
    EXPECT_FALSE(engine.m_GetVConfInt("k", value));
    EXPECT_FALSE(engine.m_GetVConfBool("k", value));
    EXPECT_EQ(value, 77);
    EXPECT_FALSE(engine.m_SetVConfInt("k", 1));
    EXPECT_FALSE(engine.m_SetVConfBool("k", 1));
    EXPECT_FALSE(engine.m_SetVConfString("k", "v"));
    EXPECT_THAT(tv.describedLog(), ElementsAre());
}

TEST_F(SettingsStoreAccessTest, getStringOfAMissingKeyIsEmptyAndFalse) {
    std::string text = "before";
    EXPECT_FALSE(engine.m_GetVConfString("missing", text));
    EXPECT_EQ(text, "");
}

TEST_F(SettingsStoreAccessTest, getStringThatIsEmptyIsTrue) {
    tv.setSetting("s", std::string());
    std::string text = "before";
    EXPECT_TRUE(engine.m_GetVConfString("s", text));
    EXPECT_EQ(text, "");
}

}  // namespace
}  // namespace vxtest
