#pragma once

// The television's settings store: keys such as `db/hotel/clone_result`, each with a type and a value that
// outlive the process.
//
// Common to the six calls.
// Result: 0 on success, anything else on failure (an unknown key, a key of another type, a store that is
// not there); `vconf_get_str` says the same with a null.
// Ownership: keys and values handed in stay the caller's.
// Threads: may be called from any thread; two processes see each other's values at once.

extern "C" {

/// Reads an int. On failure `*value` is as it was.
int vconf_get_int(const char* key, int* value);

/// Stores an int.
int vconf_set_int(const char* key, int value);

/// Reads a bool, 0 or 1. On failure `*value` is as it was.
int vconf_get_bool(const char* key, int* value);

/// Stores a bool, 0 or 1.
int vconf_set_bool(const char* key, int value);

/// Reads a string. Result: memory from malloc that the caller frees, or null on failure. An empty string is
/// a value, not a failure.
char* vconf_get_str(const char* key);

/// Stores a string, up to its first NUL.
int vconf_set_str(const char* key, const char* value);
}
