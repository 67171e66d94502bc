// What every settings store must do.

#include <climits>
#include <thread>
#include <vector>

#include "platform/vconf.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using Vconf = ContractTest;

std::string read(const std::string& key) {
    const OwnedString text(vconf_get_str(key.c_str()));
    return text == nullptr ? "(none)" : text.get();
}

TEST_F(Vconf, getIntAfterSetIntIsTheValue) {
    for (const int value : {0, 1, -1, INT_MAX, INT_MIN}) {
        int read = 77;
        EXPECT_EQ(vconf_set_int(world->intKey().c_str(), value), 0);
        EXPECT_EQ(vconf_get_int(world->intKey().c_str(), &read), 0);
        EXPECT_EQ(read, value);
    }
}

TEST_F(Vconf, getBoolAfterSetBoolIsTheValue) {
    for (const int value : {0, 1, 0}) {
        int read = 77;
        EXPECT_EQ(vconf_set_bool(world->boolKey().c_str(), value), 0);
        EXPECT_EQ(vconf_get_bool(world->boolKey().c_str(), &read), 0);
        EXPECT_EQ(read, value);
    }
}

TEST_F(Vconf, setBoolOfAnotherNumberIsRefusedAndChangesNothing) {
    ASSERT_EQ(vconf_set_bool(world->boolKey().c_str(), 1), 0);
    EXPECT_NE(vconf_set_bool(world->boolKey().c_str(), 2), 0);
    EXPECT_NE(vconf_set_bool(world->boolKey().c_str(), -1), 0);
    int read = 77;
    EXPECT_EQ(vconf_get_bool(world->boolKey().c_str(), &read), 0);
    EXPECT_EQ(read, 1);
}

TEST_F(Vconf, getStrAfterSetStrIsTheValue) {
    for (const std::string value : {"", "plain", "two\nlines\n", "quote ' and \"", "h\u00f4tel"}) {
        EXPECT_EQ(vconf_set_str(world->stringKey().c_str(), value.c_str()), 0);
        EXPECT_EQ(read(world->stringKey()), value);
    }
}

TEST_F(Vconf, longStringIsKeptWhole) {
    const std::string value(100000, 'x');
    EXPECT_EQ(vconf_set_str(world->stringKey().c_str(), value.c_str()), 0);
    EXPECT_EQ(read(world->stringKey()), value);
}

TEST_F(Vconf, getOfAnUnknownKeyFailsAndLeavesTheValue) {
    int value = 77;
    EXPECT_NE(vconf_get_int("db/no/such/key", &value), 0);
    EXPECT_NE(vconf_get_bool("db/no/such/key", &value), 0);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(vconf_get_str("db/no/such/key"), nullptr);
}

TEST_F(Vconf, setOfAnUnknownKeyFailsAndMakesNone) {
    EXPECT_NE(vconf_set_int("db/no/such/key", 1), 0);
    EXPECT_NE(vconf_set_bool("db/no/such/key", 1), 0);
    EXPECT_NE(vconf_set_str("db/no/such/key", "x"), 0);
    int value = 77;
    EXPECT_NE(vconf_get_int("db/no/such/key", &value), 0);
    EXPECT_EQ(vconf_get_str("db/no/such/key"), nullptr);
}

TEST_F(Vconf, getOfAnotherTypeFailsAndLeavesTheValue) {
    int value = 77;
    EXPECT_NE(vconf_get_int(world->boolKey().c_str(), &value), 0);
    EXPECT_NE(vconf_get_int(world->stringKey().c_str(), &value), 0);
    EXPECT_NE(vconf_get_bool(world->intKey().c_str(), &value), 0);
    EXPECT_NE(vconf_get_bool(world->stringKey().c_str(), &value), 0);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(vconf_get_str(world->intKey().c_str()), nullptr);
    EXPECT_EQ(vconf_get_str(world->boolKey().c_str()), nullptr);
}

TEST_F(Vconf, setOfAnotherTypeFailsAndChangesNothing) {
    ASSERT_EQ(vconf_set_int(world->intKey().c_str(), 5), 0);
    ASSERT_EQ(vconf_set_bool(world->boolKey().c_str(), 1), 0);
    ASSERT_EQ(vconf_set_str(world->stringKey().c_str(), "kept"), 0);
    EXPECT_NE(vconf_set_str(world->intKey().c_str(), "6"), 0);
    EXPECT_NE(vconf_set_bool(world->intKey().c_str(), 1), 0);
    EXPECT_NE(vconf_set_int(world->boolKey().c_str(), 0), 0);
    EXPECT_NE(vconf_set_int(world->stringKey().c_str(), 0), 0);
    int value = 0;
    EXPECT_EQ(vconf_get_int(world->intKey().c_str(), &value), 0);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(vconf_get_bool(world->boolKey().c_str(), &value), 0);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(read(world->stringKey()), "kept");
}

TEST_F(Vconf, threadsAtOnceLoseNoWholeValue) {
    std::vector<std::thread> writers;
    const std::string key = world->stringKey();
    ASSERT_EQ(vconf_set_str(key.c_str(), "0000000000"), 0);
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        writers.emplace_back([&, letter] {
            for (int round = 0; round < 50; ++round) {
                EXPECT_EQ(vconf_set_str(key.c_str(), std::string(10, letter).c_str()), 0);
                const std::string seen = read(key);
                EXPECT_EQ(seen, std::string(10, seen.at(0)));
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
}

TEST_F(Vconf, callThatIsToldToFailDoesSoOnceAndDoesNoWork) {
    ASSERT_EQ(vconf_set_int(world->intKey().c_str(), 1), 0);
    world->failOnce("vconf_set_int", -9, 2);
    EXPECT_EQ(vconf_set_int(world->intKey().c_str(), 2), 0);
    EXPECT_EQ(vconf_set_int(world->intKey().c_str(), 3), -9);
    int value = 0;
    EXPECT_EQ(vconf_get_int(world->intKey().c_str(), &value), 0);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(vconf_set_int(world->intKey().c_str(), 4), 0);

    world->failOnce("vconf_get_str", 1, 1);
    EXPECT_EQ(vconf_get_str(world->stringKey().c_str()), nullptr);
    EXPECT_NE(read(world->stringKey()), "(none)");
}

}  // namespace
}  // namespace vxcontract
