#pragma once

// Message ports: bundles sent from one application to a named port of another.

#include "bundle.h"

/// Receives the messages of a local port.
///
/// Threads: called on a thread of the platform's own, never on the one that registered the port or that is
/// inside a call of this header, so that the callback may take a lock which the sender holds while it waits.
/// Ownership: all arguments stay the platform's and are valid until the callback returns.
typedef void (*message_port_message_cb)(int local_port_id, const char* remote_app_id,
                                        const char* remote_port_name, bool trusted_remote_port,
                                        bundle* message, void* user_data);

extern "C" {

/// Makes a port of this process under the name. Result: the port's id, 0 or more; negative on failure.
/// Registering a name again hands back the same id and replaces the callback.
int message_port_register_local_port(const char* local_port_name, message_port_message_cb callback,
                                     void* user_data);

/// Asks whether the application has a port of that name now. Result: 0 when `*exist` was set, anything else
/// on failure, and `*exist` is then as it was. Does not wait for the port.
int message_port_check_remote_port(const char* remote_app_id, const char* remote_port_name, bool* exist);

/// Sends the bundle to the application's port, with the local port as the address for replies. Result: 0
/// when the message was handed over, anything else on failure. Ownership: the bundle stays the caller's.
/// Does not wait for a reply.
int message_port_send_message_with_local_port(const char* remote_app_id, const char* remote_port_name,
                                              bundle* message, int local_port_id);
}
