#pragma once

// The settings data service.

#include <string>

class SettingsDataCloneAPI {
 public:
    /// The two halves of a restore, called in this order.
    enum RESTORE_TYPE { EARLY_RESTORE = 1, LATER_RESTORE = 2 };

    /// Saves the settings data into the directory. Result: non-zero on success.
    static int BackupSettingsData(std::string directory);

    /// Loads one half of the settings data from the directory. Result: non-zero on success.
    static int RestoreSettingsData(std::string directory, RESTORE_TYPE type);
};
