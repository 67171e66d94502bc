#pragma once

// The factory settings service. It knows its own place in the clone package.

extern "C" {

/// Saves the factory settings into the package. The status is logged by the library and not judged.
int factory_clone_tv_to_usb(void);

/// Loads the factory settings from the package. The status is logged by the library and not judged.
int factory_clone_usb_to_tv(void);
}
