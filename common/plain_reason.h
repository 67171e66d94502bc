#pragma once

#include <exception>
#include <optional>

#include "common/printable.h"

namespace vxcommon {

/// The system's reason (errno) that the exception tells of, by its type or in its text; none where it tells
/// of no such reason.
std::optional<int> systemReason(const std::exception& error);

/// Why it was thrown, in words for people: never a library's own text with names of functions in it.
Printable plainReason(const std::exception& error);

}  // namespace vxcommon
