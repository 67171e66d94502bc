#include "tests/unit/cloning_app/json_schema.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/support/schema/json_schema.h"

namespace {

using Json = nlohmann::json;

const vxtest::JsonSchema& publishedSchema() {
    static const auto schema = vxtest::JsonSchema::read(Json::parse(std::ifstream(VX_JSON_SCHEMA)));
    return schema ? *schema : throw std::runtime_error(VX_JSON_SCHEMA ", " + schema.error());
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
    std::string complaint;
    for (const std::string& each : publishedSchema().complaints(line)) {
        complaint += "\n" + each;
    }
    return complaint.empty() ? complaint : line.dump() + " does not fit:" + complaint;
}
