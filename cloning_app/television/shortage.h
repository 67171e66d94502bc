#pragma once

#include <optional>
#include <string>
#include <utility>

#include "cloning_app/base/errors.h"

namespace vxclone {

/// What this process lacks now and may just have failed for: descriptors, memory, or room on the television's
/// disk, on which `folder` lies. The library and the platform only say that something failed. None where
/// nothing is short.
std::optional<Error> shortageAt(const std::string& folder);

/// The error of a key that was not found: what is short, or `otherwise`.
inline Error orShortage(Error otherwise, const std::string& folder) {
    return shortageAt(folder).value_or(std::move(otherwise));
}

}  // namespace vxclone
