#include "common/strict_json.h"

#include <gmock/gmock.h>

namespace vxcommon {
namespace {

using testing::HasSubstr;

constexpr JsonLimits kLimits{3, 10};

std::string problemWith(const std::string& text) {
    try {
        parseStrictly(text, kLimits);
    } catch (const WrongMember& wrong) {
        return wrong.member + " " + wrong.reason;
    } catch (const nlohmann::json::parse_error&) {
        return "no JSON";
    }
    return "";
}

TEST(StrictJson, goodTextIsParsed) {
    EXPECT_EQ(parseStrictly(R"({"a":[1,"x"]})", kLimits).at("a").at(0), 1);
    EXPECT_EQ(problemWith(R"({"a":{"b":1},"c":{"b":1}})"), "");
}

TEST(StrictJson, whatIsNoJsonIsRefused) {
    for (const char* const text :
         {"", "{", "{} {}", "{'a':1}", "{\"a\":\"\xff\"}", "nul", "[1,]", "{\"a\":1}x"}) {
        EXPECT_EQ(problemWith(text), "no JSON") << text;
    }
}

TEST(StrictJson, twinNamesAreRefusedInAnyLayer) {
    EXPECT_EQ(problemWith(R"({"a":1,"a":2})"), "a is given twice");
    EXPECT_EQ(problemWith(R"([{"a":{"b":1,"\u0062":2}}])"), "b is given twice");
}

TEST(StrictJson, moreThanTheLimitsIsRefused) {
    EXPECT_EQ(problemWith("[[[1]]]"), "");
    EXPECT_EQ(problemWith("[[[[]]]]"), "the whole has more than 3 layers");
    EXPECT_EQ(problemWith("[1,2,3,4,5,6,7,8,9,10,11]"), "the whole has more than 10 names and values");
    EXPECT_THAT(problemWith(std::string(1'000'000, '[')), HasSubstr("layers"));
}

TEST(StrictJson, valuesOfEveryKindStandWhereTheTextHasThem) {
    const char* const text = R"({"a":[1,-2,3.5,"x",true,null,{},[]],"b":{"c":{"d":1}},"e":[[2],{"f":3}]})";
    EXPECT_EQ(parseStrictly(text, {}), nlohmann::json::parse(text));
    EXPECT_EQ(parseStrictly("7", {}), 7);
}

TEST(StrictJson, numberThatIsTooLargeAndANulAreRefused) {
    EXPECT_EQ(problemWith(R"({"a":1e999})"), "the whole holds a number that is too large");
    EXPECT_EQ(problemWith(std::string("{}\0", 3)), "the whole holds a NUL");
}

TEST(StrictJson, parsingEndsAsSoonAsItShallStop) {
    std::string many = "[0";
    for (int count = 0; count < 10'000; ++count) {
        many += ",0";
    }
    int questions = 0;
    EXPECT_THROW(parseStrictly(many, {}, [&questions] { return ++questions == 2; }), ParsingStopped);
    EXPECT_EQ(questions, 2);
    EXPECT_THROW(parseStrictly(many, {}), nlohmann::json::parse_error);
    EXPECT_NO_THROW(parseStrictly(many + "]", {}, [] { return false; }));
}

}  // namespace
}  // namespace vxcommon
