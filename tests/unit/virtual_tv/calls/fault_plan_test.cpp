#include "virtual_tv/calls/fault_plan.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

constexpr const char* kCall = "vconf_set_int";

class FaultPlanTest : public testing::Test {
 protected:
    static Fault failing(std::int64_t nth, bool fromThenOn) {
        Fault fault;
        fault.call = kCall;
        fault.nth = nth;
        fault.fromThenOn = fromThenOn;
        fault.status = -5;
        return fault;
    }

    /// "x" for each call with a fault, "." for the others.
    std::string pattern(int calls) {
        std::string result;
        for (int i = 0; i < calls; ++i) {
            result += plan_.onCall(kCall).value() ? 'x' : '.';
        }
        return result;
    }

    static Fault failing(std::int64_t nth, bool fromThenOn, const std::string& key) {
        Fault fault = failing(nth, fromThenOn);
        fault.key = key;
        return fault;
    }

    /// The same for calls with these first arguments.
    std::string pattern(const std::vector<std::string_view>& keys) {
        std::string result;
        for (const std::string_view key : keys) {
            result += plan_.onCall(kCall, key).value() ? 'x' : '.';
        }
        return result;
    }

    Error refusal(const Fault& fault) {
        const auto added = plan_.add(fault);
        EXPECT_FALSE(added);
        EXPECT_TRUE(plan_.list().value().empty());
        return added ? Error{} : added.error();
    }

    ErrorCode refusalOf(const Fault& fault) { return refusal(fault).code; }

    /// Makes the plan of an earlier version, in which faults have no key, with one fault.
    void makeOld() {
        ASSERT_TRUE(television_.database().write([](SQLite::Database& connection) -> Result<void> {
            connection.exec("DROP TABLE faults");
            connection.exec(
                "CREATE TABLE faults (id INTEGER PRIMARY KEY AUTOINCREMENT, call TEXT NOT NULL, nth INTEGER "
                "NOT NULL, from_then_on INTEGER NOT NULL, status INTEGER, delay_ms INTEGER, seen INTEGER NOT "
                "NULL)");
            connection.exec(
                "INSERT INTO faults (call, nth, from_then_on, status, delay_ms, seen) VALUES "
                "('vconf_set_int', 3, 0, -5, NULL, 1)");
            return {};
        }));
    }

    test::TestFolder folder_;
    std::filesystem::path place_ = folder_.path() / "tv";
    Television television_ = test::makeTelevision(place_);
    FaultPlan plan_ = television_.faults();
};

TEST_F(FaultPlanTest, emptyPlanNeverActs) {
    EXPECT_EQ("...", pattern(3));
}

TEST_F(FaultPlanTest, nthActsOnce) {
    ASSERT_TRUE(plan_.add(failing(2, false)));
    EXPECT_EQ(".x..", pattern(4));
    EXPECT_EQ(4, plan_.list().value().front().seen);
}

TEST_F(FaultPlanTest, fromThenOnActsOnEveryLaterCall) {
    ASSERT_TRUE(plan_.add(failing(3, true)));
    EXPECT_EQ("..xxx", pattern(5));
}

TEST_F(FaultPlanTest, countBeginsWhenTheFaultIsAdded) {
    EXPECT_EQ("..", pattern(2));
    ASSERT_TRUE(plan_.add(failing(1, false)));
    EXPECT_EQ("x.", pattern(2));
}

TEST_F(FaultPlanTest, otherCallsAreNotCounted) {
    ASSERT_TRUE(plan_.add(failing(1, false)));
    EXPECT_FALSE(plan_.onCall("vconf_get_int").value());
    EXPECT_EQ("x", pattern(1));
}

TEST_F(FaultPlanTest, callsOfTwoProcessesAreCountedTogether) {
    ASSERT_TRUE(plan_.add(failing(2, false)));
    EXPECT_EQ(0, test::inChild([this] {
                  const Result<Television> mine = Television::open(place_);
                  return mine && !mine->faults().onCall(kCall).value();
              }));
    EXPECT_EQ("x.", pattern(2));
}

TEST_F(FaultPlanTest, severalFaultsAddUp) {
    ASSERT_TRUE(plan_.add(failing(1, false)));
    Fault late;
    late.call = kCall;
    late.delayMs = 30;
    ASSERT_TRUE(plan_.add(late));
    ASSERT_TRUE(plan_.add(late));
    const auto action = plan_.onCall(kCall).value();
    ASSERT_TRUE(action);
    EXPECT_EQ(1, action->id);
    EXPECT_EQ(-5, action->status);
    EXPECT_EQ(60, action->delayMs);
}

TEST_F(FaultPlanTest, clearRemovesAllAndIdsAreNotUsedAgain) {
    EXPECT_EQ(1, plan_.add(failing(1, true)).value());
    EXPECT_EQ(2, plan_.add(failing(1, true)).value());
    EXPECT_EQ(2, plan_.clear().value());
    EXPECT_EQ(".", pattern(1));
    EXPECT_EQ(3, plan_.add(failing(1, true)).value());
}

TEST_F(FaultPlanTest, keyCountsAndHitsOnlyCallsWithThatFirstArgument) {
    ASSERT_TRUE(plan_.add(failing(2, false, "volume")));
    EXPECT_EQ("....x..", pattern({"volum", "volume", "volumes", "", "volume", "volume", "other"}));
    EXPECT_EQ(3, plan_.list().value().front().seen);
    EXPECT_EQ("volume", plan_.list().value().front().key);
}

TEST_F(FaultPlanTest, keyFromThenOnLeavesOtherFirstArgumentsAlone) {
    ASSERT_TRUE(plan_.add(failing(1, true, "volume")));
    EXPECT_EQ("x.x", pattern({"volume", "other", "volume"}));
}

TEST_F(FaultPlanTest, keyIsNeverMetByACallWithoutATextAsFirstArgument) {
    ASSERT_TRUE(plan_.add(failing(1, true, "volume")));
    EXPECT_EQ("...", pattern(3));
    EXPECT_EQ(0, plan_.list().value().front().seen);
}

TEST_F(FaultPlanTest, faultWithoutKeyCountsCallsOfEveryFirstArgument) {
    ASSERT_TRUE(plan_.add(failing(3, false)));
    ASSERT_TRUE(plan_.add(failing(1, false, "b")));
    EXPECT_EQ(".xx", pattern({"a", "b", "c"}));
}

TEST_F(FaultPlanTest, planMadeBeforeKeysIsReadCountedAndAddedTo) {
    makeOld();
    ASSERT_EQ(1U, plan_.list().value().size());
    EXPECT_FALSE(plan_.list().value().front().key);
    EXPECT_EQ(".", pattern({"volume"}));
    ASSERT_TRUE(plan_.add(failing(2, false, "volume")));
    EXPECT_EQ("x.x", pattern({"other", "volume", "volume"}));
    EXPECT_EQ(5, plan_.list().value().front().seen);
    EXPECT_EQ("volume", plan_.list().value().back().key);
    EXPECT_EQ(2, plan_.list().value().back().seen);
}

TEST_F(FaultPlanTest, keyIsRefusedForACallWhoseFirstArgumentIsNoText) {
    Fault numbered = failing(1, false, "6");
    numbered.call = "system_info_get_value_int";
    EXPECT_EQ(ErrorCode::BadArgument, refusalOf(numbered));
    EXPECT_EQ(
        "the first argument of system_info_get_value_int is no text, so no key can choose among its "
        "calls; leave --key out",
        refusal(numbered).sentence);
    Fault bare = failing(1, false, "x");
    bare.call = "tvtimer_init";
    EXPECT_EQ(
        "the first argument of tvtimer_init is no text, so no key can choose among its calls; leave "
        "--key out",
        refusal(bare).sentence);
    EXPECT_EQ("a key cannot be empty; give a text, or leave --key out for every call",
              refusal(failing(1, false, "")).sentence);
}

TEST_F(FaultPlanTest, addRefusesWhatMakesNoSense) {
    Fault unknown = failing(1, false);
    unknown.call = "vconf_set_float";
    EXPECT_EQ(ErrorCode::UnknownCall, refusalOf(unknown));
    Fault logger = failing(1, false);
    logger.call = "__dlog_print";
    EXPECT_EQ(ErrorCode::UnknownCall, refusalOf(logger));
    EXPECT_EQ(ErrorCode::OutOfRange, refusalOf(failing(0, false)));
    Fault early = failing(1, false);
    early.delayMs = -1;
    EXPECT_EQ(ErrorCode::OutOfRange, refusalOf(early));
    Fault nothing = failing(1, false);
    nothing.status.reset();
    EXPECT_EQ(ErrorCode::BadArgument, refusalOf(nothing));
    Fault promised = failing(1, false);
    promised.call = "CSourceAPI::Get";
    EXPECT_EQ(ErrorCode::BadArgument, refusalOf(promised));
}

}  // namespace
}  // namespace vxtv
