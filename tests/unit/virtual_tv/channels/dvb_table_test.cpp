#include "virtual_tv/channels/dvb_table.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

constexpr const char* kGood =
    "# a remark\r\n"
    "[CH25: One, Two]\n"
    "\tDELIVERY_SYSTEM = DVBT\n"
    "\tFREQUENCY = 506000000\n"
    "\tMODULATION = QAM/16\n"
    "\n"
    "[CHANNEL]\n"
    "FREQUENCY=113000000\n"
    "DELIVERY_SYSTEM=DVBC/ANNEX_A";

TEST(DvbTable, sectionsBecomeTranspondersInTheirOrder) {
    const auto transponders = parseDvbTable(kGood, "table");
    ASSERT_TRUE(transponders) << transponders.error().sentence;
    ASSERT_EQ(transponders->size(), 2U);
    EXPECT_EQ(transponders->at(0).system, "DVBT");
    EXPECT_EQ(transponders->at(0).frequency, 506000000);
    EXPECT_EQ(transponders->at(0).parameters, (std::map<std::string, std::string>{{"MODULATION", "QAM/16"}}));
    EXPECT_EQ(transponders->at(1).system, "DVBC/ANNEX_A");
    EXPECT_EQ(transponders->at(1).frequency, 113000000);
}

struct BadTable {
    const char* name;
    std::string text;
    const char* told;
};

class BadDvbTable : public testing::TestWithParam<BadTable> {};

TEST_P(BadDvbTable, isRefusedWithItsLine) {
    const auto transponders = parseDvbTable(GetParam().text, "the-table");
    ASSERT_FALSE(transponders);
    EXPECT_EQ(transponders.error().code, ErrorCode::BadProfile);
    EXPECT_NE(transponders.error().sentence.find("the-table"), std::string::npos);
    EXPECT_NE(transponders.error().sentence.find(GetParam().told), std::string::npos)
        << transponders.error().sentence;
}

std::string sections(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "[C]\nDELIVERY_SYSTEM = DVBT\nFREQUENCY = 1\n";
    }
    return text;
}

std::string parameters(std::size_t count) {
    std::string text = sections(1);
    for (std::size_t i = 0; i < count; ++i) {
        text += "P" + std::to_string(i) + " = 1\n";
    }
    return text;
}

INSTANTIATE_TEST_SUITE_P(
    Each, BadDvbTable,
    testing::Values(BadTable{"empty", "", "no transponder"},
                    BadTable{"remarkOnly", "# nothing\n", "no transponder"},
                    BadTable{"oldFormat", "A 105000000 QAM256\n", "line 1"},
                    BadTable{"beforeSection", "FREQUENCY = 1\n[C]\n", "line 1"},
                    BadTable{"openBracket", "[C\n", "line 1: the bracket"},
                    BadTable{"noSign", "[C]\nDELIVERY_SYSTEM DVBT\n", "line 2"},
                    BadTable{"noValue", "[C]\nMODULATION =\n", "line 2"},
                    BadTable{"noName", "[C]\n= 5\n", "line 2"},
                    BadTable{"unknownSystem", "[C]\nDELIVERY_SYSTEM = DVBX\n", "line 2"},
                    BadTable{"noSystem", "[C]\nFREQUENCY = 1\n[D]\n", "DELIVERY_SYSTEM"},
                    BadTable{"noFrequency", "[C]\nDELIVERY_SYSTEM = DVBT\n", "FREQUENCY"},
                    BadTable{"zeroFrequency", "[C]\nFREQUENCY = 0\n", "line 2"},
                    BadTable{"negativeFrequency", "[C]\nFREQUENCY = -5\n", "line 2"},
                    BadTable{"hugeFrequency", "[C]\nFREQUENCY = 99999999999999999999\n", "line 2"},
                    BadTable{"halfFrequency", "[C]\nFREQUENCY = 12.5\n", "line 2"},
                    BadTable{"twoFrequencies", "[C]\nFREQUENCY = 1\nFREQUENCY = 2\n", "line 3"},
                    BadTable{"twoSystems", "[C]\nDELIVERY_SYSTEM = DVBT\nDELIVERY_SYSTEM = DVBT\n", "line 3"},
                    BadTable{"twinParameter", "[C]\nMODULATION = A\nMODULATION = A\n", "line 3"},
                    BadTable{"controlCharacter", "[C]\nMODULATION = \x1b[2J\n", "line 2"},
                    BadTable{"longValue",
                             "[C]\nMODULATION = " + std::string(kLongestParameter + 1, 'x') + "\n", "line 2"},
                    BadTable{"tooManyParameters", parameters(kMostParameters + 1), "too many"},
                    BadTable{"tooManySections", sections(kMostTransponders + 1), "at most"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(DvbTable, asMuchAsIsAllowedIsRead) {
    EXPECT_EQ(parseDvbTable(sections(kMostTransponders), "table").value().size(), kMostTransponders);
    EXPECT_TRUE(parseDvbTable(parameters(kMostParameters), "table"));
}

TEST(DvbTable, shippedTableIsFoundBesideTheProgram) {
    const auto file = findDvbTable("dvb-t/de-Berlin");
    ASSERT_TRUE(file) << file.error().sentence;
    EXPECT_NE(file->string().find("share/vxtv/dvb/dvb-t/de-Berlin"), std::string::npos);
    EXPECT_TRUE(parseDvbTable(test::readFile(*file), "dvb-t/de-Berlin"));
}

TEST(DvbTable, nameThatLeavesTheFolderIsRefused) {
    for (const char* name : {"", "de-Berlin", "/dvb-t", "dvb-t/", "../profiles/room-101.json", "dvb-t/../..",
                             "../x", "dvb-t/de\nBerlin", "a/b/c"}) {
        const auto file = findDvbTable(name);
        ASSERT_FALSE(file) << name;
        EXPECT_EQ(file.error().code, ErrorCode::BadArgument) << name;
    }
}

TEST(DvbTable, unknownNameIsToldWithThePackage) {
    const auto file = findDvbTable("dvb-t/xx-Nowhere");
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().code, ErrorCode::UnknownEntry);
    EXPECT_NE(file.error().sentence.find("dtv-scan-tables"), std::string::npos);
}

}  // namespace
}  // namespace vxtv
