#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <tl/expected.hpp>
#include <vector>

namespace vxtest {

/// A JSON schema (draft 07) with the keywords that our schemas use. Unknown keywords are refused, so that no
/// rule stays unchecked.
class JsonSchema {
 public:
    /// Reads a schema. Errors: a sentence about the first keyword that is unknown, is used wrongly or refers
    /// to nothing, with its place in the schema.
    static tl::expected<JsonSchema, std::string> read(nlohmann::json document);

    /// The violations of the schema by the value, each a sentence with the place in the value. Empty if the
    /// value is valid.
    std::vector<std::string> complaints(const nlohmann::json& value) const;

 private:
    explicit JsonSchema(nlohmann::json document) : document_(std::move(document)) {}

    nlohmann::json document_;
};

}  // namespace vxtest
