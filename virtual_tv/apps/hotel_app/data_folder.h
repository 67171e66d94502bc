#pragma once

#include <filesystem>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

/// The application's own data, in the folder `data` of the application's folder, and how all of it is
/// replaced in one step. One process at a time works with it: the application.
class DataFolder {
 public:
    explicit DataFolder(std::filesystem::path applicationFolder) : folder_(std::move(applicationFolder)) {}

    std::filesystem::path path() const { return folder_ / "data"; }
    /// Where new data is put together.
    std::filesystem::path staging() const { return folder_ / "data.new"; }

    /// Makes the data usable after any death of the application: takes away what was half done, and gives an
    /// application without data an empty database. Errors: Io, NoSpace.
    Result<void> recover() const;

    /// An empty staging folder with a folder for pictures. Errors: Io, NoSpace.
    Result<void> beginStaging() const;

    /// Puts what was staged, which is flushed, in the place of the data, and removes the old. A crash leaves
    /// the one or the other. On failure (Io) the data is as it was, and nothing is staged any more.
    Result<void> replaceByStaged() const;

    /// Leaves the data as it was.
    void dropStaged() const;

 private:
    std::filesystem::path folder_;
};

/// Puts the folder `made`, which is flushed, in the place of `target`, whole or not at all; what was there
/// before goes. Both lie in one folder. Errors: Io.
Result<void> putInPlace(const std::filesystem::path& made, const std::filesystem::path& target);

/// Writes a new file and flushes it. Errors: NoSpace, Io.
Result<void> writeFlushed(const std::filesystem::path& file, std::string_view bytes);

/// Flushes a file that another library wrote. Errors: NoSpace, Io.
Result<void> flushFile(const std::filesystem::path& file);

}  // namespace vxtv::hotel
