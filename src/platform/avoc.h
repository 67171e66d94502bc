#pragma once

// The picture and sound settings service.

extern "C" {

/// Saves all picture and sound settings into the directory. Result: 0 on success.
int avoc_backup_all_settings(const char* directory);

/// Loads all picture and sound settings from the directory. Result: 0 on success.
int avoc_restore_all_settings(const char* directory);
}
