#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "cloning_app/record/run_record.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

/// A stay on the television that leaves no trace: while this object lives, no run begins, and the clone
/// folder is empty and serves for whatever is looked at. At the end the clone folder is as it was. A process
/// may die meanwhile: the next run or visit puts it right.
class Visit {
 public:
    /// Errors: `TelevisionBusy`; the television's disk says no; the settings store refuses what a visit that
    /// died has to be put right with.
    static Result<Visit> begin(const CloneContext& context);

    Visit(Visit&&) = default;
    Visit& operator=(Visit&&) = delete;
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    /// As `end`.
    ~Visit();

    /// Puts everything back. Errors: those of `begin`; what is not back yet is put back by the next one.
    Result<void> end();

 private:
    /// `mode` is that of the clone folder; none where it was not there.
    Visit(LookHold hold, std::filesystem::path cloneRoot, std::optional<std::filesystem::perms> mode);

    std::unique_ptr<LookHold> hold_;  ///< none once the visit has ended
    std::filesystem::path cloneRoot_;
    std::optional<std::filesystem::perms> mode_;
};

/// Puts right what a visit left that died: the clone folder and the keys of the settings store. For the
/// holder of the television alone. Errors: those of `Visit::begin`.
Result<void> endDeadVisit(const CloneContext& context);

}  // namespace vxclone
