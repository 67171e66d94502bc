#include <gmock/gmock.h>

#include <atomic>
#include <fstream>
#include <future>
#include <string>
#include <thread>

#include "tests/unit/virtual_tv/bus_television.h"

namespace vxtv {
namespace {

class PortMessages : public testing::Test {
 protected:
    static constexpr const char* kPort = "Port";

    BusTelevision television;
    PortInbox inbox;
    PortInbox answers;
    MessagePorts application{television.folder, "org.example.app"};
    MessagePorts client{television.folder, "org.example.client"};
};

std::size_t entriesOf(const char* directory) {
    const std::filesystem::directory_iterator all(directory);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

TEST_F(PortMessages, sentMessageArrivesWithItsSenderAndItsEntriesInOrder) {
    ASSERT_EQ(application.open(kPort, inbox.receiver()), 1);
    const int own = client.open("Client", answers.receiver()).value();
    const PortEntries entries = {{"z", "first"}, {"a", ""}, {"m", "h\u00f4tel \"x\"\n"}};
    ASSERT_TRUE(client.send("org.example.app", kPort, entries, own));
    const auto received = inbox.waitFor(1);
    ASSERT_EQ(received.size(), 1U);
    EXPECT_EQ(received[0].application, "org.example.client");
    EXPECT_EQ(received[0].port, "Client");
    EXPECT_EQ(received[0].entries, entries);
}

TEST_F(PortMessages, sendToOnesOwnPortArrives) {
    const int own = client.open(kPort, inbox.receiver()).value();
    ASSERT_TRUE(client.send("org.example.client", kPort, {{"key", "value"}}, own));
    EXPECT_EQ(inbox.waitFor(1).size(), 1U);
}

TEST_F(PortMessages, openOfAPortThatAnotherProcessHasSaysSo) {
    ASSERT_TRUE(application.open(kPort, inbox.receiver()));
    MessagePorts second(television.folder, "org.example.app");
    EXPECT_EQ(second.open(kPort, answers.receiver()).error(), PortError::NameTaken);
    ASSERT_TRUE(client.send("org.example.app", kPort, {}, client.open(kPort, answers.receiver()).value()));
    EXPECT_EQ(inbox.waitFor(1).size(), 1U);
}

TEST_F(PortMessages, portGoesWithItsApplication) {
    {
        MessagePorts shortLived(television.folder, "org.example.short");
        ASSERT_TRUE(shortLived.open(kPort, answers.receiver()));
        EXPECT_EQ(client.exists("org.example.short", kPort), true);
    }
    EXPECT_EQ(client.exists("org.example.short", kPort), false);
    const int own = client.open(kPort, inbox.receiver()).value();
    EXPECT_EQ(client.send("org.example.short", kPort, {}, own).error(), PortError::NoSuchPort);
}

TEST_F(PortMessages, largestMessageArrivesAndALargerOneIsRefused) {
    ASSERT_TRUE(application.open(kPort, inbox.receiver()));
    const int own = client.open("Client", answers.receiver()).value();
    const std::string largest(kLargestMessage - 1, 'x');
    EXPECT_EQ(client.send("org.example.app", kPort, {{"k", largest + "x"}}, own).error(),
              PortError::MessageTooLarge);
    ASSERT_TRUE(client.send("org.example.app", kPort, {{"k", largest}}, own));
    const auto received = inbox.waitFor(1);
    ASSERT_EQ(received.size(), 1U);
    EXPECT_EQ(received[0].entries.at(0).second, largest);
}

TEST_F(PortMessages, sendOfTextThatIsNoUtf8OrFromAnUnknownPortIsRefused) {
    ASSERT_TRUE(application.open(kPort, inbox.receiver()));
    const int own = client.open("Client", answers.receiver()).value();
    EXPECT_EQ(client.send("org.example.app", kPort, {{"k", "\xff"}}, own).error(), PortError::BadArgument);
    EXPECT_EQ(client.send("org.example.app", kPort, {}, own + 1).error(), PortError::NoLocalPort);
    EXPECT_TRUE(client.send("org.example.app", kPort, {}, own));
}

TEST_F(PortMessages, receiverThatLooksAtNothingRefusesAtLast) {
    ASSERT_TRUE(application.open(kPort, inbox.receiver()));
    const int own = client.open("Client", answers.receiver()).value();
    std::size_t accepted = 0;
    {
        const std::lock_guard shut(inbox.door);
        auto sent = client.send("org.example.app", kPort, {}, own);
        for (; sent && accepted <= kMostWaiting; ++accepted) {
            sent = client.send("org.example.app", kPort, {}, own);
        }
        ASSERT_FALSE(sent);
        EXPECT_EQ(sent.error(), PortError::ReceiverFull);
        EXPECT_GE(accepted, kMostWaiting);
    }
    EXPECT_EQ(inbox.waitFor(accepted).size(), accepted);
}

TEST(DeliveryTest, hushWaitsForTheReceiverAndNoneIsCalledAfterwards) {
    std::promise<void> begun;
    std::promise<void> mayEnd;
    std::atomic<int> ended = 0;
    Delivery delivery;
    delivery.setReceiver(1, [&](int, const PortMessage&) {
        begun.set_value();
        mayEnd.get_future().wait();
        ++ended;
    });
    ASSERT_TRUE(delivery.accept(1, {}));
    begun.get_future().wait();
    std::thread later([&mayEnd] { mayEnd.set_value(); });
    delivery.hush();
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(delivery.accept(1, {}));
    delivery.end();
    EXPECT_EQ(ended, 1);
    later.join();
}

TEST_F(PortMessages, openOfTooManyPortsIsRefused) {
    for (std::size_t port = 0; port < kMostPorts; ++port) {
        ASSERT_TRUE(client.open("Port" + std::to_string(port), answers.receiver()));
    }
    EXPECT_EQ(client.open("OneMore", answers.receiver()).error(), PortError::TooManyPorts);
}

TEST_F(PortMessages, withoutABusEverythingSaysSoAndWorksAgainWithANewOne) {
    ASSERT_TRUE(application.open(kPort, inbox.receiver()));
    const int own = client.open(kPort, answers.receiver()).value();
    ASSERT_EQ(client.exists("org.example.app", kPort), true);
    television.share.endBus();
    EXPECT_EQ(client.exists("org.example.app", kPort).error(), PortError::NoBus);
    EXPECT_EQ(client.send("org.example.app", kPort, {}, own).error(), PortError::NoBus);
    EXPECT_EQ(client.open(kPort, answers.receiver()).error(), PortError::NoBus);

    ASSERT_TRUE(television.share.take());
    EXPECT_EQ(client.exists("org.example.app", kPort), false);
    EXPECT_EQ(application.open(kPort, inbox.receiver()), 1);
    EXPECT_EQ(client.open(kPort, answers.receiver()), own);
    EXPECT_TRUE(client.send("org.example.app", kPort, {}, own));
    EXPECT_EQ(inbox.waitFor(1).size(), 1U);
}

TEST_F(PortMessages, manyExchangesLeaveNoThreadsAndNoDescriptors) {
    const int own = client.open("Client", answers.receiver()).value();
    const auto echo = [this](int port, const PortMessage& message) {
        static_cast<void>(application.send(message.application, message.port, message.entries, port));
    };
    ASSERT_TRUE(application.open(kPort, echo));
    ASSERT_TRUE(client.send("org.example.app", kPort, {{"n", "0"}}, own));
    ASSERT_EQ(answers.waitFor(1).size(), 1U);
    const std::size_t threads = entriesOf("/proc/self/task");
    const std::size_t descriptors = entriesOf("/proc/self/fd");
    for (std::size_t round = 1; round <= 200; ++round) {
        ASSERT_TRUE(client.send("org.example.app", kPort, {{"n", std::to_string(round)}}, own));
        ASSERT_EQ(answers.waitFor(round + 1).back().entries[0].second, std::to_string(round));
        ASSERT_EQ(client.open("Client", answers.receiver()), own);
    }
    EXPECT_EQ(entriesOf("/proc/self/task"), threads);
    EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors);
}

}  // namespace
}  // namespace vxtv
