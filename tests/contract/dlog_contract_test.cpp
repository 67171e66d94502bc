// What every logger must do. The lines are those of the library: source, function, line and place come first.

#include <thread>
#include <vector>

#include "platform/dlog.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using Dlog = ContractTest;

constexpr const char* kFormat = "%s: %s(%d) > [%s] > %s";

TEST_F(Dlog, oneCallIsOneLine) {
    EXPECT_GE(
        __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "cloneapi", kFormat, "a.cpp", "f", 1, "place", "hello there"),
        0);
    EXPECT_EQ(world->logLinesWith("a.cpp: f(1) > [place] > hello there"), 1);
}

TEST_F(Dlog, messageWithLineEndsIsStillOneLine) {
    EXPECT_GE(
        __dlog_print(LOG_ID_MAIN, DLOG_INFO, "cloneapi", kFormat, "b.cpp", "f", 1, "place", "one\ntwo\n"), 0);
    EXPECT_EQ(world->logLinesWith("b.cpp: f(1)"), 1);
    EXPECT_EQ(world->logLinesWith("two"), 1);
}

TEST_F(Dlog, longMessageIsKeptWhole) {
    const std::string text(20000, 'y');
    EXPECT_GE(__dlog_print(LOG_ID_MAIN, DLOG_DEBUG, "cloneapi", kFormat, "c.cpp", "f", 1, "p", text.c_str()),
              0);
    EXPECT_EQ(world->logLinesWith(text), 1);
}

TEST_F(Dlog, linesOfThreadsDoNotMix) {
    constexpr int kThreads = 4;
    constexpr int kLines = 100;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([] {
            const std::string text = "begin" + std::string(500, 'z') + "end";
            for (int line = 0; line < kLines; ++line) {
                __dlog_print(LOG_ID_MAIN, DLOG_ERROR, "cloneapi", kFormat, "d.cpp", "f", 1, "p",
                             text.c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(world->logLinesWith("d.cpp: f(1) > [p] > begin" + std::string(500, 'z') + "end"),
              kThreads * kLines);
}

}  // namespace
}  // namespace vxcontract
