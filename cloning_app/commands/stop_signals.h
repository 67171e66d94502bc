#pragma once

#include "cloning_app/run/stop_flag.h"

namespace vxclone {

/// From now on SIGINT, SIGTERM and SIGHUP raise the flag instead of ending the process, and a closed output
/// does not end it either. Programs that this process starts are not affected. Result: the one flag of the
/// process.
const StopFlag& heedStopSignals();

}  // namespace vxclone
