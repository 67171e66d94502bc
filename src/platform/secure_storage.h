#pragma once

// Secure storage: named secrets, each readable only with its owner's credential.

#include <cstddef>

/// Who asks. Made by `ss_init_credential` and passed by value.
struct ss_credential {
    char identifier[20];
    int owner;
    int group;
};

extern "C" {

/// Makes a credential from a 20-byte identifier, which needs no NUL. The library passes 1 and 0.
ss_credential ss_init_credential(const char* identifier, int owner, int group);

/// Reads a secret. The library passes 0 and 0 for the reserved values and 33 for the flags.
///
/// Result: 0 on success, with `*data` the secret and `*length` its size in bytes; anything else on failure.
/// A secret may be empty, and may or may not end in a NUL that is part of the length.
/// Ownership: a non-null `*data` is released with `ss_free_buffer`.
/// Before: `*data` is null and `*length` is 0. Threads: any.
int ss_read(char** data, size_t* length, int reserved1, int reserved2, const char* name,
            ss_credential credential, int flags);

/// Releases what `ss_read` handed out. A null is allowed.
void ss_free_buffer(char* data);
}
