#pragma once

#include <SQLiteCpp/Exception.h>

#include <string>

namespace vxtv {

/// Why a call of a database failed, in words for people that go on after the file's name and a colon.
std::string databaseReason(const SQLite::Exception& exception);

}  // namespace vxtv
