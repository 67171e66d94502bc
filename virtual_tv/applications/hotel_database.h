#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

/// A card that the guest can open.
struct Card {
    std::string title;
    std::string body;
    std::string picture;  ///< a file of the pictures folder
    int openings = 0;     ///< how often guests opened it
};

/// The content that the hotel's application shows.
struct Content {
    std::map<std::string, std::string> greetings;  ///< by language
    std::vector<Card> cards;
};

/// In the application's data folder.
inline constexpr const char* kDatabaseName = "hotel.db";
inline constexpr const char* kPicturesName = "pictures";

/// Makes the database, which must not exist. It is not flushed. Errors: Io, NoSpace.
Result<void> createDatabase(const std::filesystem::path& file, const Content& content);

/// Writes a consistent copy of the database to a file that must not exist, even while others use the
/// database. Errors: DamagedBackup if it is not this application's database; Io, NoSpace.
Result<void> snapshotDatabase(const std::filesystem::path& file, const std::filesystem::path& copy);

/// Checks that the file is a valid database of exactly this application's form. The file may be untrusted.
/// Errors: OtherVersion, DamagedBackup.
Result<void> checkDatabase(const std::filesystem::path& file);

}  // namespace vxtv::hotel
