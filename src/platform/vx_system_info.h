#pragma once

// Network time and time zone. Each call returns 0 on success and another error status on failure.

/// A time zone; the values are the platform's own.
enum VX_TIMEZONE : int {};

namespace VXSystemAPI {
namespace nsVXSystemInfoAPI {

/// Sets `supported` to whether this television can take its time from the network.
int CheckNTPSupport(bool& supported);

/// Switches network time on or off.
int SetNTPMode(bool on);

/// Reads the zone now in effect.
int GetCurrentTimezone(VX_TIMEZONE& timezone);

/// Puts the zone into effect.
int SetTimezoneInfo(VX_TIMEZONE timezone);

/// Sets the time server. Ownership: the string stays the caller's.
int SetNTPServerAddr(const char* address);

}  // namespace nsVXSystemInfoAPI
}  // namespace VXSystemAPI
