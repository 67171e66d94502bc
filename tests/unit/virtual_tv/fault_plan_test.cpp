#include "virtual_tv/television/fault_plan.h"

#include <gtest/gtest.h>

#include "test_television.h"

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

    /// "x" for each call on which a fault acts, "." for the others.
    std::string pattern(int calls) {
        std::string result;
        for (int i = 0; i < calls; ++i) {
            result += plan_.onCall(kCall).value() ? 'x' : '.';
        }
        return result;
    }

    ErrorCode refusalOf(const Fault& fault) {
        const auto added = plan_.add(fault);
        EXPECT_FALSE(added);
        EXPECT_TRUE(plan_.list().value().empty());
        return added ? ErrorCode::CannotRun : added.error().code;
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
