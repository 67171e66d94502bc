#pragma once

#include <exception>
#include <optional>

#include "common/printable.h"

namespace vxcommon {

/// The system's reason (errno) in the exception, from its type or its text; empty if it has none.
std::optional<int> systemReason(const std::exception& error);

/// The cause of the exception in words for people, never the library's own text, which contains names of
/// functions.
Printable plainReason(const std::exception& error);

}  // namespace vxcommon
