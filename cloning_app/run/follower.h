#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/report/progress_view.h"
#include "cloning_app/television/result_list.h"

namespace vxclone {

/// Makes the two keys of the settings store ready for a run, so that nothing of the run before is taken for
/// this one's. Errors: `SettingsRefused`, the store refused a key; a run could then not be followed.
Result<void> resetRunKeys(Direction direction);

/// Follows a run through the settings store, on a thread of its own, from construction until `finish`. The
/// view belongs to the follower in between.
class Follower {
 public:
    /// `list` is what the library was told to load; of a backup, what it may save.
    Follower(Direction direction, const std::vector<VXClone>& list, ProgressView& view, const StopFlag& stop);
    Follower(const Follower&) = delete;
    Follower& operator=(const Follower&) = delete;
    ~Follower();

    /// Call once the run has ended: reads the store a last time. Result: everything that was reported.
    ResultList finish();

 private:
    void follow();
    void look();
    Progress progressNow() const;
    void join();

    Direction direction_;
    std::vector<VXClone> list_;
    ProgressView& view_;
    const StopFlag& stop_;
    ResultList results_;
    std::set<VXClone> reported_;
    std::optional<VXClone> latest_;
    Progress shown_;
    int percent_ = 0;  ///< how much of its entries the library says are loaded
    bool stopSaid_ = false;
    std::mutex mutex_;
    std::condition_variable ended_;
    bool end_ = false;
    std::thread thread_;
};

}  // namespace vxclone
