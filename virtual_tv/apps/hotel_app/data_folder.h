#pragma once

#include <filesystem>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

/// The application's own data, in the folder `data` of the application's folder, and its replacement in one
/// step. Only one process may use it at a time: the application.
class DataFolder {
 public:
    explicit DataFolder(std::filesystem::path applicationFolder) : folder_(std::move(applicationFolder)) {}

    std::filesystem::path path() const { return folder_ / "data"; }
    /// The folder in which new data is prepared.
    std::filesystem::path staging() const { return folder_ / "data.new"; }

    /// Makes the data usable after the application died: removes unfinished changes, and creates an empty
    /// database if there is none. Errors: Io, NoSpace.
    Result<void> recover() const;

    /// Makes an empty staging folder with a folder for pictures. Errors: Io, NoSpace.
    Result<void> beginStaging() const;

    /// Replaces the data by the staged data, which must be flushed, and removes the old data. After a crash
    /// either the old or the new data is there. On failure (Io) the data is unchanged, and the staged data is
    /// removed.
    Result<void> replaceByStaged() const;

    /// Removes the staged data. The application's data is unchanged.
    void dropStaged() const;

 private:
    std::filesystem::path folder_;
};

/// Replaces `target` by the folder `made`, which must be flushed, in one step, and removes the old one. Both
/// are in the same folder. Errors: Io.
Result<void> putInPlace(const std::filesystem::path& made, const std::filesystem::path& target);

/// Writes a new file and flushes it. Errors: NoSpace, Io.
Result<void> writeFlushed(const std::filesystem::path& file, std::string_view bytes);

/// Flushes a file that another library wrote. Errors: NoSpace, Io.
Result<void> flushFile(const std::filesystem::path& file);

}  // namespace vxtv::hotel
