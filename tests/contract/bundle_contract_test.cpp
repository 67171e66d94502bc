// What every bundle must do.

#include "platform/bundle.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

struct FreeBundle {
    void operator()(bundle* held) const { bundle_free(held); }
};

class Bundle : public ContractTest {
 protected:
    std::string valueOf(const char* key) const {
        char* value = nullptr;
        return bundle_get_str(held.get(), key, &value) == 0 ? value : "(none)";
    }

    const std::unique_ptr<bundle, FreeBundle> held{bundle_create()};
};

TEST_F(Bundle, getAfterAddIsTheValue) {
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(bundle_add_str(held.get(), "first", "one"), 0);
    EXPECT_EQ(bundle_add(held.get(), "second", ""), 0);
    EXPECT_EQ(valueOf("first"), "one");
    EXPECT_EQ(valueOf("second"), "");
}

TEST_F(Bundle, addOfAKeyThatIsThereIsRefusedAndKeepsTheValue) {
    ASSERT_EQ(bundle_add_str(held.get(), "key", "first"), 0);
    EXPECT_LT(bundle_add_str(held.get(), "key", "second"), 0);
    EXPECT_LT(bundle_add(held.get(), "key", "second"), 0);
    EXPECT_EQ(valueOf("key"), "first");
}

TEST_F(Bundle, addOfANullOrAnEmptyKeyIsRefused) {
    EXPECT_LT(bundle_add_str(nullptr, "key", "value"), 0);
    EXPECT_LT(bundle_add_str(held.get(), nullptr, "value"), 0);
    EXPECT_LT(bundle_add_str(held.get(), "", "value"), 0);
    EXPECT_LT(bundle_add_str(held.get(), "key", nullptr), 0);
    EXPECT_EQ(valueOf("key"), "(none)");
}

TEST_F(Bundle, getOfAnUnknownKeyFailsAndLeavesThePointer) {
    std::string before = "before";
    char* value = before.data();
    EXPECT_LT(bundle_get_str(held.get(), "key", &value), 0);
    EXPECT_LT(bundle_get_str(nullptr, "key", &value), 0);
    EXPECT_LT(bundle_get_str(held.get(), nullptr, &value), 0);
    EXPECT_EQ(value, before.data());
}

TEST_F(Bundle, valueStaysWhileOthersAreAdded) {
    ASSERT_EQ(bundle_add_str(held.get(), "key", "value"), 0);
    char* value = nullptr;
    ASSERT_EQ(bundle_get_str(held.get(), "key", &value), 0);
    for (int other = 0; other < 100; ++other) {
        ASSERT_EQ(bundle_add_str(held.get(), std::to_string(other).c_str(), "other"), 0);
    }
    EXPECT_STREQ(value, "value");
}

TEST_F(Bundle, freeOfNullIsRefused) {
    EXPECT_LT(bundle_free(nullptr), 0);
}

TEST_F(Bundle, callThatIsToldToFailDoesSoOnce) {
    world->failOnce("bundle_create", -1, 1);
    EXPECT_EQ(bundle_create(), nullptr);
    world->failOnce("bundle_add_str", -9, 1);
    EXPECT_EQ(bundle_add_str(held.get(), "key", "value"), -9);
    EXPECT_EQ(valueOf("key"), "(none)");
    EXPECT_EQ(bundle_add_str(held.get(), "key", "value"), 0);
}

}  // namespace
}  // namespace vxcontract
