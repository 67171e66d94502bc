#pragma once

#include <optional>

#include "virtual_tv/base/error.h"
#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The name of the area of applications in a comparison.
inline constexpr const char* kApplicationsArea = "apps";

/// The applications of a television and all their data: a row of a database by its table and first column
/// ("org.example.app/cards/1"; a second one with the same first column is "org.example.app/cards/1 (2)"), any
/// other file by its size and checksum. So databases of equal rows are equal
/// whatever their bytes. No link is followed. Nothing when the television has no application.
/// Errors: Io.
Result<std::optional<Texts>> applicationTexts(const Folder& folder);

}  // namespace vxtv
