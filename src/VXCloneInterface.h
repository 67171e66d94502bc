#pragma once

#include <string>
#include <vector>

#include "vx_clone_api.h"

/// The clone engine as the facade sees it.
///
/// The order of the operations is part of the interface. Results are non-zero for success and 0 for failure,
/// but for `CheckDataValidity`, whose result is a code. Threads: one operation at a time in a process.
class VXCloneInterface {
 public:
    virtual ~VXCloneInterface() = default;

    /// Loads the listed categories from the clone directory, in list order. Result: 1, or 0 for an empty
    /// list. A list without VXCLONE_VXHOTEL_FIRSTSCREEN_DATA is loaded whole and left by std::system_error.
    virtual int RestoreCloneData(const std::vector<VXClone>& list) = 0;

    /// Empties the clone directory and saves this television into it. Result: 1.
    virtual int BackupCloneData() = 0;

    /// Writes what kind of television this is to the file. Result: 1 or 0.
    virtual int WriteDataToFile(std::string path) = 0;

    /// Says whether the package in the directory fits this television. Result: 0 when it fits.
    virtual int CheckDataValidity(std::string path) = 0;

    /// Seals the files in the validation file `path` (mode 0) or checks them against it (mode 1). Result: 1
    /// or 0.
    virtual int CheckHashValidity(std::vector<std::string> files, int mode, char* path) = 0;
};
