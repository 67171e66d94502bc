#include "common/printable.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>

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
        EXPECT_EQ(printable(character).text().substr(0, 2), "\\x") << character;
    }
}

TEST(PrintableText, lettersOfAnyScriptStayAsTheyAre) {
    for (const char* const text : {"Gr\u00fc\u00df", "\u0418\u043c\u044f", "\u9152\u5e97", "o\u0302",
                                   "\u00a0", "\u2027", "\u2030", "\U0001f3e8", "\U000e0100"}) {
        EXPECT_EQ(printable(text), text);
    }
}

TEST(PrintableText, secondPassChangesNothing) {
    const Printable once = printable("a\\\x1b\u202e\xff");
    EXPECT_EQ(printable(once.text()), once);
}

// Text that is no literal of our sources needs `printable`. Forgetting it does not compile.
template <class Text>
constexpr bool kBecomesPrintable =
    std::is_constructible_v<Printable, Text> || std::is_constructible_v<PrintableView, Text> ||
    std::is_convertible_v<Text, Printable> || std::is_convertible_v<Text, PrintableView>;

static_assert(!kBecomesPrintable<std::string>);
static_assert(!kBecomesPrintable<const std::string&>);
static_assert(!kBecomesPrintable<std::string_view>);
static_assert(!kBecomesPrintable<const char*>);
static_assert(!kBecomesPrintable<char>);
static_assert(kBecomesPrintable<const Printable&>);

template <class Text>
constexpr bool kCanBeAdded = requires(Printable text, Text more) {
    text += more;
};

static_assert(!kCanBeAdded<std::string>);
static_assert(!kCanBeAdded<std::string_view>);
static_assert(!kCanBeAdded<const char*>);
static_assert(!kCanBeAdded<char>);
static_assert(kCanBeAdded<Printable>);

static_assert(!PrintablePart<std::string>);
static_assert(!PrintablePart<const char*>);
static_assert(!PrintablePart<char>);
static_assert(PrintablePart<int> && PrintablePart<double> && PrintablePart<Printable>);

static_assert(std::is_same_v<decltype(std::string() + Printable()), std::string>);
static_assert(std::is_same_v<decltype(Printable() + std::string()), std::string>);
static_assert(std::is_same_v<decltype("literal" + Printable() + "literal"), Printable>);

TEST(PrintableText, joiningKeepsItPrintable) {
    Printable text = "name: " + printable("a\nb\x1b") + ", " + printable("c");
    text += "\n";
    EXPECT_EQ(text, "name: a\\x0ab\\x1b, c\n");
}

TEST(PrintableText, formatTakesPrintableTextsAndNumbers) {
    EXPECT_EQ(printableFormat("{} has {} of {:.1f}\n", printable("a\nb"), 3, 2.5), "a\\x0ab has 3 of 2.5\n");
    EXPECT_EQ(printableFormat("{:>4}|", printable("ab")), "  ab|");
}

TEST(PrintableText, linesOfOursKeepTheirLineFeeds) {
    EXPECT_EQ(printableLines("Usage:\n  a\x1b\r\n\nb"), "Usage:\n  a\\x1b\\x0d\n\nb");
    EXPECT_EQ(printableLines(""), "");
    EXPECT_EQ(printableLines("\n"), "\n");
}

}  // namespace
}  // namespace vxcommon
