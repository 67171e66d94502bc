#include "common/json_reading.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>

namespace vxcommon {
namespace {

using Json = nlohmann::json;

std::string complaintOf(const std::function<void()>& reading) {
    try {
        reading();
    } catch (const WrongMember& wrong) {
        return wrong.member + " " + wrong.reason;
    }
    return "none";
}

TEST(MemberIfThere, onlyAnObjectHasMembers) {
    const Json object = {{"a", 1}};
    ASSERT_NE(memberIfThere(object, "a"), nullptr);
    EXPECT_EQ(*memberIfThere(object, "a"), 1);
    EXPECT_EQ(memberIfThere(object, "b"), nullptr);
    for (const Json& other : {Json(), Json(1), Json("a"), Json::array({1})}) {
        EXPECT_EQ(memberIfThere(other, "a"), nullptr) << other;
    }
}

TEST(WholeNumber, numberAtItsLimitsCountsAndOneBeyondDoesNot) {
    EXPECT_EQ(wholeNumber(Json(-2), -2, 3), -2);
    EXPECT_EQ(wholeNumber(Json(3U), -2, 3), 3);
    EXPECT_EQ(wholeNumber(Json(-3), -2, 3), std::nullopt);
    EXPECT_EQ(wholeNumber(Json(4), -2, 3), std::nullopt);
}

TEST(WholeNumber, unsignedNumberThatWouldWrapAndOtherValuesAreNone) {
    constexpr auto kLowest = std::numeric_limits<std::int64_t>::min();
    constexpr auto kHighest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(wholeNumber(Json(std::numeric_limits<std::uint64_t>::max()), kLowest, kHighest), std::nullopt);
    EXPECT_EQ(wholeNumber(Json(kHighest), kLowest, kHighest), kHighest);
    EXPECT_EQ(wholeNumber(Json(kLowest), kLowest, kHighest), kLowest);
    for (const Json& other : {Json(), Json(true), Json(1.0), Json("1")}) {
        EXPECT_EQ(wholeNumber(other, kLowest, kHighest), std::nullopt) << other;
    }
}

TEST(JsonReading, complaintNamesTheMemberAndWhatIsWrong) {
    const Json document = Json::parse(
        R"({"list": [1, 2, 3], "text": "a", "big": 4294967296, "part": 1.5, "line": "a\n", "flag": 1})");
    const auto of = [&document](const char* name) -> const Json& { return document.at(name); };
    EXPECT_EQ(complaintOf([&] { memberOf(document, "top", "absent"); }), "top > absent is missing");
    EXPECT_EQ(complaintOf([&] { expectObject(of("list"), ""); }), "the whole is a array, not an object");
    EXPECT_EQ(complaintOf([&] { expectArray(of("text"), "t"); }), "t is a string, not an array");
    EXPECT_EQ(complaintOf([&] { expectShortArray(of("list"), "l", 2); }), "l has 3 entries; 2 are allowed");
    EXPECT_EQ(complaintOf([&] { intIn(of("big"), "b"); }), "b is 4294967296, which does not fit an int");
    EXPECT_EQ(complaintOf([&] { intIn(of("part"), "p"); }), "p is a fraction, not a whole number");
    EXPECT_EQ(complaintOf([&] { numberBetween(of("flag"), "f", 2, 9); }), "f is 1, not from 2 to 9");
    EXPECT_EQ(complaintOf([&] { numberBetween(of("text"), "t", 2, 9); }), "t is string, not a whole number");
    EXPECT_EQ(complaintOf([&] { boolIn(of("flag"), "f"); }), "f is a number, not true or false");
    EXPECT_EQ(complaintOf([&] { stringIn(of("flag"), "f"); }), "f is a number, not a string");
    EXPECT_EQ(complaintOf([&] { visibleText(of("line"), entryOf("l", 1), 9); }),
              "l > entry 1 is no visible text of at most 9 bytes");
    EXPECT_EQ(complaintOf([&] {
                  expectOnly(Json{{"x", 1}}, "o", {"y"});
              }),
              "o > x is not a member that a profile has");
}

TEST(JsonReading, goodValuesAreRead) {
    EXPECT_EQ(intIn(Json(std::numeric_limits<int>::min()), "i"), std::numeric_limits<int>::min());
    EXPECT_EQ(numberBetween(Json(9), "n", 2, 9), 9);
    EXPECT_TRUE(boolIn(Json(true), "b"));
    EXPECT_EQ(visibleText(Json("Lobby"), "t", 5), "Lobby");
}

}  // namespace
}  // namespace vxcommon
