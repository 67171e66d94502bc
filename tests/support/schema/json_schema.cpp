#include "tests/support/schema/json_schema.h"

#include <algorithm>
#include <array>
#include <optional>
#include <regex>
#include <string_view>
#include <utility>

namespace vxtest {

namespace {

using Json = nlohmann::json;

constexpr std::string_view kDefinitions = "#/definitions/";

struct Type {
    std::string_view name;
    bool (*fits)(const Json& value);
};

bool isArray(const Json& value) {
    return value.is_array();
}

bool isBoolean(const Json& value) {
    return value.is_boolean();
}

/// Stricter than the standard, for which 2.0 is an integer, because other readers may not agree.
bool isInteger(const Json& value) {
    return value.is_number_integer();
}

bool isNull(const Json& value) {
    return value.is_null();
}

bool isNumber(const Json& value) {
    return value.is_number();
}

bool isObject(const Json& value) {
    return value.is_object();
}

bool isText(const Json& value) {
    return value.is_string();
}

constexpr std::array kTypes = {Type{"array", isArray}, Type{"boolean", isBoolean}, Type{"integer", isInteger},
                               Type{"null", isNull},   Type{"number", isNumber},   Type{"object", isObject},
                               Type{"string", isText}};

bool isList(const Json& argument) {
    return argument.is_array() && !argument.empty();
}

bool isAnything(const Json& /*argument*/) {
    return true;
}

bool isListOfTexts(const Json& argument) {
    return argument.is_array() && std::all_of(argument.begin(), argument.end(), isText);
}

bool isTypeName(const Json& argument) {
    return argument.is_string() && std::any_of(kTypes.begin(), kTypes.end(), [&argument](const Type& type) {
               return type.name == argument.get_ref<const std::string&>();
           });
}

bool isType(const Json& argument) {
    return isTypeName(argument) ||
           (isList(argument) && std::all_of(argument.begin(), argument.end(), isTypeName));
}

bool isPattern(const Json& argument) {
    if (!argument.is_string()) {
        return false;
    }
    try {
        static_cast<void>(std::regex(argument.get<std::string>()));
        return true;
    } catch (const std::regex_error&) {
        return false;
    }
}

bool isReference(const Json& argument) {
    return argument.is_string() && argument.get_ref<const std::string&>().rfind(kDefinitions, 0) == 0;
}

struct Keyword {
    std::string_view name;
    bool (*isUsedWell)(const Json& argument);
    const char* wanted;
};

constexpr std::array kKeywords = {
    Keyword{"$ref", isReference, "the text \"#/definitions/NAME\""},
    Keyword{"$schema", isText, "a text"},
    Keyword{"additionalProperties", [](const Json& argument) { return argument == false; }, "false"},
    Keyword{"const", isAnything, ""},
    Keyword{"definitions", isObject, "an object of schemas"},
    Keyword{"description", isText, "a text"},
    Keyword{"enum", isList, "a list of values"},
    Keyword{"items", isObject, "one schema"},
    Keyword{"maximum", isNumber, "a number"},
    Keyword{"minimum", isNumber, "a number"},
    Keyword{"oneOf", isList, "a list of schemas"},
    Keyword{"pattern", isPattern, "a regular expression"},
    Keyword{"properties", isObject, "an object of schemas"},
    Keyword{"required", isListOfTexts, "a list of texts"},
    Keyword{"title", isText, "a text"},
    Keyword{"type", isType, "the name of a type, or a list of them"}};

/// The member of an object, or an empty object.
const Json& partOf(const Json& schema, const char* name) {
    static const Json none = Json::object();
    const auto found = schema.find(name);
    return found != schema.end() ? *found : none;
}

/// The schema that a reference names, or null.
const Json* findDefinition(const Json& document, const Json& reference) {
    const Json& definitions = partOf(document, "definitions");
    const auto found = definitions.find(reference.get_ref<const std::string&>().substr(kDefinitions.size()));
    return found != definitions.end() ? &*found : nullptr;
}

/// Finds what is wrong with a schema itself.
class Reading {
 public:
    explicit Reading(const Json& document) : document_(document) {}

    /// A sentence about the first fault of the schema at this place or below it.
    std::optional<std::string> faultOf(const Json& schema, const std::string& where) const {
        if (!schema.is_object()) {
            return where + ": is no schema";
        }
        for (const auto& [name, argument] : schema.items()) {
            if (auto fault = faultOfKeyword(schema, name, argument); !fault.empty()) {
                return where + ": " + fault;
            }
        }
        for (const char* const map : {"definitions", "properties"}) {
            for (const auto& [name, part] : partOf(schema, map).items()) {
                if (auto fault = faultOf(part, where + "/" + map + "/" + name)) {
                    return fault;
                }
            }
        }
        for (const auto& [place, form] : partOf(schema, "oneOf").items()) {
            if (auto fault = faultOf(form, where + "/oneOf/" + place)) {
                return fault;
            }
        }
        return schema.contains("items") ? faultOf(schema.at("items"), where + "/items") : std::nullopt;
    }

    /// Whether checking a value would never end, because a schema is applied again to the same value.
    bool endsNever(const Json& schema, std::size_t followed = 0) const {
        if (followed > partOf(document_, "definitions").size()) {
            return true;
        }
        if (schema.contains("$ref")) {
            return endsNever(*findDefinition(document_, schema.at("$ref")), followed + 1);
        }
        const Json& forms = partOf(schema, "oneOf");
        return std::any_of(forms.begin(), forms.end(),
                           [this, followed](const Json& form) { return endsNever(form, followed); });
    }

 private:
    std::string faultOfKeyword(const Json& schema, const std::string& name, const Json& argument) const {
        const auto* const known =
            std::find_if(kKeywords.begin(), kKeywords.end(),
                         [&name](const Keyword& keyword) { return keyword.name == name; });
        if (known == kKeywords.end()) {
            return "the keyword \"" + name + "\" is not known";
        }
        if (!known->isUsedWell(argument)) {
            return "\"" + name + "\" needs " + known->wanted;
        }
        if (name == "definitions" && &schema != &document_) {
            return "\"definitions\" stands at the top alone";
        }
        if (name == "$ref" && findDefinition(document_, argument) == nullptr) {
            return "refers to " + argument.get<std::string>() + ", which is not there";
        }
        // The standard ignores keywords beside a reference.
        if (name == "$ref" && schema.size() > 1 + schema.count("description")) {
            return "a rule stands beside \"$ref\"";
        }
        return {};
    }

    const Json& document_;
};

/// Checks values against the schemas of one document.
class Judgement {
 public:
    explicit Judgement(const Json& document) : document_(document) {}

    void judge(const Json& schema, const Json& value, const std::string& where) {
        if (schema.contains("$ref")) {
            judge(*findDefinition(document_, schema.at("$ref")), value, where);
            return;
        }
        judgeChoice(schema, value, where);
        judgeForms(schema, value, where);
        if (value.is_number()) {
            judgeNumber(schema, value, where);
        } else if (value.is_string() && schema.contains("pattern")) {
            const auto& pattern = schema.at("pattern").get_ref<const std::string&>();
            expect(std::regex_search(value.get_ref<const std::string&>(), std::regex(pattern)), where,
                   value.dump() + " does not match " + pattern);
        } else if (value.is_array() && schema.contains("items")) {
            for (const auto& [place, item] : value.items()) {
                judge(schema.at("items"), item, where + "/" + place);
            }
        } else if (value.is_object()) {
            judgeObject(schema, value, where);
        }
    }

    std::vector<std::string> take() { return std::move(complaints_); }

 private:
    void expect(bool good, const std::string& where, const std::string& complaint) {
        if (!good) {
            complaints_.push_back((where.empty() ? "the whole" : where) + ": " + complaint);
        }
    }

    void judgeChoice(const Json& schema, const Json& value, const std::string& where) {
        if (schema.contains("type")) {
            const Json& named = schema.at("type");
            expect(std::any_of(kTypes.begin(), kTypes.end(),
                               [&](const Type& type) {
                                   const bool wanted =
                                       named == type.name ||
                                       (named.is_array() &&
                                        std::find(named.begin(), named.end(), type.name) != named.end());
                                   return wanted && type.fits(value);
                               }),
                   where, value.dump() + " is not of the type " + named.dump());
        }
        if (schema.contains("enum")) {
            const Json& choice = schema.at("enum");
            expect(std::find(choice.begin(), choice.end(), value) != choice.end(), where,
                   value.dump() + " is none of " + choice.dump());
        }
        if (schema.contains("const")) {
            expect(value == schema.at("const"), where, value.dump() + " is not " + schema.at("const").dump());
        }
    }

    void judgeNumber(const Json& schema, const Json& value, const std::string& where) {
        if (schema.contains("minimum")) {
            expect(value >= schema.at("minimum"), where,
                   value.dump() + " is less than " + schema.at("minimum").dump());
        }
        if (schema.contains("maximum")) {
            expect(value <= schema.at("maximum"), where,
                   value.dump() + " is more than " + schema.at("maximum").dump());
        }
    }

    void judgeObject(const Json& schema, const Json& value, const std::string& where) {
        for (const Json& name : partOf(schema, "required")) {
            expect(value.contains(name.get_ref<const std::string&>()), where,
                   "the member " + name.dump() + " is missing");
        }
        const Json& properties = partOf(schema, "properties");
        for (const auto& [name, member] : value.items()) {
            if (properties.contains(name)) {
                judge(properties.at(name), member, where + "/" + name);
            } else {
                expect(!schema.contains("additionalProperties"), where,
                       "the member \"" + name + "\" is not known");
            }
        }
    }

    void judgeForms(const Json& schema, const Json& value, const std::string& where) {
        if (!schema.contains("oneOf")) {
            return;
        }
        std::size_t fitting = 0;
        std::string reasons;
        for (const auto& [place, form] : schema.at("oneOf").items()) {
            Judgement alone(document_);
            alone.judge(form, value, where);
            fitting += alone.complaints_.empty() ? 1U : 0U;
            for (const std::string& complaint : alone.complaints_) {
                reasons += " [" + place + "] " + complaint + ";";
            }
        }
        expect(fitting != 0, where, "fits none of the forms:" + reasons);
        expect(fitting <= 1, where, "fits " + std::to_string(fitting) + " forms instead of one");
    }

    const Json& document_;
    std::vector<std::string> complaints_;
};

}  // namespace

tl::expected<JsonSchema, std::string> JsonSchema::read(Json document) {
    const Reading reading(document);
    if (auto fault = reading.faultOf(document, "#")) {
        return tl::make_unexpected(std::move(*fault));
    }
    const Json& definitions = partOf(document, "definitions");
    for (const auto& [name, definition] : definitions.items()) {
        if (reading.endsNever(definition)) {
            return tl::make_unexpected("#/definitions/" + name + ": refers to itself");
        }
    }
    return JsonSchema(std::move(document));
}

std::vector<std::string> JsonSchema::complaints(const Json& value) const {
    Judgement judgement(document_);
    judgement.judge(document_, value, "");
    return judgement.take();
}

}  // namespace vxtest
