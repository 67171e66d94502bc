#pragma once

// A bundle: an ordered set of named strings, the content of a message and of an application's launch.

struct _bundle_t;
typedef struct _bundle_t bundle;

extern "C" {

/// Makes an empty bundle. Result: the bundle, the caller's to free with `bundle_free`, or null when memory
/// is short.
bundle* bundle_create(void);

/// Adds an entry. Result: 0 on success, anything else on failure (no bundle, no key, a key that is already
/// there). Ownership: both strings are copied.
int bundle_add_str(bundle* b, const char* key, const char* value);

/// The older name of `bundle_add_str`, with the same contract.
int bundle_add(bundle* b, const char* key, const char* value);

/// Looks an entry up. Result: 0 on success, anything else when the entry is missing, and `*value` is then as
/// it was. Ownership: `*value` stays the bundle's, valid until the bundle is freed or the entry changes.
int bundle_get_str(bundle* b, const char* key, char** value);

/// Frees the bundle and its entries. Result: 0 on success, anything else for a null.
int bundle_free(bundle* b);
}
