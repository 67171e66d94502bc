#pragma once

namespace vxtv {

/// Makes SQLite repeat a lock call that a signal interrupted, a few times, and a release that failed. By
/// default SQLite treats an interrupted call as a lock of another process. If the call was a release, the
/// lock stays, and every other process waits for a writer that has already finished.
///
/// Affects all databases of the process from the next lock call on. May be called repeatedly. Threads: any.
void makeLocksSteady();

}  // namespace vxtv
