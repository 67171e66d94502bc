#pragma once

#include <SQLiteCpp/Exception.h>

#include <string>

namespace vxtv {

/// The reason of a failed database call in words, to follow the file's name and a colon.
std::string databaseReason(const SQLite::Exception& exception);

}  // namespace vxtv
