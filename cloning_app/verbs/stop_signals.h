#pragma once

#include "cloning_app/base/stop_flag.h"

namespace vxclone {

/// From now on SIGINT, SIGTERM and SIGHUP raise the flag instead of ending the process. Programs that this
/// process starts are not affected. Result: the one flag of the process.
const StopFlag& heedStopSignals();

/// For commands that change nothing. While this object exists, SIGINT, SIGTERM and SIGHUP end the process at
/// once, with the sentence and the status of an interrupted run, and without cleaning up. After the
/// destructor, the signals still end the process with that status, but without the sentence, which could
/// appear in the middle of its output. One object at a time.
class EndingAtStopSignals {
 public:
    /// With `json` the sentence is a JSON line on standard output; otherwise it goes to standard error.
    explicit EndingAtStopSignals(bool json);
    EndingAtStopSignals(const EndingAtStopSignals&) = delete;
    EndingAtStopSignals& operator=(const EndingAtStopSignals&) = delete;
    ~EndingAtStopSignals();
};

/// From now on, a write to an output that its reader has closed fails instead of ending the process. Programs
/// that this process starts are not affected.
void surviveClosedOutput();

}  // namespace vxclone
