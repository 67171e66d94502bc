#include <gtest/gtest.h>

#include "cloning_app/package/manifest_reading.h"

namespace vxclone {
namespace {

TEST(EscapedText, plainUtf8StaysAsItIs) {
    for (const char* const text : {"", "logo/boot.png", "\u00e9t\u00e9", "\u6f22", "\U0001F600", "a \"b\""}) {
        EXPECT_EQ(escaped(text), text);
        EXPECT_EQ(unescaped(text), text);
    }
}

TEST(EscapedText, everythingElseIsWrittenAsBytes) {
    EXPECT_EQ(escaped("a\nb\\c\x7f"), "a\\x0ab\\x5cc\\x7f");
    EXPECT_EQ(escaped(std::string(1, '\0')), "\\x00");
    EXPECT_EQ(escaped("\xc2\x85"), "\\xc2\\x85");           // a control character of the second block
    EXPECT_EQ(escaped("\xff\xc3"), "\\xff\\xc3");           // no UTF-8, cut short
    EXPECT_EQ(escaped("\xc0\xaf"), "\\xc0\\xaf");           // longer than it needs to be
    EXPECT_EQ(escaped("\xed\xa0\x80"), "\\xed\\xa0\\x80");  // half of a pair
    EXPECT_EQ(escaped("\xf5\x80\x80\x80"), "\\xf5\\x80\\x80\\x80");
}

TEST(EscapedText, everyByteComesBack) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
        EXPECT_EQ(unescaped(escaped(std::string(1, static_cast<char>(byte)))),
                  std::string(1, static_cast<char>(byte)));
    }
    EXPECT_EQ(unescaped(escaped(bytes)), bytes);
}

TEST(EscapedText, textThatIsWrittenInAnotherWayIsRefused) {
    for (const char* const text : {"\\", "\\x", "\\x0", "\\x0A", "\\y0a", "\\x41", "\\x-1", "a\nb", "\xff",
                                   "\\\\", "\\xc3\\xa9", "\\x+1"}) {
        EXPECT_FALSE(unescaped(text)) << text;
    }
}

}  // namespace
}  // namespace vxclone
