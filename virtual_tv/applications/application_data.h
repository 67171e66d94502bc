#pragma once

#include <optional>

#include "virtual_tv/base/error.h"
#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The name of the applications' area in a comparison.
inline constexpr const char* kApplicationsArea = "apps";

/// The applications of a television and all their data. A row of a database has its table and first column as
/// its name ("org.example.app/cards/1"; a second one with the same first column is "org.example.app/cards/1
/// (2)"). Any other file is represented by its size and checksum. So databases with equal rows are equal,
/// even if their bytes differ. No link is followed. Empty if the television has no application. Errors: Io.
Result<std::optional<Texts>> applicationTexts(const Folder& folder);

}  // namespace vxtv
