#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace vxtest {

/// A descendant of `ancestor` with this name and with the text in its environment; empty if there is none
/// now.
std::optional<pid_t> findDescendant(pid_t ancestor, const std::string& name,
                                    const std::string& environment = {});

/// Whether any process on this machine has the text in its environment.
bool isAnywhere(const std::string& environment);

}  // namespace vxtest
