// The exchange with a cooperating application.

#include <future>
#include <thread>

#include "VxMessagePortAPI.h"
#include "engine_test.h"
#include "stepped_clock.h"

namespace vxtest {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kApp = "org.vorta.orvel-app";
constexpr long kHalfSecond = 500'000'000;

using Operation = bool (*)(char const*);
using Reply = std::map<std::string, std::string>;

class MessagePortTest : public EngineTest {
 protected:
    MessagePortTest() {
        VxMessagePortAPI::result_ = false;
        VxMessagePortAPI::waiting_ = false;
    }

    /// The number of times that the text was logged.
    long logged(const std::string& text) const {
        const auto messages = tv.messages();
        return std::count(messages.begin(), messages.end(), text);
    }

    /// Waits for the condition. The test's time-out is the limit.
    template <class Condition>
    static void await(Condition holds) {
        while (!holds()) {
            std::this_thread::yield();
        }
    }

    /// Waits until `count` exchanges have found that there is no reply yet.
    void awaitWaits(long count) {
        await([&] { return logged("Clone check waiting 1") >= count; });
    }

    bool reply(const std::string& app, const std::string& value) {
        return tv.deliver(app, {{"response_clone", value}});
    }

    SteppedClock clock;
};

std::vector<std::string> exchangeUpToTheWait(const std::string& request) {
    return {"message_port_register_local_port(\"VxCloneMessagePort\")",
            "E/35 RegisterPort: port_id: 1",
            "D/33 SendMessage: appName [org.vorta.orvel-app]",
            "message_port_check_remote_port(\"org.vorta.orvel-app\", \"VxCloneMessagePort\")",
            "bundle_create()",
            "bundle_add_str(\"externalRequest\", \"" + request + "\")",
            "bundle_add_str(\"path\", \"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\")",
            "message_port_send_message_with_local_port(\"org.vorta.orvel-app\", \"VxCloneMessagePort\", "
            "{\"externalRequest\": \"" +
                request + "\", \"path\": \"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\"}, 1)",
            "E/35 send_message_with_local_port: Send message done",
            "bundle_free()",
            "E/35 waitReply: Clone waitReply",
            "E/35 operator(): Clone check waiting 1"};
}

TEST_F(MessagePortTest, backupAnsweredWithSuccessMakesOneWholeExchange) {
    tv.replyToSends(Reply{{"response_clone", "success"}});
    EXPECT_TRUE(VxMessagePortAPI::Backup(kApp));
    auto expected = exchangeUpToTheWait("request_clone_backup");
    expected.emplace_back("E/35 operator(): Clone check waiting 0");
    EXPECT_EQ(tv.transcript(), expected);
    EXPECT_THAT(tv.describedLog(),
                Contains("E/35 message_port_cb: Message from org.vorta.orvel-app, result success"));
    EXPECT_TRUE(VxMessagePortAPI::result_);
    EXPECT_FALSE(VxMessagePortAPI::waiting_);
    EXPECT_EQ(tv.bundlesHeld(), 0);
    EXPECT_THAT(clock.sleeps(), IsEmpty());
}

TEST_F(MessagePortTest, restoreDiffersInTheRequestAlone) {
    tv.replyToSends(Reply{{"response_clone", "success"}});
    EXPECT_TRUE(VxMessagePortAPI::Restore(kApp));
    auto expected = exchangeUpToTheWait("request_clone_restore");
    expected.emplace_back("E/35 operator(): Clone check waiting 0");
    EXPECT_EQ(tv.transcript(), expected);
}

TEST_F(MessagePortTest, answerThatIsNotExactlySuccessIsAFailure) {
    for (const std::string answer : {"Success", "fail", "success ", ""}) {
        tv.replyToSends(Reply{{"response_clone", answer}});
        EXPECT_FALSE(VxMessagePortAPI::Backup(kApp)) << answer;
        EXPECT_EQ(logged("Message from org.vorta.orvel-app, result " + answer), 1);
        EXPECT_FALSE(VxMessagePortAPI::waiting_);
    }
}

TEST_F(MessagePortTest, answerWithoutItsEntryEndsTheWaitAndIsAFailure) {
    tv.replyToSends(Reply{{"other", "success"}});
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    EXPECT_THAT(tv.describedLog(),
                Contains("E/35 message_port_cb: Message from org.vorta.orvel-app, result (null)"));
    EXPECT_EQ(clock.stepped(), 0);
}

TEST_F(MessagePortTest, messageWithoutSenderOrContentIsAFailureAndNoCrash) {
    VxMessagePortAPI::waiting_ = true;
    VxMessagePortAPI::result_ = true;
    VxMessagePortAPI::message_port_cb(1, nullptr, nullptr, false, nullptr, nullptr);
    EXPECT_THAT(tv.describedLog(), ElementsAre("E/35 message_port_cb: Message from (null), result (null)"));
    EXPECT_FALSE(VxMessagePortAPI::waiting_);
    EXPECT_FALSE(VxMessagePortAPI::result_);
}

TEST_F(MessagePortTest, portThatAppearsAfterTwoSecondsIsUsed) {
    tv.setRemotePort(kApp, false);
    tv.onCall("message_port_check_remote_port", [&] { tv.setRemotePort(kApp, clock.stepped() >= 2000); });
    tv.replyToSends(Reply{{"response_clone", "success"}});
    EXPECT_TRUE(VxMessagePortAPI::Backup(kApp));
    EXPECT_EQ(logged("Remote port check fail, retry in 0.5s"), 4);
    EXPECT_THAT(tv.callsOf("message_port_check_remote_port"), SizeIs(5));
    EXPECT_THAT(tv.callsOf("message_port_send_message_with_local_port"), SizeIs(1));
}

TEST_F(MessagePortTest, portThatNeverAppearsIsGivenUpAfterElevenChecks) {
    tv.setRemotePort(kApp, false);
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    std::vector<std::string> expected = {"message_port_register_local_port(\"VxCloneMessagePort\")",
                                         "E/35 RegisterPort: port_id: 1",
                                         "D/33 SendMessage: appName [org.vorta.orvel-app]"};
    for (int check = 0; check < 11; ++check) {
        expected.emplace_back(
            "message_port_check_remote_port(\"org.vorta.orvel-app\", \"VxCloneMessagePort\")");
        expected.emplace_back("E/35 SendMessage: Remote port check fail, retry in 0.5s");
    }
    expected.emplace_back("F/31 SendMessage: Unable to reach [org.vorta.orvel-app]!!!");
    EXPECT_EQ(tv.transcript(), expected);
    EXPECT_THAT(clock.sleeps(), SizeIs(11));
    EXPECT_THAT(clock.sleeps(), Each(kHalfSecond));
    EXPECT_EQ(clock.stepped(), 5500);
    EXPECT_TRUE(VxMessagePortAPI::waiting_);
}

TEST_F(MessagePortTest, sleepThatASignalInterruptsIsSleptToItsEnd) {
    tv.setRemotePort(kApp, false);
    clock.interruptNextSleep({0, 300'000'000});
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    const auto sleeps = clock.sleeps();
    ASSERT_THAT(sleeps, SizeIs(12));
    EXPECT_EQ(sleeps[0], kHalfSecond);
    EXPECT_EQ(sleeps[1], 300'000'000);
    EXPECT_EQ(clock.stepped(), 5500);
}

TEST_F(MessagePortTest, checkThatFailsIsLoggedAndTriedAgain) {
    tv.answerOnce("message_port_check_remote_port", -3);
    tv.replyToSends(Reply{{"response_clone", "success"}});
    EXPECT_TRUE(VxMessagePortAPI::Backup(kApp));
    EXPECT_THAT(tv.describedLog(),
                Contains("E/35 test_check_remote_port: message_port_check_remote_port error: -3"));
    EXPECT_EQ(logged("Remote port check fail, retry in 0.5s"), 1);
}

TEST_F(MessagePortTest, portThatCannotBeRegisteredEndsTheExchange) {
    tv.answer("message_port_register_local_port", -7);
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    EXPECT_THAT(tv.transcript(), ElementsAre("message_port_register_local_port(\"VxCloneMessagePort\")",
                                             "E/35 RegisterPort: Port register error: -7"));
}

TEST_F(MessagePortTest, portZeroIsAPort) {
    tv.answer("message_port_register_local_port", 0);
    tv.answer("message_port_send_message_with_local_port", -1);
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    EXPECT_EQ(logged("port_id: 0"), 1);
    EXPECT_THAT(tv.callsOf("message_port_send_message_with_local_port"), SizeIs(1));
}

TEST_F(MessagePortTest, sendThatFailsIsNotTriedAgain) {
    tv.answer("message_port_send_message_with_local_port", -5);
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    EXPECT_THAT(tv.callsOf("message_port_send_message_with_local_port"), SizeIs(1));
    EXPECT_EQ(tv.transcript().back(), "bundle_free()");
    EXPECT_THAT(tv.describedLog(), Contains("E/35 send_message_with_local_port: "
                                            "message_port_send_message_with_local_port error: -5"));
    EXPECT_EQ(tv.bundlesHeld(), 0);
}

TEST_F(MessagePortTest, bundleThatCannotBeMadeIsAFailureAndNoCrash) {
    tv.answer("bundle_create", 1);
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    EXPECT_EQ(tv.bundlesHeld(), 0);
}

TEST_F(MessagePortTest, waitEndsAfterFourSecondsWithoutReply) {
    clock.letWaitsExpire();
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    auto expected = exchangeUpToTheWait("request_clone_backup");
    // The condition is evaluated once more at the deadline.
    expected.emplace_back("E/35 operator(): Clone check waiting 1");
    EXPECT_EQ(tv.transcript(), expected);
    EXPECT_GT(clock.stepped(), 3900);
    EXPECT_LE(clock.stepped(), 4000);
    EXPECT_TRUE(VxMessagePortAPI::waiting_);
}

TEST_F(MessagePortTest, replyAfterTheTimeOutDoesNotSpoilTheNextExchange) {
    {
        SteppedClock expiring;
        expiring.letWaitsExpire();
        EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    }
    EXPECT_TRUE(reply(kApp, "success"));
    EXPECT_TRUE(VxMessagePortAPI::result_);
    EXPECT_FALSE(VxMessagePortAPI::waiting_);
    auto next = std::async(std::launch::async, [] { return VxMessagePortAPI::Restore(kApp); });
    awaitWaits(3);
    EXPECT_TRUE(reply(kApp, "fail"));
    EXPECT_FALSE(next.get());
}

TEST_F(MessagePortTest, replyOfAnyApplicationEndsTheWait) {
    auto exchange = std::async(std::launch::async, [] { return VxMessagePortAPI::Backup(kApp); });
    awaitWaits(1);
    EXPECT_TRUE(reply("org.some.other", "success"));
    EXPECT_TRUE(exchange.get());
}

TEST_F(MessagePortTest, waitingIsSetBeforeTheLockIsTaken) {
    std::unique_lock<std::mutex> lock(VxMessagePortAPI::mutex_);
    auto exchange = std::async(std::launch::async, [] { return VxMessagePortAPI::Backup(kApp); });
    await([] { return VxMessagePortAPI::waiting_.load(); });
    EXPECT_THAT(tv.calls(), IsEmpty());
    lock.unlock();
    awaitWaits(1);
    EXPECT_TRUE(reply(kApp, "success"));
    EXPECT_TRUE(exchange.get());
}

TEST_F(MessagePortTest, waitForAReplyThatHasComeReturnsAtOnce) {
    std::unique_lock<std::mutex> lock(VxMessagePortAPI::mutex_);
    EXPECT_TRUE(VxMessagePortAPI::waitReply(lock));
    EXPECT_TRUE(lock.owns_lock());
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 waitReply: Clone waitReply", "E/35 operator(): Clone check waiting 0"));
}

TEST_F(MessagePortTest, exchangeThatQueuesUpStartsAfterTheFirstAndWaitsForItsOwnReply) {
    auto first = std::async(std::launch::async, [] { return VxMessagePortAPI::Backup("first"); });
    awaitWaits(1);
    auto second = std::async(std::launch::async, [] { return VxMessagePortAPI::Backup("second"); });
    await([&] { return clock.openWaits() > 0; });
    EXPECT_TRUE(reply("first", "success"));
    EXPECT_TRUE(first.get());
    // If the reply to the first had ended the second's wait, it would log "waiting 0" at once.
    awaitWaits(2);
    EXPECT_EQ(logged("Clone check waiting 0"), 1);
    EXPECT_TRUE(reply("second", "fail"));
    EXPECT_FALSE(second.get());

    const auto messages = tv.messages();
    const auto place = [&messages](const std::string& text) {
        return std::find(messages.begin(), messages.end(), text) - messages.begin();
    };
    EXPECT_LT(place("Message from first, result success"), place("appName [second]"));
    EXPECT_THAT(tv.callsOf("message_port_register_local_port"), SizeIs(2));
    EXPECT_FALSE(VxMessagePortAPI::busy_);
}

TEST_F(MessagePortTest, callerThatQueuesUpBetweenReplyAndWakingCostsNoReply) {
    auto exchange = std::async(std::launch::async, [] { return VxMessagePortAPI::Backup(kApp); });
    awaitWaits(1);
    // The callback reads the message while it holds the lock, so nobody has seen the reply yet.
    tv.onCall("bundle_get_str", [] { VxMessagePortAPI::waiting_ = true; });
    EXPECT_TRUE(reply(kApp, "success"));
    EXPECT_TRUE(exchange.get());
    EXPECT_EQ(logged("Clone check waiting 0"), 1);
    EXPECT_EQ(clock.stepped(), 0);
}

TEST_F(MessagePortTest, exchangeThatFailsLetsTheNextOneBegin) {
    tv.answerOnce("message_port_register_local_port", -1);
    EXPECT_FALSE(VxMessagePortAPI::Backup(kApp));
    tv.replyToSends(Reply{{"response_clone", "success"}});
    EXPECT_TRUE(VxMessagePortAPI::Backup(kApp));
}

TEST_F(MessagePortTest, manyThreadsAtOnceAreServedOneByOne) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 20;
    tv.replyToSends(Reply{{"response_clone", "success"}});
    std::vector<std::future<int>> callers;
    for (int i = 0; i < kThreads; ++i) {
        callers.push_back(std::async(std::launch::async, [i] {
            int good = 0;
            const Operation operation = i % 2 == 0 ? VxMessagePortAPI::Backup : VxMessagePortAPI::Restore;
            for (int round = 0; round < kRounds; ++round) {
                good += operation(kApp) ? 1 : 0;
            }
            return good;
        }));
    }
    for (auto& caller : callers) {
        EXPECT_EQ(caller.get(), kRounds);
    }
    // No other exchange registers between the registration and the end of one.
    int open = 0;
    for (const std::string& message : tv.messages()) {
        open += message == "port_id: 1" ? 1 : 0;
        ASSERT_LE(open, 1);
        open -= message == "Clone check waiting 0" ? 1 : 0;
    }
    EXPECT_EQ(clock.stepped(), 0);
}

}  // namespace
}  // namespace vxtest
