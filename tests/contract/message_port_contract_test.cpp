// What all message ports must do.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/message_port.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

constexpr const char* kLocalPort = "VxCloneMessagePort";
constexpr std::chrono::seconds kLongest(10);

struct Received {
    int port = 0;
    std::string application;
    std::string remotePort;
    std::string response;
    std::thread::id thread;
};

/// Collects the messages of a port.
class Inbox {
 public:
    static void receive(int port, const char* application, const char* remotePort, bool /*trusted*/,
                        bundle* message, void* inbox) {
        char* response = nullptr;
        const bool isThere = bundle_get_str(message, "response_clone", &response) == 0;
        static_cast<Inbox*>(inbox)->add(
            {port, application, remotePort, isThere ? response : "(none)", std::this_thread::get_id()});
    }

    /// The messages so far, as soon as there are `count` of them or the time is over.
    std::vector<Received> waitFor(std::size_t count) {
        std::unique_lock lock(mutex);
        changed_.wait_for(lock, kLongest, [&] { return received_.size() >= count; });
        return received_;
    }

    std::mutex mutex;  ///< a receiver waits for it

 private:
    void add(Received message) {
        const std::lock_guard lock(mutex);
        received_.push_back(std::move(message));
        changed_.notify_all();
    }

    std::condition_variable changed_;
    std::vector<Received> received_;
};

class MessagePort : public ContractTest {
 protected:
    MessagePort() { bundle_add_str(request, "externalRequest", "request_clone_backup"); }
    ~MessagePort() override { bundle_free(request); }

    static int open(Inbox& inbox, const char* name = kLocalPort) {
        return message_port_register_local_port(name, Inbox::receive, &inbox);
    }
    int send(const std::string& application, int port) const {
        return message_port_send_message_with_local_port(application.c_str(), World::remotePort().c_str(),
                                                         request, port);
    }

    const std::string remote = world->answeringApplication();
    bundle* const request = bundle_create();
    /// It lives as long as the process, because the ports do.
    static Inbox& inbox() {
        static std::vector<std::unique_ptr<Inbox>> all;
        return *all.emplace_back(std::make_unique<Inbox>());
    }
};

TEST_F(MessagePort, registerOfTheSameNameGivesTheSameId) {
    const int first = open(inbox());
    EXPECT_GE(first, 0);
    EXPECT_EQ(open(inbox()), first);
    const int other = open(inbox(), "AnotherPort");
    EXPECT_GE(other, 0);
    EXPECT_NE(other, first);
}

TEST_F(MessagePort, registerOfNothingIsRefused) {
    EXPECT_LT(message_port_register_local_port(nullptr, Inbox::receive, nullptr), 0);
    EXPECT_LT(message_port_register_local_port("", Inbox::receive, nullptr), 0);
    EXPECT_LT(message_port_register_local_port(kLocalPort, nullptr, nullptr), 0);
}

TEST_F(MessagePort, checkTellsWhetherTheApplicationHasThePort) {
    bool exists = false;
    EXPECT_EQ(message_port_check_remote_port(remote.c_str(), World::remotePort().c_str(), &exists), 0);
    EXPECT_TRUE(exists);
    EXPECT_EQ(message_port_check_remote_port(world->absentApplication().c_str(), World::remotePort().c_str(),
                                             &exists),
              0);
    EXPECT_FALSE(exists);
}

TEST_F(MessagePort, checkOfANullIsRefusedAndLeavesTheFlag) {
    bool exists = true;
    EXPECT_NE(message_port_check_remote_port(nullptr, kLocalPort, &exists), 0);
    EXPECT_NE(message_port_check_remote_port(remote.c_str(), nullptr, &exists), 0);
    EXPECT_NE(message_port_check_remote_port(remote.c_str(), kLocalPort, nullptr), 0);
    EXPECT_TRUE(exists);
}

TEST_F(MessagePort, answerComesOnAnotherThread) {
    auto& box = inbox();
    const int port = open(box);
    ASSERT_EQ(send(remote, port), 0);
    const auto received = box.waitFor(1);
    ASSERT_EQ(received.size(), 1U);
    EXPECT_EQ(received[0].port, port);
    EXPECT_EQ(received[0].application, remote);
    EXPECT_EQ(received[0].remotePort, World::remotePort());
    EXPECT_EQ(received[0].response, "success");
    EXPECT_NE(received[0].thread, std::this_thread::get_id());
}

TEST_F(MessagePort, answersGoToTheNewestReceiver) {
    auto& before = inbox();
    auto& now = inbox();
    open(before);
    ASSERT_EQ(send(remote, open(now)), 0);
    EXPECT_EQ(now.waitFor(1).size(), 1U);
    EXPECT_EQ(before.waitFor(0).size(), 0U);
}

TEST_F(MessagePort, callsGoOnWhileAReceiverWaitsForTheirCaller) {
    auto& box = inbox();
    const int port = open(box);
    {
        const std::lock_guard lock(box.mutex);
        for (int message = 0; message < 5; ++message) {
            ASSERT_EQ(send(remote, port), 0);
            bool exists = false;
            ASSERT_EQ(message_port_check_remote_port(remote.c_str(), kLocalPort, &exists), 0);
            ASSERT_TRUE(exists);
            ASSERT_EQ(open(box), port);
        }
    }
    EXPECT_EQ(box.waitFor(5).size(), 5U);
}

TEST_F(MessagePort, sendToNobodyOrOfNothingFails) {
    const int port = open(inbox());
    EXPECT_NE(send(world->absentApplication(), port), 0);
    EXPECT_NE(message_port_send_message_with_local_port(nullptr, kLocalPort, request, port), 0);
    EXPECT_NE(message_port_send_message_with_local_port(remote.c_str(), nullptr, request, port), 0);
    EXPECT_NE(message_port_send_message_with_local_port(remote.c_str(), kLocalPort, nullptr, port), 0);
}

TEST_F(MessagePort, callThatIsToldToFailDoesNoWork) {
    auto& box = inbox();
    const int port = open(box);
    world->failOnce("message_port_check_remote_port", -9, 1);
    world->failOnce("message_port_send_message_with_local_port", -8, 1);
    world->failOnce("message_port_register_local_port", -7, 1);
    bool exists = false;
    EXPECT_EQ(message_port_check_remote_port(remote.c_str(), kLocalPort, &exists), -9);
    EXPECT_FALSE(exists);
    EXPECT_EQ(open(box), -7);
    EXPECT_EQ(send(remote, port), -8);
    EXPECT_EQ(send(remote, port), 0);
    EXPECT_EQ(box.waitFor(1).size(), 1U);
}

}  // namespace
}  // namespace vxcontract
