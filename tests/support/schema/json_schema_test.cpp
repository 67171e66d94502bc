#include "tests/support/schema/json_schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vxtest::JsonSchema;
using Json = nlohmann::json;

/// The violations of the schema by the value, or the reason why the schema cannot be read.
std::vector<std::string> complaints(const char* schema, const char* value) {
    const auto read = JsonSchema::read(Json::parse(schema));
    return read ? read->complaints(Json::parse(value)) : std::vector<std::string>{read.error()};
}

/// The reason why a schema cannot be read; empty if it can.
std::string faultOf(const char* schema) {
    const auto read = JsonSchema::read(Json::parse(schema));
    return read ? std::string() : read.error();
}

TEST(JsonSchemaTest, emptySchemaTakesEverything) {
    for (const char* const value : {"null", "1", "\"text\"", "[1, {}]", "{\"a\": 1}"}) {
        EXPECT_THAT(complaints("{}", value), IsEmpty()) << value;
    }
}

TEST(JsonSchemaTest, typeTakesItsOwnValuesAlone) {
    const std::vector<std::pair<const char*, const char*>> values = {
        {"array", "[]"},   {"boolean", "false"}, {"integer", "-3"},     {"null", "null"},
        {"number", "0.5"}, {"object", "{}"},     {"string", "\"text\""}};
    for (const auto& [type, own] : values) {
        for (const auto& [other, value] : values) {
            const bool fits =
                type == other || (std::string(type) == "number" && std::string(other) == "integer");
            const std::string schema = R"({"type": ")" + std::string(type) + "\"}";
            EXPECT_EQ(complaints(schema.c_str(), value).empty(), fits) << type << " and " << value;
        }
    }
    EXPECT_THAT(complaints(R"({"type": "boolean"})", "0"),
                ElementsAre("the whole: 0 is not of the type \"boolean\""));
}

TEST(JsonSchemaTest, numberThatIsWrittenWithAFractionIsNoInteger) {
    EXPECT_THAT(complaints(R"({"type": "integer"})", "2.0"),
                ElementsAre("the whole: 2.0 is not of the type \"integer\""));
    EXPECT_THAT(complaints(R"({"type": "number"})", "2"), IsEmpty());
}

TEST(JsonSchemaTest, oneOfSeveralTypesIsEnough) {
    EXPECT_THAT(complaints(R"({"type": ["string", "null"]})", "null"), IsEmpty());
    EXPECT_THAT(complaints(R"({"type": ["string", "null"]})", "\"text\""), IsEmpty());
    EXPECT_THAT(complaints(R"({"type": ["string", "null"]})", "1"),
                ElementsAre("the whole: 1 is not of the type [\"string\",\"null\"]"));
}

TEST(JsonSchemaTest, valueOutsideTheChoiceIsRefused) {
    EXPECT_THAT(complaints(R"({"enum": ["a", 1]})", "1"), IsEmpty());
    EXPECT_THAT(complaints(R"({"enum": ["a", 1]})", "\"b\""),
                ElementsAre("the whole: \"b\" is none of [\"a\",1]"));
    EXPECT_THAT(complaints(R"({"const": 1})", "1"), IsEmpty());
    EXPECT_THAT(complaints(R"({"const": 1})", "true"), ElementsAre("the whole: true is not 1"));
    EXPECT_THAT(complaints(R"({"const": 1})", "\"1\""), ElementsAre("the whole: \"1\" is not 1"));
}

TEST(JsonSchemaTest, boundsBelongToWhatTheyBound) {
    const char* const schema = R"({"minimum": 0, "maximum": 100})";
    for (const char* const value : {"0", "100", "0.5", "\"text\"", "null"}) {
        EXPECT_THAT(complaints(schema, value), IsEmpty()) << value;
    }
    EXPECT_THAT(complaints(schema, "-1"), ElementsAre("the whole: -1 is less than 0"));
    EXPECT_THAT(complaints(schema, "100.5"), ElementsAre("the whole: 100.5 is more than 100"));
}

TEST(JsonSchemaTest, patternIsLookedForAnywhereInAText) {
    EXPECT_THAT(complaints(R"({"pattern": "b+"})", "\"abbc\""), IsEmpty());
    EXPECT_THAT(complaints(R"({"pattern": "^[0-9]{2}$"})", "12"), IsEmpty());
    EXPECT_THAT(complaints(R"({"pattern": "^[0-9]{2}$"})", "\"123\""),
                ElementsAre("the whole: \"123\" does not match ^[0-9]{2}$"));
}

TEST(JsonSchemaTest, memberOfAnObjectIsJudgedByItsOwnSchema) {
    const char* const schema =
        R"({"properties": {"a": {"type": "integer"}, "b": {"properties": {"c": {"const": 1}}}}})";
    EXPECT_THAT(complaints(schema, R"({"a": 1, "b": {"c": 1}, "more": 2})"), IsEmpty());
    EXPECT_THAT(complaints(schema, "[1]"), IsEmpty());
    EXPECT_THAT(complaints(schema, R"({"a": "1", "b": {"c": 2}})"),
                ElementsAre("/a: \"1\" is not of the type \"integer\"", "/b/c: 2 is not 1"));
}

TEST(JsonSchemaTest, missingAndUnknownMembersAreRefused) {
    const char* const schema =
        R"({"required": ["a", "b"], "properties": {"a": {}}, "additionalProperties": false})";
    EXPECT_THAT(
        complaints(schema, R"({"a": 1, "c": 2})"),
        ElementsAre("the whole: the member \"b\" is missing", "the whole: the member \"c\" is not known"));
    EXPECT_THAT(complaints(schema, "1"), IsEmpty());
}

TEST(JsonSchemaTest, everyItemIsJudged) {
    EXPECT_THAT(complaints(R"({"items": {"type": "string"}})", R"(["a", "b"])"), IsEmpty());
    EXPECT_THAT(complaints(R"({"items": {"type": "string"}})", R"(["a", 1, null])"),
                ElementsAre("/1: 1 is not of the type \"string\"", "/2: null is not of the type \"string\""));
}

TEST(JsonSchemaTest, referenceStandsForItsDefinition) {
    const char* const schema =
        R"({"definitions": {"name": {"type": "string"}},
            "properties": {"a": {"$ref": "#/definitions/name", "description": "A name"}}})";
    EXPECT_THAT(complaints(schema, R"({"a": "text"})"), IsEmpty());
    EXPECT_THAT(complaints(schema, R"({"a": 1})"), ElementsAre("/a: 1 is not of the type \"string\""));
}

TEST(JsonSchemaTest, definitionThatHoldsItselfInAMemberIsFollowedIntoTheValue) {
    const char* const schema =
        R"({"definitions": {"list": {"required": ["here"], "properties": {"next": {"$ref": "#/definitions/list"}}}},
            "oneOf": [{"$ref": "#/definitions/list"}]})";
    EXPECT_THAT(complaints(schema, R"({"here": 1, "next": {"here": 2}})"), IsEmpty());
    EXPECT_THAT(complaints(schema, R"({"here": 1, "next": {}})"),
                ElementsAre("the whole: fits none of the forms: [0] /next: the member \"here\" is missing;"));
}

TEST(JsonSchemaTest, exactlyOneFormHasToFit) {
    const char* const schema = R"({"oneOf": [{"minimum": 10}, {"maximum": 20}]})";
    EXPECT_THAT(complaints(schema, "5"), IsEmpty());
    EXPECT_THAT(complaints(schema, "25"), IsEmpty());
    EXPECT_THAT(complaints(schema, "15"), ElementsAre("the whole: fits 2 forms instead of one"));
    EXPECT_THAT(
        complaints(R"({"oneOf": [{"const": 1}, {"const": 2}]})", "3"),
        ElementsAre(
            "the whole: fits none of the forms: [0] the whole: 3 is not 1; [1] the whole: 3 is not 2;"));
}

TEST(JsonSchemaTest, unknownKeywordIsRefusedWithItsPlace) {
    EXPECT_EQ(faultOf(R"({"minLength": 1})"), "#: the keyword \"minLength\" is not known");
    EXPECT_EQ(faultOf(R"({"properties": {"a": {"format": "date"}}})"),
              "#/properties/a: the keyword \"format\" is not known");
    EXPECT_EQ(faultOf(R"({"items": {"not": {}}})"), "#/items: the keyword \"not\" is not known");
    EXPECT_EQ(faultOf(R"({"oneOf": [{}, {"anyOf": []}]})"), "#/oneOf/1: the keyword \"anyOf\" is not known");
    EXPECT_EQ(faultOf(R"({"definitions": {"a": {"if": {}}}})"),
              "#/definitions/a: the keyword \"if\" is not known");
}

TEST(JsonSchemaTest, keywordThatIsUsedWronglyIsRefused) {
    EXPECT_EQ(faultOf(R"({"type": "text"})"), "#: \"type\" needs the name of a type, or a list of them");
    EXPECT_EQ(faultOf(R"({"type": []})"), "#: \"type\" needs the name of a type, or a list of them");
    EXPECT_EQ(faultOf(R"({"pattern": "["})"), "#: \"pattern\" needs a regular expression");
    EXPECT_EQ(faultOf(R"({"enum": []})"), "#: \"enum\" needs a list of values");
    EXPECT_EQ(faultOf(R"({"minimum": "0"})"), "#: \"minimum\" needs a number");
    EXPECT_EQ(faultOf(R"({"required": [1]})"), "#: \"required\" needs a list of texts");
    EXPECT_EQ(faultOf(R"({"items": [{}]})"), "#: \"items\" needs one schema");
    EXPECT_EQ(faultOf(R"({"additionalProperties": {}})"), "#: \"additionalProperties\" needs false");
    EXPECT_EQ(faultOf(R"({"properties": {"a": true}})"), "#/properties/a: is no schema");
    EXPECT_EQ(faultOf("[]"), "#: is no schema");
}

TEST(JsonSchemaTest, referenceThatCannotBeFollowedIsRefused) {
    EXPECT_EQ(faultOf(R"({"$ref": "#/definitions/none"})"),
              "#: refers to #/definitions/none, which is not there");
    EXPECT_EQ(faultOf(R"({"$ref": "other.json"})"), "#: \"$ref\" needs the text \"#/definitions/NAME\"");
    EXPECT_EQ(
        faultOf(
            R"({"definitions": {"a": {}}, "properties": {"b": {"$ref": "#/definitions/a", "type": "null"}}})"),
        "#/properties/b: a rule stands beside \"$ref\"");
    EXPECT_EQ(faultOf(R"({"items": {"definitions": {}}})"),
              "#/items: \"definitions\" stands at the top alone");
}

TEST(JsonSchemaTest, definitionThatOnlyRefersToItselfIsRefused) {
    EXPECT_EQ(
        faultOf(
            R"({"definitions": {"a": {"oneOf": [{"$ref": "#/definitions/b"}]}, "b": {"$ref": "#/definitions/a"}}})"),
        "#/definitions/a: refers to itself");
}

}  // namespace
