#pragma once

#include <string>
#include <vector>

#include "vx_clone_api.h"

/// The clone engine as the facade sees it.
///
/// The order of the operations is part of the interface. The result is non-zero for success and 0 for
/// failure, except for `CheckDataValidity`, which returns a code. Threads: one operation at a time in a
/// process.
class VXCloneInterface {
 public:
    virtual ~VXCloneInterface() = default;

    /// Loads the listed categories from the clone directory, in list order. Result: 1, or 0 for an empty
    /// list. A list without VXCLONE_VXHOTEL_FIRSTSCREEN_DATA is loaded completely, and then the call throws
    /// std::system_error.
    virtual int RestoreCloneData(const std::vector<VXClone>& list) = 0;

    /// Empties the clone directory and saves this television into it. Result: 1.
    virtual int BackupCloneData() = 0;

    /// Writes the kind of this television to the file. Result: 1 or 0.
    virtual int WriteDataToFile(std::string path) = 0;

    /// Checks whether the package in the directory fits this television. Result: 0 if it fits.
    virtual int CheckDataValidity(std::string path) = 0;

    /// Seals the files in the validation file `path` (mode 0) or checks them against it (mode 1). Result: 1
    /// or 0.
    virtual int CheckHashValidity(std::vector<std::string> files, int mode, char* path) = 0;
};
