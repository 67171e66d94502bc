#pragma once

#include "cloning_app/base/stop_flag.h"

namespace vxclone {

/// From now on SIGINT, SIGTERM and SIGHUP raise the flag instead of ending the process. Programs that this
/// process starts are not affected. Result: the one flag of the process.
const StopFlag& heedStopSignals();

/// While it lives, SIGINT, SIGTERM and SIGHUP end the process at once, whatever it waits for, with the
/// sentence and the status of an interrupted run. For commands that change nothing: nothing is cleaned up.
/// Afterwards the signals still end the process with that status, but without a word, which would stand in
/// what it is writing. One object at a time.
class EndingAtStopSignals {
 public:
    /// With `json` the sentence is a line on standard output, else it goes to standard error.
    explicit EndingAtStopSignals(bool json);
    EndingAtStopSignals(const EndingAtStopSignals&) = delete;
    EndingAtStopSignals& operator=(const EndingAtStopSignals&) = delete;
    ~EndingAtStopSignals();
};

/// From now on an output that its reader has closed does not end the process; writing to it fails. Programs
/// that this process starts are not affected.
void surviveClosedOutput();

}  // namespace vxclone
