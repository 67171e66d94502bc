// Message ports as a program in a television calls them while no bus runs.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/message_port.h"
#include "tests/unit/virtual_tv/shared_television.h"

namespace vxtv {
namespace {

constexpr int kBadArgument = -2;
constexpr int kNameTooLong = -3;
constexpr int kNoBus = -8;

void ignoreMessage(int, const char*, const char*, bool, bundle*, void*) {}

TEST(PortPlatform, callsWithoutABusSaySoAndLeaveTheFlag) {
    test::sharedTelevision();
    bool exists = true;
    EXPECT_EQ(message_port_register_local_port("port", ignoreMessage, nullptr), kNoBus);
    EXPECT_EQ(message_port_check_remote_port("org.example.app", "port", &exists), kNoBus);
    EXPECT_TRUE(exists);
}

TEST(PortPlatform, callsWithNamesThatCannotBeAreRefusedBeforeAnybodyIsAsked) {
    test::sharedTelevision();
    bool exists = true;
    const std::string tooLong(256, 'a');
    EXPECT_EQ(message_port_register_local_port("", ignoreMessage, nullptr), kBadArgument);
    EXPECT_EQ(message_port_register_local_port(tooLong.c_str(), ignoreMessage, nullptr), kNameTooLong);
    EXPECT_EQ(message_port_check_remote_port("", "port", &exists), kBadArgument);
    EXPECT_EQ(message_port_check_remote_port(tooLong.c_str(), "port", &exists), kNameTooLong);
    EXPECT_TRUE(exists);
}

TEST(PortPlatform, callLogShowsNamesAndSizesAndNoValues) {
    const Television& television = test::sharedTelevision();
    const std::unique_ptr<bundle, decltype(&bundle_free)> message(bundle_create(), &bundle_free);
    ASSERT_EQ(bundle_add_str(message.get(), "key", "a PIN"), 0);
    ASSERT_TRUE(television.calls().clear());
    EXPECT_NE(message_port_send_message_with_local_port("org.example.app", "port", message.get(), 7), 0);
    CallRecord logged;
    ASSERT_TRUE(television.calls().read([&logged](const CallRecord& call) { logged = call; }));
    EXPECT_EQ(logged.call, "message_port_send_message_with_local_port");
    EXPECT_EQ(logged.arguments.dump(),
              R"({"remoteApp":"org.example.app","remotePort":"port","localPortId":7,"entries":1,"bytes":8})");
}

}  // namespace
}  // namespace vxtv
