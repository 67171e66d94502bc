#pragma once

// Key installation: loads the secrets of a key file into secure storage.

extern "C" {

/// Installs the key file. The library passes 2 and 0.
/// Result: 0 when the secrets were installed, 2 when they had been installed before, anything else on
/// failure, and nothing is installed then. Threads: any.
int wqd_install_from_file(const char* path, int target, int option);
}
