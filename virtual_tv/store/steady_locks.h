#pragma once

namespace vxtv {

/// Has SQLite repeat, a few times, a call on a lock that a signal interrupted and a release that failed. Of
/// itself it takes an interrupted call for a lock that somebody else holds; when that was a
/// release, the lock stays, and every other process waits for a writer that has long finished.
///
/// Counts for all databases of the process, from the next call on a lock. May be called again and again.
/// Threads: any.
void makeLocksSteady();

}  // namespace vxtv
