#include "common/printable.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace vxcommon {
namespace {

TEST(PrintableText, whatIsNoUtf8IsWrittenAsNumbers) {
    EXPECT_EQ(printable("a\xff\xc3"), "a\\xff\\xc3");
    EXPECT_EQ(printable("\x9b"
                        "2J"),
              "\\x9b2J");
    EXPECT_EQ(printable("\xed\xa0\x80\xc0\x9b"), "\\xed\\xa0\\x80\\xc0\\x9b");
}

TEST(PrintableText, controlCharactersOfBothSetsAreWrittenAsNumbers) {
    EXPECT_EQ(printable("plain text"), "plain text");
    EXPECT_EQ(printable(std::string("\0\t\n\r\x1b\x7f", 6)), "\\x00\\x09\\x0a\\x0d\\x1b\\x7f");
    EXPECT_EQ(printable("\u009b2J"), "\\xc2\\x9b2J");
}

TEST(PrintableText, whatTurnsTheDirectionOrHasNoWidthOrEndsALineIsWrittenAsNumbers) {
    EXPECT_EQ(printable("a\u202egpj.exe"), "a\\xe2\\x80\\xaegpj.exe");
    for (const char* const character :
         {"\u00ad", "\u061c", "\u180e", "\u200b", "\u200c", "\u200d", "\u200e", "\u200f", "\u2028", "\u2029",
          "\u202a", "\u202d", "\u2060", "\u2066", "\u2069", "\u206f", "\ufeff", "\ufff9", "\U000e0041"}) {
        EXPECT_EQ(printable(character).substr(0, 2), "\\x") << character;
    }
}

TEST(PrintableText, lettersOfAnyScriptStayAsTheyAre) {
    for (const char* const text : {"Gr\u00fc\u00df", "\u0418\u043c\u044f", "\u9152\u5e97", "o\u0302",
                                   "\u00a0", "\u2027", "\u2030", "\U0001f3e8", "\U000e0100"}) {
        EXPECT_EQ(printable(text), text);
    }
}

TEST(PrintableText, secondPassChangesNothing) {
    const std::string once = printable("a\\\x1b\u202e\xff");
    EXPECT_EQ(printable(once), once);
}

TEST(PrintableJson, deceptiveCharactersAreEscapedAndMeanTheSame) {
    const nlohmann::json document = {{"a\u202e", "\u009b\x7f\u2028\U000e0041\u00fc"}};
    const std::string shown = printableJson(document.dump(2));
    EXPECT_EQ(shown, "{\n  \"a\\u202e\": \"\\u009b\\u007f\\u2028\\udb40\\udc41\u00fc\"\n}");
    EXPECT_EQ(nlohmann::json::parse(shown), document);
}

}  // namespace
}  // namespace vxcommon
