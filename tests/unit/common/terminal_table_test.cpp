#include "common/terminal_table.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

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
    EXPECT_EQ(table.render(false), "a  b\nx  \n");
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

TEST(Printable, controlCharactersAreWrittenAsNumbers) {
    EXPECT_EQ(printable("plain text"), "plain text");
    EXPECT_EQ(printable(std::string("\0\t\x7f", 3)), "\\x00\\x09\\x7f");
    EXPECT_EQ(printable("\u009b2J"), "\\xc2\\x9b2J");
    EXPECT_EQ(printable("\u00e9"), "\u00e9");
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
    setenv("NO_COLOR", "1", 1);
    EXPECT_FALSE(wantsColour(terminal));
    unsetenv("NO_COLOR");
    close(terminal);
    close(descriptor);
}

}  // namespace
}  // namespace vxcommon
