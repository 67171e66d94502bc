#pragma once

// The web-application data service. It knows its own place in the clone package and needs the network.

extern "C" {

/// Saves the web applications' data into the package. Result: 0 on success.
int was_clone_backup(void);

/// Loads the web applications' data from the package. Result: 0 on success.
int was_clone_restore(void);
}
