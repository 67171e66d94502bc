#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

/// The lines of a text, each parsed. A line that is no JSON object fails the test.
std::vector<nlohmann::json> jsonLines(const std::string& text);

/// What the published schema has against the line; empty when it fits.
std::string schemaComplaint(const nlohmann::json& line);
