#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <tl/expected.hpp>
#include <vector>

namespace vxtest {

/// A JSON schema (draft 07), of those keywords that our schemas use. What it does not know it refuses, so
/// that no rule of a schema goes unchecked.
class JsonSchema {
 public:
    /// Reads a schema. Errors: a sentence about the first keyword that is unknown, is used wrongly or refers
    /// to nothing, with its place in the schema.
    static tl::expected<JsonSchema, std::string> read(nlohmann::json document);

    /// What the schema has against the value: a sentence each, with the place in the value. Empty when it
    /// fits.
    std::vector<std::string> complaints(const nlohmann::json& value) const;

 private:
    explicit JsonSchema(nlohmann::json document) : document_(std::move(document)) {}

    nlohmann::json document_;
};

}  // namespace vxtest
