#include "tests/unit/cloning_app/json_schema.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <valijson/adapters/nlohmann_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validation_results.hpp>
#include <valijson/validator.hpp>

namespace {

using Json = nlohmann::json;
using Adapter = valijson::adapters::NlohmannJsonAdapter;

const valijson::Schema& publishedSchema() {
    static const auto schema = [] {
        std::ifstream file(VX_JSON_SCHEMA);
        const Json document = Json::parse(file);
        auto parsed = std::make_unique<valijson::Schema>();
        valijson::SchemaParser().populateSchema(Adapter(document), *parsed);
        return parsed;
    }();
    return *schema;
}

}  // namespace

std::vector<Json> jsonLines(const std::string& text) {
    std::vector<Json> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(Json::parse(line, nullptr, false));
        EXPECT_TRUE(lines.back().is_object()) << line;
    }
    return lines;
}

std::string schemaComplaint(const Json& line) {
    valijson::ValidationResults results;
    if (valijson::Validator().validate(publishedSchema(), Adapter(line), &results)) {
        return {};
    }
    std::string complaint = line.dump() + " does not fit:";
    for (valijson::ValidationResults::Error error; results.popError(error);) {
        complaint += " " + error.description;
    }
    return complaint;
}
