#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// The profiles that are shipped with vxtv.
class ProfileShelf {
 public:
    explicit ProfileShelf(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// The shelf of the running program: ../share/vxtv/profiles, relative to the program.
    static ProfileShelf ofThisProgram();

    const std::filesystem::path& folder() const { return folder_; }

    /// The names of the shipped profiles, sorted.
    std::vector<std::string> names() const;

    /// The file that the user means: a name of the shelf, or a path if it contains a "/" or ends with
    /// ".json". Errors: UnknownProfile, with the existing names.
    Result<std::filesystem::path> find(const std::string& nameOrFile) const;

 private:
    std::filesystem::path folder_;
};

}  // namespace vxtv
