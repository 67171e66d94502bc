// What every secure storage and every key installation must do.

#include <gmock/gmock.h>

#include "platform/secure_storage.h"
#include "platform/wqd.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using SecureStorage = ContractTest;

constexpr int kFlags = 33;

ss_credential credentialOf(const World& world) {
    return ss_init_credential(world.clientIdentifier().data(), 1, 0);
}

TEST_F(SecureStorage, credentialHoldsTwentyBytesAndTheTwoNumbers) {
    const std::string identifier("12345\0also after NUL", 20);
    const ss_credential credential = ss_init_credential((identifier + "more").data(), 7, -8);
    EXPECT_EQ(std::string(credential.identifier, sizeof credential.identifier), identifier);
    EXPECT_EQ(credential.owner, 7);
    EXPECT_EQ(credential.group, -8);
}

TEST_F(SecureStorage, readOfAnUnknownEntryFailsAndLeavesTheValues) {
    char* data = nullptr;
    size_t length = 0;
    EXPECT_NE(ss_read(&data, &length, 0, 0, "NO_SUCH_ENTRY", credentialOf(*world), kFlags), 0);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(length, 0U);
}

TEST_F(SecureStorage, readThatIsToldToFailLeavesTheValues) {
    ASSERT_EQ(wqd_install_from_file(world->keyFile().c_str(), 2, 0), 0);
    world->failOnce("ss_read", -9, 1);
    char* data = nullptr;
    size_t length = 0;
    const auto read = [&] {
        return ss_read(&data, &length, 0, 0, "VX_CLONE_API_AES_KEY", credentialOf(*world), kFlags);
    };
    EXPECT_EQ(read(), -9);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(read(), 0);
    ss_free_buffer(data);
}

TEST_F(SecureStorage, eachReadHandsOutABufferOfItsOwn) {
    ASSERT_EQ(wqd_install_from_file(world->keyFile().c_str(), 2, 0), 0);
    char* first = nullptr;
    char* second = nullptr;
    size_t length = 0;
    ASSERT_EQ(ss_read(&first, &length, 0, 0, "VX_CLONE_API_AES_IV", credentialOf(*world), kFlags), 0);
    ASSERT_EQ(ss_read(&second, &length, 0, 0, "VX_CLONE_API_AES_IV", credentialOf(*world), kFlags), 0);
    EXPECT_NE(first, second);
    ss_free_buffer(first);
    EXPECT_EQ(std::string(second, length), world->installedIv());
    ss_free_buffer(second);
}

TEST_F(SecureStorage, releaseOfNullIsAllowed) {
    EXPECT_EXIT((ss_free_buffer(nullptr), std::_Exit(0)), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vxcontract
