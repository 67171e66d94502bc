// What every system information service must do.

#include "platform/system_info.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using SystemInfo = ContractTest;

TEST_F(SystemInfo, textItemsAreHandedOutForTheCallerToFree) {
    for (const auto& [key, expected] : {std::pair{SYSTEM_INFO_KEY_MODEL, world->model()},
                                        std::pair{SYSTEM_INFO_KEY_PRODUCT_TAG, world->productTag()}}) {
        char* text = nullptr;
        ASSERT_EQ(system_info_get_value_string(key, &text), 0);
        const OwnedString owned(text);
        EXPECT_STREQ(text, expected.c_str());
    }
}

TEST_F(SystemInfo, tunerTypeIsANumber) {
    int value = -1;
    EXPECT_EQ(system_info_get_value_int(SYSTEM_INFO_KEY_TUNER_TYPE, &value), 0);
    EXPECT_EQ(value, world->tunerType());
}

TEST_F(SystemInfo, itemOfAnotherTypeFailsAndLeavesTheValue) {
    char* text = nullptr;
    int number = 77;
    EXPECT_NE(system_info_get_value_string(SYSTEM_INFO_KEY_TUNER_TYPE, &text), 0);
    EXPECT_EQ(text, nullptr);
    EXPECT_NE(system_info_get_value_int(SYSTEM_INFO_KEY_MODEL, &number), 0);
    EXPECT_EQ(number, 77);
}

TEST_F(SystemInfo, unknownItemFailsAndLeavesTheValue) {
    const auto unknown = static_cast<system_info_key_e>(5000);
    char* text = nullptr;
    int number = 77;
    EXPECT_NE(system_info_get_value_string(unknown, &text), 0);
    EXPECT_EQ(text, nullptr);
    EXPECT_NE(system_info_get_value_int(unknown, &number), 0);
    EXPECT_EQ(number, 77);
}

TEST_F(SystemInfo, featuresAreReadByTheirType) {
    int number = -1;
    bool on = !world->boolFeatureValue();
    EXPECT_EQ(system_info_get_custom_int(world->intFeature().c_str(), &number), 0);
    EXPECT_EQ(number, world->intFeatureValue());
    EXPECT_EQ(system_info_get_custom_bool(world->boolFeature().c_str(), &on), 0);
    EXPECT_EQ(on, world->boolFeatureValue());
}

TEST_F(SystemInfo, unknownFeatureFailsAndLeavesTheValue) {
    int number = 77;
    bool on = true;
    EXPECT_NE(system_info_get_custom_int("com.example/none", &number), 0);
    EXPECT_EQ(number, 77);
    EXPECT_NE(system_info_get_custom_bool("com.example/none", &on), 0);
    EXPECT_TRUE(on);
}

TEST_F(SystemInfo, callThatIsToldToFailLeavesTheValue) {
    world->failOnce("system_info_get_custom_int", -3, 1);
    int number = 77;
    EXPECT_EQ(system_info_get_custom_int(world->intFeature().c_str(), &number), -3);
    EXPECT_EQ(number, 77);
    EXPECT_EQ(system_info_get_custom_int(world->intFeature().c_str(), &number), 0);
}

}  // namespace
}  // namespace vxcontract
