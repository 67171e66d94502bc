#pragma once

#include <optional>
#include <string>

#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The address of the television's message bus, as any D-Bus program takes it, or nothing when no bus is up.
/// Threads: any.
std::optional<std::string> busAddress(const Folder& folder);

}  // namespace vxtv
