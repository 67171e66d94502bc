#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/report/progress_view.h"
#include "cloning_app/report/result_table.h"
#include "cloning_app/run/clone_run.h"
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

/// Says in the rows of the application category whose each one is. The library reports one outcome for each
/// application that it asked, without a name: first the orvel application, if that runs or could be started,
/// then the one that the settings name as the first screen, if they do.
void nameApplications(std::vector<Row>& rows);

/// Whether an application that was not reported is known to have run, by `hasRun`, which gets its row: then
/// the library's list lost an outcome, and does not tell whose those are that it holds.
bool lostAnOutcome(const std::vector<Row>& rows, const std::function<bool(const Row&)>& hasRun);

/// Says of the row of an application that was not reported, and of which there is data all the same, that it
/// runs. Other rows stay as they are.
void sayThatItRuns(Row& row);

/// Takes back what the row of an application says was done, and says that the outcome may not be its own.
void doubt(Row& row);

/// Lets the engine work on the categories of `list` and follows it; a stop does not keep it from beginning.
/// Result: what it reported. Errors: the engine's own.
Result<ResultList> runAndFollow(const CloneContext& context, Direction direction,
                                const std::vector<VXClone>& list, const std::function<Result<void>()>& run);

/// Lets the library save the television into the clone folder, and follows it; once more where it saved what
/// it did not report. Result and errors: those of `runAndFollow`; a stop before it began; the settings store
/// refused (`SettingsRefused`).
Result<ResultList> saveTelevision(const CloneContext& context);

}  // namespace vxclone
