#pragma once

// The application manager.

#include "bundle.h"

extern "C" {

/// Asks whether the application runs. Result: 1 when it does, anything else when it does not or when the
/// manager cannot tell. Threads: any.
int aul_app_is_running(const char* app_id);

/// Starts the application and hands it the bundle. Result: the process id, 1 or more; below 1 on failure.
/// Returns when the process exists, not when it is ready. Ownership: the bundle stays the caller's.
int aul_launch_app(const char* app_id, bundle* args);
}
