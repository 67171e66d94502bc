#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "common/strict_json.h"

namespace vxtv {

using vxcommon::WrongMember;

// All of these throw WrongMember. `where` is the path to the value that is looked at.

/// The path to a member of what lies at `member`.
std::string within(const std::string& member, const std::string& name);
const nlohmann::json& memberOf(const nlohmann::json& object, const std::string& where,
                               const std::string& name);
void expectObject(const nlohmann::json& value, const std::string& where);
void expectArray(const nlohmann::json& value, const std::string& where);
/// An object without any other member than these.
void expectOnly(const nlohmann::json& object, const std::string& where,
                std::initializer_list<std::string_view> known);
void expectName(const std::string& name, const std::string& where);
int intIn(const nlohmann::json& value, const std::string& where);
bool boolIn(const nlohmann::json& value, const std::string& where);
/// Without a NUL.
std::string stringIn(const nlohmann::json& value, const std::string& where);

}  // namespace vxtv
