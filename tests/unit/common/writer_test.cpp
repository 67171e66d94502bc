#include "common/writer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <type_traits>

namespace vxcommon {
namespace {

using Json = nlohmann::ordered_json;

template <class Text>
constexpr bool kCanBeWritten = requires(Writer writer, Text text) {
    writer.write(text);
};
template <class Text>
constexpr bool kCanBeALine = requires(Writer writer, Text text) {
    writer.line(text);
};

static_assert(!kCanBeWritten<std::string> && !kCanBeALine<std::string>);
static_assert(!kCanBeWritten<std::string_view> && !kCanBeALine<std::string_view>);
static_assert(!kCanBeWritten<const char*> && !kCanBeALine<const char*>);
static_assert(!kCanBeWritten<Json> && !kCanBeALine<Json>);
static_assert(kCanBeWritten<Printable> && kCanBeALine<Printable> && kCanBeALine<JsonText>);

TEST(Writer, textsAndLinesAndDocumentsStandInTheirOrder) {
    std::ostringstream stream;
    Writer writer(stream);
    writer.write("a ");
    writer.line(printable("b\n"));
    writer.line(JsonText(Json{{"c", 1}}));
    EXPECT_EQ(stream.str(), "a b\\x0a\n{\"c\":1}\n");
}

TEST(JsonText, deceptiveCharactersAreEscapedAndMeanTheSame) {
    const Json document = {{"a\u202e", "\u009b\x7f\u2028\U000e0041\u00fc"}};
    const std::string shown = JsonText(document, 2).text();
    EXPECT_EQ(shown, "{\n  \"a\\u202e\": \"\\u009b\\u007f\\u2028\\udb40\\udc41\u00fc\"\n}");
    EXPECT_EQ(Json::parse(shown), document);
}

TEST(JsonText, bytesThatAreNoUtf8AreNamed) {
    const Json document = {{"name\xff", {{"list", {"caf\xe9", 1, "\u00e9\u202e"}}}}};
    const std::string shown = JsonText(document).text();
    EXPECT_EQ(shown, "{\"name\\\\xff\":{\"list\":[\"caf\\\\xe9\",1,\"\u00e9\\u202e\"]}}");
    EXPECT_EQ(Json::parse(shown).at("name\\xff").at("list").at(0), "caf\\xe9");
}

TEST(JsonText, namesThatDifferInBytesThatAreNoUtf8StayApart) {
    const Json document = {{"a\xfe", 1}, {"a\xff", 2}};
    EXPECT_EQ(JsonText(document).text(), "{\"a\\\\xfe\":1,\"a\\\\xff\":2}");
}

}  // namespace
}  // namespace vxcommon
