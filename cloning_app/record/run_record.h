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

/// How far a run came, in the order of the work; a backup passes through `Saving` and `Writing`, a restore
/// and an undo through the others.
enum class RunPhase {
    Staging,      ///< the package is copied and checked; the television is as it was
    Safety,       ///< the safety backup is being made; the television is as it was
    Saving,       ///< the library saves the television
    Writing,      ///< the package goes to the stick
    Restoring,    ///< the library loads the package: the television may be half changed
    ReadingBack,  ///< all is loaded and is being compared
    Done          ///< the run has ended by itself, well or not
};

std::string_view nameOf(RunKind kind);
std::string_view nameOf(RunPhase phase);

/// What is kept of the last run.
struct RunRecord {
    RunKind kind = RunKind::Backup;
    RunPhase phase = RunPhase::Staging;
    std::string package;                      ///< where on the stick; may be empty
    std::string digest;                       ///< of the package; may be empty
    std::int64_t begun = 0;                   ///< seconds since the epoch
    std::optional<std::int64_t> ended = {};   ///< the same, of a run that is done
    std::optional<int> exitStatus = {};       ///< of a run that is done
    std::vector<Row> rows = {};               ///< what became of the categories, as far as it is known
    std::optional<RunPhase> brokeOffIn = {};  ///< of a run that is done and did not come to its end
    /// A restore or undo broke off after it had begun to load, and none has come to its end since.
    bool halfChanged = false;
    std::string name = {};   ///< what people call the package; may be empty
    bool allLoaded = false;  ///< that one had loaded everything, only its read-back is missing
    bool wayBack = false;    ///< the safety backup is from before that one
};

/// The record's folder: the application's own data, beside its clone folder.
std::filesystem::path recordFolderOf(const std::filesystem::path& cloneRoot);

/// The record as text and back. Parsing takes nothing on trust. Errors: `RecordDamaged`, for anything that
/// is no record; the sentence names `path`.
std::string recordText(const RunRecord& record);
Result<RunRecord> parseRecord(const std::string& text, const std::string& path);

/// How far a run is that goes on.
struct ToldProgress {
    ShownPhase phase;
    int percent;  ///< of the whole run

    bool operator==(const ToldProgress&) const = default;
};

/// Keeps the record of a run that goes on, and tells other processes that it does: while this object lives no
/// other begins. One thread at a time.
class RunRecorder {
 public:
    /// Takes the television for this process and writes the record; that the television is half changed is
    /// taken over from the mark beside the safety backup, and from the record before. Errors:
    /// `TelevisionBusy` while another run goes on, and the record is that one's; `TelevisionIo`,
    /// `TelevisionFull`.
    static Result<RunRecorder> begin(const std::filesystem::path& folder, RunRecord record);

    const RunRecord& record() const { return record_; }
    /// The record of the run before, of which nobody may know yet that it died; none where there was none, or
    /// it cannot be understood.
    const std::optional<RunRecord>& previous() const { return previous_; }

    /// Writes that the run has come to the phase; after a power cut the record says this phase or the one
    /// before. `Restoring` marks the safety backup as needed first. Errors: the disk says no; the record is
    /// the one before.
    Result<void> enter(RunPhase phase);
    /// As `enter` with `Done`, and how the run ended, now: it came to its end, or it broke off, and a
    /// television that it had begun to change stays half changed. So does one of which an earlier run began
    /// to change more than this one has loaded.
    Result<void> end(int exitStatus, std::vector<Row> rows);
    Result<void> breakOff(int exitStatus, std::vector<Row> rows);
    /// What the run loads: all of what runs load, unless it is told.
    void setLoaded(std::vector<VXClone> categories) { loaded_ = std::move(categories); }
    // What the next of these writes besides.
    void setName(std::string name) { record_.name = std::move(name); }
    void setDigest(std::string digest) { record_.digest = std::move(digest); }
    void setRows(std::vector<Row> rows) { record_.rows = std::move(rows); }
    /// The safety backup that is there holds the television as it was before this run; before a restore that
    /// was half changed already, it holds that unless it is an older one.
    void setWayBack();

    /// Tells other processes how far the run is, for as long as this object lives. It is advice, and may be
    /// called while another thread uses the object otherwise.
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

/// Keeps every run and every other look from beginning while something looks at the television that changes
/// nothing of it. No record is written, and the file that is held goes with this object where it was not
/// there before.
class LookHold {
 public:
    /// Errors: `TelevisionBusy` while a run or another look goes on; `TelevisionIo`, `TelevisionFull`.
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

/// Whether such a look goes on now, in this process or another. False where nobody can tell.
bool isLookGoingOn(const std::filesystem::path& folder);

/// The last run as another process sees it.
struct LastRun {
    RunRecord record;
    bool goingOn = false;                       ///< its process is alive and at work
    std::optional<ToldProgress> progress = {};  ///< of one that goes on, as soon as it has told it

    /// Whether it died before its end.
    bool unfinished() const { return !goingOn && record.phase != RunPhase::Done; }
};

/// Reads the record in the folder; changes nothing and keeps nobody from beginning. Result: none when there
/// was no run yet. Errors: `RecordDamaged`, or it cannot be read.
Result<std::optional<LastRun>> readLastRun(const std::filesystem::path& folder);

}  // namespace vxclone
