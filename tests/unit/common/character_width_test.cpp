#include "common/character_width.h"

#include <gtest/gtest.h>

namespace vxcommon {
namespace {

struct WidthCase {
    const char* text;
    std::size_t columns;
};

TEST(CharacterAt, validCharacterHasItsBytesAndColumns) {
    for (const WidthCase& each : {
             WidthCase{"a", 1},       // Latin
             WidthCase{"\u00e9", 1},  // Latin with an accent of its own
             WidthCase{"\u0301", 0},  // a combining accent
             WidthCase{"\u0e31", 0},  // a Thai vowel above
             WidthCase{"\u200b", 0},  // a space without width
             WidthCase{"\ufe0f", 0},  // a variation selector
             WidthCase{"\u4e2d", 2},  // Chinese
             WidthCase{"\u3042", 2},  // Japanese
             WidthCase{"\ud55c", 2},  // Korean
             WidthCase{"\u1161", 0},  // a Korean vowel to be joined
             WidthCase{"\uff21", 2},  // fullwidth Latin
             WidthCase{"\uff71", 1},  // halfwidth Japanese
             WidthCase{"\U0001f4fa", 2},
             WidthCase{"\U0002f800", 2},
             WidthCase{"\u0416", 1},
             WidthCase{"\u2192", 1},
         }) {
        const std::string_view text = each.text;
        const Character character = characterAt(text, 0);
        EXPECT_TRUE(character.valid) << text;
        EXPECT_EQ(character.bytes, text.size()) << text;
        EXPECT_EQ(character.columns, each.columns) << text;
    }
}

TEST(CharacterAt, byteThatIsNoUtf8IsAnInvalidCharacterOfOneColumn) {
    for (const char* const text : {"\x80",              // a continuation alone
                                   "\xc3",              // cut short
                                   "\xc3(",             // no continuation
                                   "\xc0\xaf",          // longer than needed
                                   "\xe0\x80\xaf",      // the same
                                   "\xed\xa0\x80",      // a surrogate
                                   "\xf4\x90\x80\x80",  // beyond the last character
                                   "\xff"}) {
        const Character character = characterAt(text, 0);
        EXPECT_FALSE(character.valid) << text;
        EXPECT_EQ(character.bytes, 1U) << text;
        EXPECT_EQ(character.columns, 1U) << text;
    }
}

TEST(CharacterAt, characterInTheMiddleIsFound) {
    const Character character = characterAt("a\u4e2db", 1);
    EXPECT_EQ(character.bytes, 3U);
    EXPECT_EQ(character.columns, 2U);
}

}  // namespace
}  // namespace vxcommon
