#pragma once

// The television's timers: recordings and wake-ups.

extern "C" {

/// Connects to the timer service; may be called again. Result: negative on failure.
int tvtimer_init(void);

/// Saves the timers into the directory, which must exist. Result: 0 on success, anything else on failure.
int tvtimer_get_db(const char* directory);

/// Replaces the timers with those saved in the directory. Result: 0 on success, anything else on failure.
int tvtimer_set_db(const char* directory);
}
