#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// The lines of a text, each parsed. A line that is not a JSON object fails the test.
std::vector<nlohmann::json> jsonLines(const std::string& text);

/// The violation of the published schema by the line; empty if it is valid.
std::string schemaComplaint(const nlohmann::json& line);
