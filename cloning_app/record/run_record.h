#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/base/stamp.h"
#include "cloning_app/base/tree_walk.h"
#include "cloning_app/record/unfinished_load.h"
#include "cloning_app/report/result_table.h"
#include "cloning_app/report/shown_phase.h"

namespace vxclone {

enum class RunKind { Backup, Restore, Undo };

/// The phases of a run in their order. A backup has `Saving` and `Writing`; a restore and an undo have the
/// others.
enum class RunPhase {
    Staging,      ///< the package is copied and checked; the television is unchanged
    Safety,       ///< the safety backup is being made; the television is unchanged
    Saving,       ///< the library saves the television
    Writing,      ///< the package goes to the stick
    Restoring,    ///< the library loads the package: the television may be half changed
    ReadingBack,  ///< everything is loaded and is being compared
    Done          ///< the run has ended, with or without an error
};

std::string_view nameOf(RunKind kind);
std::string_view nameOf(RunPhase phase);

/// The stored data about the last run.
struct RunRecord {
    RunKind kind = RunKind::Backup;
    RunPhase phase = RunPhase::Staging;
    std::string package;                      ///< its path on the stick; may be empty
    std::string digest;                       ///< of the package; may be empty
    std::int64_t begun = 0;                   ///< seconds since the epoch
    std::optional<std::int64_t> ended = {};   ///< the same, for a run that is done
    std::optional<int> exitStatus = {};       ///< of a run that is done
    std::vector<Row> rows = {};               ///< the results of the categories, as far as known
    std::optional<RunPhase> brokeOffIn = {};  ///< for a run that ended before it was completed
    /// A restore or undo was interrupted after its load had begun, and none has been completed since.
    bool halfChanged = false;
    std::string name = {};   ///< the name of the package; may be empty
    bool allLoaded = false;  ///< that run had loaded everything, and only its read-back is missing
    bool wayBack = false;    ///< the safety backup is from before that run
};

/// The folder of the record: the application's data folder, which also contains the clone folder.
std::filesystem::path recordFolderOf(const std::filesystem::path& cloneRoot);

/// The record as text, and back. Parsing treats the text as untrusted. Errors: `RecordDamaged` for an invalid
/// record; the sentence names `path`.
std::string recordText(const RunRecord& record);
Result<RunRecord> parseRecord(const std::string& text, const std::string& path);

/// The progress of a current run.
struct ToldProgress {
    ShownPhase phase;
    int percent;  ///< of the whole run

    bool operator==(const ToldProgress&) const = default;
};

/// Keeps the record of the current run and shows other processes that it is running. No other run can begin
/// while this object exists. Threads: one at a time.
class RunRecorder {
 public:
    /// Locks the television for this process and writes the record. Whether the television is half changed is
    /// taken from the mark beside the safety backup and from the previous record. Errors: `TelevisionBusy`
    /// during another run, whose record is not changed; `TelevisionIo`, `TelevisionFull`.
    static Result<RunRecorder> begin(const std::filesystem::path& folder, RunRecord record);

    const RunRecord& record() const { return record_; }
    /// The record of the previous run, which may have died unnoticed; empty if there was none or it cannot be
    /// understood.
    const std::optional<RunRecord>& previous() const { return previous_; }

    /// Records that the run has reached the phase. After a power cut the record has this phase or the
    /// previous one. `Restoring` first marks the safety backup as needed. Errors: a failure of the disk; the
    /// record is then unchanged.
    Result<void> enter(RunPhase phase);
    /// As `enter` with `Done`; also records how the run ended. If it was interrupted after its load had
    /// begun, the television stays half changed. It also stays half changed if an earlier run began to change
    /// more than this one has loaded.
    Result<void> end(int exitStatus, std::vector<Row> rows);
    Result<void> breakOff(int exitStatus, std::vector<Row> rows);
    /// The categories that the run loads. The default is all categories that runs load.
    void setLoaded(std::vector<VXClone> categories) { loaded_ = std::move(categories); }
    // Data for the next write of the record.
    void setName(std::string name) { record_.name = std::move(name); }
    void setDigest(std::string digest) { record_.digest = std::move(digest); }
    void setRows(std::vector<Row> rows) { record_.rows = std::move(rows); }
    /// Records that the safety backup holds the state before this run. If the television was half changed
    /// already, the safety backup holds the state before that change, if the earlier run recorded this.
    void setWayBack();

    /// Shows the progress to other processes, as long as this object exists. It is only a hint. Threads: may
    /// be called while another thread uses the object.
    void tell(const ToldProgress& progress);

 private:
    RunRecorder(Descriptor folder, Descriptor lock, std::string path, RunRecord record);
    Tree tree() const { return {folder_.get(), path_, Place::Television}; }
    Result<void> close(RunRecord record, int exitStatus, std::vector<Row> rows);
    Result<void> write(const RunRecord& record);

    Descriptor folder_;
    Descriptor lock_;
    std::optional<ToldProgress> told_;
    std::string path_;
    RunRecord record_;
    std::optional<RunRecord> previous_;
    UnfinishedLoad before_;  ///< what earlier runs may have left half changed
    std::vector<VXClone> loaded_ = allCategories();
};

/// Prevents all runs and other looks while a command looks at the television without changing it. No record
/// is written. If the locked file did not exist before, the destructor removes it.
class LookHold {
 public:
    /// Errors: `TelevisionBusy` during a run or another look; `TelevisionIo`, `TelevisionFull`.
    static Result<LookHold> begin(const std::filesystem::path& folder);

    LookHold(LookHold&&) = default;
    LookHold& operator=(LookHold&&) = delete;
    LookHold(const LookHold&) = delete;
    LookHold& operator=(const LookHold&) = delete;
    ~LookHold();

 private:
    LookHold(Descriptor folder, Descriptor lock, bool made);

    Descriptor folder_;
    Descriptor lock_;
    bool made_;
};

/// Whether this or another process is looking now. False if it cannot be determined.
bool isLookGoingOn(const std::filesystem::path& folder);

/// The last run, seen from another process.
struct LastRun {
    RunRecord record;
    bool goingOn = false;                       ///< its process is running
    std::optional<ToldProgress> progress = {};  ///< of a current run, once it has reported it

    /// Whether it died.
    bool unfinished() const { return !goingOn && record.phase != RunPhase::Done; }
};

/// Reads the record in the folder. Changes nothing and prevents no run. Result: empty if there was no run
/// yet. Errors: `RecordDamaged`, or it cannot be read.
Result<std::optional<LastRun>> readLastRun(const std::filesystem::path& folder);

}  // namespace vxclone
