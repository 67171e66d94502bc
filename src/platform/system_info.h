#pragma once

// What this television is: its identity and the features that its model was configured with.
//
// Common to the four calls.
// Result: 0 on success, anything else on failure; on failure `*value` is as it was.
// Threads: may be called from any thread.

/// Items of the television's identity.
enum system_info_key_e : int {
    SYSTEM_INFO_KEY_MODEL = 0,
    SYSTEM_INFO_KEY_TUNER_TYPE = 131,
    SYSTEM_INFO_KEY_PRODUCT_TAG = 199
};

extern "C" {

/// Reads a textual item. Ownership: on success `*value` is memory from malloc that the caller frees.
int system_info_get_value_string(system_info_key_e key, char** value);

/// Reads a numeric item.
int system_info_get_value_int(system_info_key_e key, int* value);

/// Reads a numeric feature by its name.
int system_info_get_custom_int(const char* key, int* value);

/// Reads a switch by its name.
int system_info_get_custom_bool(const char* key, bool* value);
}
