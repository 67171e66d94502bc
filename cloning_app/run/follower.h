#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "cloning_app/run/progress_view.h"
#include "cloning_app/run/result_list.h"
#include "cloning_app/run/stop_flag.h"

namespace vxclone {

/// Makes the two keys of the settings store ready for a run, so that nothing of the run before is taken for
/// this one's. Errors: `TelevisionIo`, the store refused a key; a run could then not be followed.
Result<void> resetRunKeys(Direction direction);

/// Follows a run through the settings store, on a thread of its own, from construction until `finish`. The
/// view belongs to the follower in between.
class Follower {
 public:
    Follower(Direction direction, ProgressView& view, const StopFlag& stop);
    Follower(const Follower&) = delete;
    Follower& operator=(const Follower&) = delete;
    ~Follower();

    /// Call once the run has ended: reads the store a last time. Result: everything that was reported.
    ResultList finish();

 private:
    void follow();
    void look();
    void join();

    Direction direction_;
    ProgressView& view_;
    const StopFlag& stop_;
    ResultList results_;
    int percent_ = 0;
    bool stopSaid_ = false;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool end_ = false;
    std::thread thread_;
};

}  // namespace vxclone
