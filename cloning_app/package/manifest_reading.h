#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "cloning_app/package/package_contents.h"

namespace vxclone {

/// Any bytes as UTF-8 text without control characters: these, bytes that are no UTF-8, and the backslash are
/// written as \xNN, with two lower-case hexadecimal digits for each byte.
std::string escaped(std::string_view bytes);

/// The bytes that such a text stands for; none where `escaped` would not have written it so.
std::optional<std::string> unescaped(std::string_view text);

/// Leaves the reading of a manifest at the first thing that is wrong; caught where the reading began.
struct WrongManifest {
    std::string why;  ///< to follow the file's name
};

// All of these throw WrongManifest. `json` is the object that is looked into.

const nlohmann::json& memberOf(const nlohmann::json& json, const char* name, nlohmann::json::value_t type);
/// A text of which nothing is escaped any more.
std::string textIn(const nlohmann::json& json, const char* name);
/// The same; empty where there is no such member.
std::string textOrNothingIn(const nlohmann::json& json, const char* name);
/// A package's name, which is neither empty nor too long.
std::string nameIn(const nlohmann::json& json);
/// A time such as "2026-03-01T12:30:00Z".
std::string timeIn(const nlohmann::json& json, const char* name);
int tunerIn(const nlohmann::json& json);
/// A file or a folder whose path leads nowhere but into the package.
PackageEntry entryIn(const nlohmann::json& json);

}  // namespace vxclone
