#include "cloning_app/package/strict_json.h"

#include <gmock/gmock.h>

namespace vxclone {
namespace {

using testing::HasSubstr;

constexpr JsonLimits kLimits{3, 10};

std::string problemWith(const std::string& text) {
    const auto parsed = parseStrictly(text, kLimits);
    return parsed ? "" : parsed.error();
}

TEST(StrictJson, goodTextIsParsed) {
    EXPECT_EQ(parseStrictly(R"({"a":[1,"x"]})", kLimits)->at("a").at(0), 1);
    EXPECT_EQ(problemWith(R"({"a":{"b":1},"c":{"b":1}})"), "");
}

TEST(StrictJson, whatIsNoJsonIsRefused) {
    for (const char* const text :
         {"", "{", "{} {}", "{'a':1}", "{\"a\":\"\xff\"}", "nul", "[1,]", "{\"a\":1}x"}) {
        EXPECT_THAT(problemWith(text), HasSubstr("no JSON")) << text;
    }
}

TEST(StrictJson, twinNamesAreRefusedInAnyLayer) {
    EXPECT_THAT(problemWith(R"({"a":1,"a":2})"), HasSubstr("one name"));
    EXPECT_THAT(problemWith(R"([{"a":{"b":1,"\u0062":2}}])"), HasSubstr("one name"));
}

TEST(StrictJson, moreThanTheLimitsIsRefused) {
    EXPECT_EQ(problemWith("[[[1]]]"), "");
    EXPECT_THAT(problemWith("[[[[]]]]"), HasSubstr("more than"));
    EXPECT_THAT(problemWith("[1,2,3,4,5,6,7,8,9,10,11]"), HasSubstr("more than"));
    EXPECT_THAT(problemWith(std::string(1'000'000, '[')), HasSubstr("more than"));
}

}  // namespace
}  // namespace vxclone
