#pragma once

#include "virtual_tv/television/television.h"

namespace vxtv {

/// Writes the error of what failed into the television's log, for whoever sees the status alone: `vxtv log`
/// shows it. Result: `done`, unchanged.
inline const Result<void>& logged(Television& television, const char* tag, const Result<void>& done) {
    constexpr int kErrorPriority = 6;
    if (!done) {
        static_cast<void>(television.dlog().append(kErrorPriority, tag, done.error().sentence));
    }
    return done;
}

}  // namespace vxtv
