#include "virtual_tv/calls/call_log.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>
#include <vector>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

CallRecord record(const std::string& call) {
    CallRecord it;
    it.call = call;
    it.arguments = {{"key", "k"}};
    it.result = 0;
    return it;
}

class CallLogTest : public testing::Test {
 protected:
    test::TestFolder folder_;
    std::filesystem::path file_ = folder_.path() / "calls.jsonl";
    CallLog log_{file_};
};

TEST_F(CallLogTest, appendedCallsAreReadInOrder) {
    CallRecord second = record("two");
    second.fault = 9;
    ASSERT_TRUE(log_.append(record("one")));
    ASSERT_TRUE(log_.append(second));
    std::vector<CallRecord> calls;
    EXPECT_EQ(0, log_.read([&calls](const CallRecord& call) { calls.push_back(call); }).value());
    ASSERT_EQ(2U, calls.size());
    EXPECT_EQ("one", calls[0].call);
    EXPECT_EQ(getpid(), calls[0].process);
    EXPECT_FALSE(calls[0].fault);
    EXPECT_EQ("two", calls[1].call);
    EXPECT_EQ(9, calls[1].fault);
    EXPECT_LE(calls[0].timeUs, calls[1].timeUs);
}

TEST_F(CallLogTest, brokenLinesAreCountedAndPassedOver) {
    ASSERT_TRUE(log_.append(record("one")));
    test::writeFile(file_, test::readFile(file_) + "{\"call\":\n[1]\n");
    int calls = 0;
    EXPECT_EQ(2, log_.read([&calls](const CallRecord&) { ++calls; }).value());
    EXPECT_EQ(1, calls);
}

TEST_F(CallLogTest, clearEmptiesItForEveryWriter) {
    ASSERT_TRUE(log_.append(record("one")));
    ASSERT_TRUE(CallLog(file_).clear());
    ASSERT_TRUE(log_.append(record("two")));
    std::vector<std::string> calls;
    ASSERT_TRUE(log_.read([&calls](const CallRecord& call) { calls.push_back(call.call); }));
    EXPECT_EQ(std::vector<std::string>{"two"}, calls);
}

TEST_F(CallLogTest, logThatIsALinkIsNeitherWrittenNorReadNorEmptied) {
    const std::filesystem::path theirs = folder_.path() / "theirs";
    test::writeFile(theirs, "kept\n");
    std::filesystem::create_symlink(theirs, file_);
    EXPECT_FALSE(log_.append(record("one")));
    const auto read = log_.read([](const CallRecord&) {});
    ASSERT_FALSE(read);
    EXPECT_EQ(file_.string() + " cannot be read: it is a link; remove it and try again",
              read.error().sentence);
    const auto cleared = log_.clear();
    ASSERT_FALSE(cleared);
    EXPECT_EQ(file_.string() + " cannot be emptied: it is a link; remove it and try again",
              cleared.error().sentence);
    EXPECT_EQ("kept\n", test::readFile(theirs));
}

TEST_F(CallLogTest, logThatIsAPipeHoldsNobody) {
    ASSERT_EQ(0, mkfifo(file_.c_str(), 0600));
    EXPECT_FALSE(log_.append(record("one")));
    EXPECT_EQ(file_.string() + " cannot be read: it is no plain file; remove it and try again",
              log_.read([](const CallRecord&) {}).error().sentence);
    EXPECT_EQ(file_.string() + " cannot be emptied: it is no plain file; remove it and try again",
              log_.clear().error().sentence);
}

TEST_F(CallLogTest, logWhoseFolderIsALinkIsNotWritten) {
    std::filesystem::create_directory(folder_.path() / "theirs");
    std::filesystem::create_directory_symlink("theirs", folder_.path() / "log");
    CallLog log(folder_.path() / "log/calls.jsonl");
    EXPECT_FALSE(log.append(record("one")));
    EXPECT_FALSE(log.clear());
    EXPECT_TRUE(std::filesystem::is_empty(folder_.path() / "theirs"));
}

TEST_F(CallLogTest, lastLineWithoutAnEndIsReadToo) {
    ASSERT_TRUE(log_.append(record("one")));
    std::string text = test::readFile(file_);
    text.pop_back();
    test::writeFile(file_, std::string(200000, 'x') + "\n\n" + text);
    int calls = 0;
    EXPECT_EQ(2, log_.read([&calls](const CallRecord&) { ++calls; }).value());
    EXPECT_EQ(1, calls);
}

TEST_F(CallLogTest, linesOfManyThreadsDoNotMix) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this] {
            for (int i = 0; i < 100; ++i) {
                log_.append(record(std::string(300, 'c')));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    int calls = 0;
    EXPECT_EQ(0, log_.read([&calls](const CallRecord&) { ++calls; }).value());
    EXPECT_EQ(400, calls);
}

}  // namespace
}  // namespace vxtv
