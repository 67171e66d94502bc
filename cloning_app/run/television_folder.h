#pragma once

#include <string>

#include "cloning_app/errors.h"
#include "cloning_app/package/descriptor.h"

namespace vxclone {

/// Opens a folder that the platform names, for reading. Result: none when the television has no such folder.
/// Errors: the platform named none, which says nothing about what is there, or the folder cannot be opened.
Result<Descriptor> openTelevisionFolder(const std::string& path);

}  // namespace vxclone
