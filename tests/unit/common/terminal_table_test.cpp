#include "common/terminal_table.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

namespace vxcommon {
namespace {

TEST(TerminalTable, columnsAreAsWideAsTheirWidestCell) {
    TerminalTable table({"category", "result"});
    table.addRow({{"av"}, {"done", Colour::Good}});
    table.addRow({{"settings-keys"}, {"failed", Colour::Bad}});
    EXPECT_EQ(table.render(false),
              "category       result\n"
              "av             done\n"
              "settings-keys  failed\n");
}

TEST(TerminalTable, colouredTableKeepsItsColumns) {
    TerminalTable table({"a", "b"});
    table.addRow({{"long one", Colour::Good}, {"x"}});
    EXPECT_EQ(table.render(true),
              "\x1b[2ma\x1b[0m         \x1b[2mb\x1b[0m\n"
              "\x1b[32mlong one\x1b[0m  x\n");
}

TEST(TerminalTable, shortRowIsFilledUp) {
    TerminalTable table({"a", "b"});
    table.addRow({{"x"}});
    EXPECT_EQ(table.render(false), "a  b\nx\n");
}

TEST(TerminalTable, charactersOfSeveralBytesCountOnce) {
    TerminalTable table({"n", "v"});
    table.addRow({{"h\u00f4tel"}, {"1"}});
    table.addRow({{"12345"}, {"2"}});
    EXPECT_EQ(table.render(false), "n      v\nh\u00f4tel  1\n12345  2\n");
}

TEST(TerminalTable, cellThatWouldSteerTheTerminalIsMadeVisible) {
    TerminalTable table({"n"});
    table.addRow({{"a\x1b[2Jb\nc"}});
    EXPECT_EQ(table.render(false), "n\na\\x1b[2Jb\\x0ac\n");
}

Screen columns(std::size_t count) {
    return {count, false, false};
}

/// The width of the widest line in columns.
std::size_t widestLine(const std::string& text) {
    std::size_t widest = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        widest = std::max(widest, displayWidth(std::string_view(text).substr(begin, end - begin)));
        begin = end + 1;
    }
    return widest;
}

TerminalTable sampleTable() {
    TerminalTable table({"category", "", "result"});
    table.addRow({{"settings-keys"}, {"settings"}, {"applied, 54 settings, read back: same"}});
    table.addRow({{"home-menu"},
                  {"home menu and set-top-box icons"},
                  {"done, read back: same: 3 files beside the package's stay"}});
    return table;
}

TEST(TerminalTable, tableOf120ColumnsBreaksNothing) {
    EXPECT_EQ(
        sampleTable().render(columns(120)),
        "category                                        result\n"
        "settings-keys  settings                         applied, 54 settings, read back: same\n"
        "home-menu      home menu and set-top-box icons  done, read back: same: 3 files beside the package's "
        "stay\n");
}

TEST(TerminalTable, tableOf80ColumnsBreaksTheWidestColumnBetweenWords) {
    EXPECT_EQ(sampleTable().render(columns(80)),
              "category                                        result\n"
              "settings-keys  settings                         applied, 54 settings, read back:\n"
              "                                                same\n"
              "home-menu      home menu and set-top-box icons  done, read back: same: 3 files\n"
              "                                                beside the package's stay\n");
}

TEST(TerminalTable, tableOf60ColumnsBreaksSeveralColumnsAndLinesGoOnInTheirColumn) {
    EXPECT_EQ(sampleTable().render(columns(60)),
              "category                          result\n"
              "settings-keys  settings           applied, 54 settings, read\n"
              "                                  back: same\n"
              "home-menu      home menu and      done, read back: same: 3\n"
              "               set-top-box icons  files beside the package's\n"
              "                                  stay\n");
}

TEST(TerminalTable, wordThatIsLongerThanItsColumnIsBrokenHard) {
    TerminalTable table({"setting", "value"});
    table.addRow({{"db/vxhotel/hotelmenu/welcomemessage"}, {"Good morning"}});
    EXPECT_EQ(table.render(columns(20)),
              "setting    value\n"
              "db/        Good\n"
              "vxhotel/   morning\n"
              "hotelmenu\n"
              "/welcomem\n"
              "essage\n");
}

TEST(TerminalTable, theLongestWordGivesWayAndTheOthersStayWhole) {
    TerminalTable table({"package", "made", "here"});
    table.addRow({{"/media/usb/clones/lobby"}, {"2026-03-01"}, {"does not fit"}});
    EXPECT_EQ(table.render(columns(40)),
              "package         made        here\n"
              "/media/usb/     2026-03-01  does not fit\n"
              "clones/lobby\n");
}

TEST(TerminalTable, wordOfAMillionCharactersIsBrokenAtOnce) {
    TerminalTable table({"value"});
    table.addRow({{std::string(1'000'000, 'x')}});
    EXPECT_EQ(table.render(columns(80)).text().size(), 6U + 1'000'000U + 12'500U);
}

TEST(TerminalTable, noLineIsLongerThanTheScreenWhateverTheCells) {
    for (std::size_t width = 10; width < 100; ++width) {
        EXPECT_LE(widestLine(sampleTable().render(columns(width))), width);
    }
}

TEST(TerminalTable, screenTooNarrowForOneCharacterInEachColumnIsOverrunAndNothingIsLost) {
    TerminalTable table({"a", "b"});
    table.addRow({{"12"}, {"34"}});
    EXPECT_EQ(table.render(columns(2)), "a  b\n1  3\n2  4\n");
    EXPECT_EQ(table.render(columns(0)), "a  b\n1  3\n2  4\n");
}

TEST(TerminalTable, wideCharactersTakeTwoColumnsAndAreNotCut) {
    TerminalTable table({"name", "x"});
    table.addRow({{"\u4e2d\u6587\u9891\u9053"}, {"1"}});
    table.addRow({{"abc"}, {"2"}});
    EXPECT_EQ(table.render(columns(80)),
              "name      x\n"
              "\u4e2d\u6587\u9891\u9053  1\n"
              "abc       2\n");
    EXPECT_EQ(table.render(columns(8)),
              "name   x\n"
              "\u4e2d\u6587   1\n"
              "\u9891\u9053\n"
              "abc    2\n");
}

TEST(TerminalTable, combiningCharactersTakeNoColumnAndStayWithTheirLetter) {
    TerminalTable table({"n", "v"});
    table.addRow({{"e\u0301e\u0301e\u0301"}, {"1"}});
    EXPECT_EQ(table.render(columns(80)), "n    v\ne\u0301e\u0301e\u0301  1\n");
    EXPECT_EQ(table.render(columns(5)), "n   v\ne\u0301e\u0301  1\ne\u0301\n");
}

TEST(TerminalTable, brokenCellIsColouredInEachLineAndBlanksAreNot) {
    TerminalTable table({"a", "b"});
    table.addRow({{"one two", Colour::Bad}, {"x", Colour::Doubt}});
    EXPECT_EQ(table.render(Screen{6, true, true}),
              "\x1b[2ma\x1b[0m    \x1b[2mb\x1b[0m\n"
              "\x1b[31mone\x1b[0m  \x1b[33mx\x1b[0m\n"
              "\x1b[31mtwo\x1b[0m\n");
}

TEST(BrokenInto, textIsBrokenBetweenWordsAndTheBlanksThereGo) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(brokenInto("one two three", 7), (Lines{"one two", "three"}));
    EXPECT_EQ(brokenInto("one  two", 4), (Lines{"one", "two"}));
    EXPECT_EQ(brokenInto("one  two", 8), (Lines{"one  two"}));
    EXPECT_EQ(brokenInto("one   ", 3), (Lines{"one"}));
    EXPECT_EQ(brokenInto("a long", 4), (Lines{"a", "long"}));
    EXPECT_EQ(brokenInto("a overlong", 4), (Lines{"a ov", "erlo", "ng"}));
    EXPECT_EQ(brokenInto("   ", 2), (Lines{""}));
    EXPECT_EQ(brokenInto("  overlong", 4), (Lines{"  ov", "erlo", "ng"}));
    EXPECT_EQ(brokenInto("", 4), (Lines{""}));
    EXPECT_EQ(brokenInto("\u4e2d\u6587", 1), (Lines{"\u4e2d", "\u6587"}));
}

TEST(BrokenInto, pathThatIsLongerThanALineIsBrokenBehindASlash) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(brokenInto("db/menu/network/ProxyOn", 12), (Lines{"db/menu/", "network/", "ProxyOn"}));
    EXPECT_EQ(brokenInto("in /media/usb/clone", 16), (Lines{"in", "/media/usb/clone"}));
    EXPECT_EQ(brokenInto("in /media/usb/clones", 12), (Lines{"in /media/", "usb/clones"}));
    EXPECT_EQ(brokenInto("/overlong", 4), (Lines{"/ove", "rlon", "g"}));
}

TEST(BrokenInto, emptyColumnIsOverrunAndNothingIsLost) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(brokenInto("a b", 0), (Lines{"a", "b"}));
    EXPECT_EQ(brokenInto(" a", 0), (Lines{"", "a"}));
}

TEST(SentenceFor, sentenceOnATerminalIsBrokenAndIndented) {
    const Screen terminal{20, true, false};
    EXPECT_EQ(sentenceFor(terminal, "Safe to remove the stick now."),
              "Safe to remove the\n"
              "stick now.");
    EXPECT_EQ(sentenceFor(terminal, "  key  one -> another", 4),
              "  key  one ->\n"
              "    another");
    EXPECT_EQ(sentenceFor(terminal, "Short."), "Short.");
}

TEST(SentenceFor, sentenceElsewhereStaysOneLine) {
    EXPECT_EQ(sentenceFor(columns(20), "Safe to remove the stick now."), "Safe to remove the stick now.");
}

TEST(DisplayWidth, widthIsThatOfTheTerminal) {
    EXPECT_EQ(displayWidth("hotel"), 5U);
    EXPECT_EQ(displayWidth("h\u00f4tel"), 5U);
    EXPECT_EQ(displayWidth("ho\u0302tel"), 5U);
    EXPECT_EQ(displayWidth("\u9152\u5e97"), 4U);
    EXPECT_EQ(beginningOf("\u9152\u5e97", 3), "\u9152");
    EXPECT_EQ(beginningOf("e\u0301e\u0301", 1), "e\u0301");
    EXPECT_EQ(beginningOf("ab", 5), "ab");
}

TEST(SentenceFor, sentenceIsPrintableOnATerminalAndElsewhere) {
    const std::string faked = "A\x1b[2J\nvxclone: all: done\u202e\x9b";
    const std::string shown = "A\\x1b[2J\\x0avxclone: all: done\\xe2\\x80\\xae\\x9b";
    EXPECT_EQ(sentenceFor(columns(200), faked), shown);
    EXPECT_EQ(sentenceFor(Screen{200, true, false}, faked), shown);
}

TEST(Paint, plainOrUncolouredTextIsUnchanged) {
    EXPECT_EQ(paint("x", Colour::Plain, true), "x");
    EXPECT_EQ(paint("x", Colour::Bad, false), "x");
    EXPECT_EQ(paint("x", Colour::Bad, true), "\x1b[31mx\x1b[0m");
}

TEST(Terminal, fileIsNoneAndWantsNoColour) {
    const int descriptor = open("/dev/null", O_WRONLY | O_CLOEXEC);
    EXPECT_FALSE(isTerminal(descriptor));
    EXPECT_FALSE(wantsColour(descriptor));
    EXPECT_EQ(columnsAt(descriptor), kUsualColumns);
    EXPECT_FALSE(screenAt(descriptor).terminal);
    close(descriptor);
}

TEST(Terminal, terminalWantsColourUnlessToldOtherwise) {
    const int descriptor = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(descriptor, 0);
    ASSERT_EQ(grantpt(descriptor), 0);
    ASSERT_EQ(unlockpt(descriptor), 0);
    const int terminal = open(ptsname(descriptor), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    unsetenv("NO_COLOR");
    EXPECT_TRUE(isTerminal(terminal));
    EXPECT_TRUE(wantsColour(terminal));
    EXPECT_EQ(columnsAt(terminal), kUsualColumns);  // nobody said how wide it is
    winsize size{};
    size.ws_col = 61;
    ASSERT_EQ(ioctl(terminal, TIOCSWINSZ, &size), 0);
    const Screen screen = screenAt(terminal);
    EXPECT_EQ(screen.columns, 61U);
    EXPECT_TRUE(screen.terminal && screen.coloured);
    setenv("NO_COLOR", "1", 1);
    EXPECT_FALSE(wantsColour(terminal));
    unsetenv("NO_COLOR");
    close(terminal);
    close(descriptor);
}

}  // namespace
}  // namespace vxcommon
