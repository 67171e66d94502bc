#include "virtual_tv/calls/dlog_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <regex>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

class DlogFileTest : public testing::Test {
 protected:
    std::string lines() const { return test::readFile(folder_.path() / "dlog.txt"); }

    test::TestFolder folder_;
    DlogFile log_{folder_.path() / "dlog.txt"};
};

TEST_F(DlogFileTest, appendWritesOneLineWithItsHead) {
    ASSERT_TRUE(log_.append(6, "cloneapi", "\x1b[0;35mtext\x1b[0;m"));
    const std::regex line("^[0-9]+\\.[0-9]{3} " + std::to_string(getpid()) +
                          " E cloneapi: \x1b\\[0;35mtext\x1b\\[0;m\n$");
    EXPECT_TRUE(std::regex_match(lines(), line)) << lines();
}

TEST_F(DlogFileTest, lineEndsInTheMessageBecomeBlanks) {
    ASSERT_TRUE(log_.append(3, "t", "one\ntwo\r\nthree\n"));
    EXPECT_NE(std::string::npos, lines().find("D t: one two  three\n"));
}

TEST_F(DlogFileTest, priorityOutsideTheTableHasNoLetter) {
    ASSERT_TRUE(log_.append(-1, "t", "a"));
    ASSERT_TRUE(log_.append(9, "t", "b"));
    EXPECT_NE(std::string::npos, lines().find("? t: a\n"));
    EXPECT_NE(std::string::npos, lines().find("? t: b\n"));
}

TEST_F(DlogFileTest, longMessageIsWrittenWhole) {
    const std::string text(300000, 'x');
    ASSERT_TRUE(log_.append(6, "t", text));
    EXPECT_NE(std::string::npos, lines().find(text + "\n"));
}

}  // namespace
}  // namespace vxtv
