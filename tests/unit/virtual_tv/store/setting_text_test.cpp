#include "virtual_tv/store/setting_text.h"

#include <gtest/gtest.h>

namespace vxtv {
namespace {

TEST(ParseValue, intWithinRangeIsTaken) {
    EXPECT_EQ(SettingValue(-2147483647 - 1), parseValue("k", SettingType::Int, "-2147483648").value());
    EXPECT_EQ(SettingValue(2147483647), parseValue("k", SettingType::Int, "2147483647").value());
}

TEST(ParseValue, whatIsNoIntIsRefused) {
    for (const char* text : {"", " 1", "1 ", "+1", "0x10", "1.5", "2147483648", "-2147483649", "abc", "1a"}) {
        const auto value = parseValue("volume", SettingType::Int, text);
        ASSERT_FALSE(value) << text;
        EXPECT_EQ(ErrorCode::OutOfRange, value.error().code);
        EXPECT_NE(std::string::npos, value.error().sentence.find("volume"));
    }
}

TEST(ParseValue, boolWordsAreTaken) {
    for (const char* text : {"1", "true", "on"}) {
        EXPECT_EQ(SettingValue(true), parseValue("k", SettingType::Bool, text).value());
    }
    for (const char* text : {"0", "false", "off"}) {
        EXPECT_EQ(SettingValue(false), parseValue("k", SettingType::Bool, text).value());
    }
}

TEST(ParseValue, otherBoolWordsAreRefused) {
    for (const char* text : {"", "2", "yes", "ON"}) {
        EXPECT_FALSE(parseValue("k", SettingType::Bool, text)) << text;
    }
}

TEST(QuotedText, emptyStringCanBeSeen) {
    EXPECT_EQ("\"\"", quotedText(std::string()));
    EXPECT_EQ("12", quotedText(12));
    EXPECT_EQ("true", quotedText(true));
}

}  // namespace
}  // namespace vxtv
