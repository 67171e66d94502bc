#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/base/disk_calls.h"
#include "cloning_app/base/stop_flag.h"
#include "cloning_app/check/completeness.h"
#include "cloning_app/report/progress_view.h"
#include "cloning_app/storage/mounts.h"
#include "cloning_app/television/clone_engine.h"

namespace vxclone {

/// What a run works with; everything stays the caller's.
struct CloneContext {
    CloneEngine& engine;
    ProgressView& view;
    const StopFlag& stop;
    std::filesystem::path cloneRoot;   ///< where the engine writes and reads
    DiskCalls disk = realDiskCalls();  ///< for what is written to the stick
    MountQuestions mounts = realMountQuestions();
};

/// What of a package is restored, and how.
struct RestoreOptions {
    std::vector<VXClone> list;
    bool forceModel = false;    ///< load a package of another model, if nothing else is wrong with it
    bool everything = false;    ///< the list is all there is because nobody chose
    std::string expect = {};    ///< the beginning of the only manifest digest that is let in; empty: any is
    bool safety = true;         ///< back the television up first
    bool readBack = true;       ///< back it up again afterwards, and compare
    bool keepIdentity = false;  ///< leave the settings that belong to this television as they are
    bool dryRun = false;        ///< do everything up to the run, and say what would be done
    Declared without = {};      ///< what this television does not have
    bool quick = false;         ///< of a dry run: compare settings and pictures alone
};

}  // namespace vxclone
