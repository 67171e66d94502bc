#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <regex>
#include <sstream>
#include <thread>

#include "VXCloneLog.h"
#include "tests/support/scripted/scripted_platform.h"

namespace vxtest {
namespace {

class LogTest : public testing::Test {
 protected:
    LogTest() { tv.reset(); }
    LogLine onlyLine() {
        const auto lines = tv.log();
        EXPECT_EQ(lines.size(), 1U);
        return lines.at(0);
    }
    ScriptedPlatform& tv = ScriptedPlatform::instance();
};

std::string standardThreadId() {
    std::ostringstream stream;
    stream << std::this_thread::get_id();
    return stream.str();
}

std::int64_t monotonicMilliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

TEST_F(LogTest, lineOfEachKindHasItsPriorityAndColour) {
    VX_LOG(Error, "a");
    VX_LOG(Debug, "b");
    VX_LOG(Info, "c");
    VX_LOG(Fatal, "d");
    EXPECT_EQ(tv.describedLog(), (std::vector<std::string>{"E/35 TestBody: a", "D/33 TestBody: b",
                                                           "I/32 TestBody: c", "F/31 TestBody: d"}));
    EXPECT_EQ(tv.log().at(0).priority, 6);
    EXPECT_EQ(tv.log().at(1).priority, 3);
    EXPECT_EQ(tv.log().at(2).priority, 4);
    EXPECT_EQ(tv.log().at(3).priority, 7);
}

TEST_F(LogTest, lineNamesBufferTagSourceAndLine) {
    VX_LOG(Error, "x");
    const int here = __LINE__ - 1;
    const LogLine line = onlyLine();
    EXPECT_EQ(line.logId, 0);
    EXPECT_EQ(line.tag, "cloneapi");
    EXPECT_EQ(line.source, "vx_clone_log_test.cpp");
    EXPECT_EQ(line.line, here);
}

TEST_F(LogTest, lineWithArgumentsFormatsThemAfterItsOwn) {
    VX_LOGF(Debug, "%s is %d", "answer", 42);
    EXPECT_EQ(onlyLine().message, "answer is 42");
}

TEST_F(LogTest, lineForAnotherFunctionCarriesThatName) {
    VX_LOG_AS("sm_Other", Error, "x");
    VX_LOGF_AS("sm_Third", Error, "%d", 3);
    EXPECT_EQ(tv.describedLog(), (std::vector<std::string>{"E/35 sm_Other: x", "E/35 sm_Third: 3"}));
}

TEST_F(LogTest, entryTraceIsAnErrorLineWithoutMessage) {
    VX_TRACE();
    EXPECT_EQ(tv.describedLog(), std::vector<std::string>{"E/35 TestBody: "});
}

TEST_F(LogTest, placeHoldsThreadIdAndMonotonicMilliseconds) {
    const auto before = monotonicMilliseconds();
    VX_TRACE();
    const auto after = monotonicMilliseconds();
    const std::string place = onlyLine().place;
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(place, parts, std::regex("tID:([^|]*)\\|TICK:([0-9]+)"))) << place;
    EXPECT_EQ(parts[1], standardThreadId());
    EXPECT_LE(before, std::stoll(parts[2]));
    EXPECT_GE(after, std::stoll(parts[2]));
}

TEST_F(LogTest, placeIsBuiltAfreshForEachLine) {
    VX_TRACE();
    const auto first = monotonicMilliseconds();
    while (monotonicMilliseconds() == first) {
        std::this_thread::yield();
    }
    VX_TRACE();
    EXPECT_NE(tv.log().at(0).place, tv.log().at(1).place);
}

TEST_F(LogTest, twoThreadsHaveTheirOwnIds) {
    std::string otherId;
    std::thread([&] {
        otherId = standardThreadId();
        VX_TRACE();
    }).join();
    VX_TRACE();
    EXPECT_EQ(tv.log().at(0).place.rfind("tID:" + otherId + "|TICK:", 0), 0U);
    EXPECT_EQ(tv.log().at(1).place.rfind("tID:" + standardThreadId() + "|TICK:", 0), 0U);
}

TEST(LogBaseName, pathWithAndWithoutFoldersGivesTheFileName) {
    EXPECT_STREQ(VXCloneBaseName("/a/b/VXCloneUtil.cpp"), "VXCloneUtil.cpp");
    EXPECT_STREQ(VXCloneBaseName("VXCloneUtil.cpp"), "VXCloneUtil.cpp");
    EXPECT_STREQ(VXCloneBaseName("a/"), "");
}

}  // namespace
}  // namespace vxtest
