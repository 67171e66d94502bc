#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cloning_app/check/integrity.h"
#include "cloning_app/check/plan.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/run/read_back.h"
#include "cloning_app/run/staged_package.h"

namespace vxclone {

/// A package in the clone folder, let in and ready to be loaded.
struct ReadyPackage {
    StagedPackage package;
    Examination examined;
    Holdings holdings;
    Plan plan;
    std::optional<std::vector<Setting>>
        settings;  ///< none where the package holds none or they are not chosen
};

/// Reads what is needed of an admitted package, and leaves out of the plan what it lacks. Errors: its
/// settings are to be loaded and damaged; it holds nothing of the plan (`CategoryFailed`); a stop.
Result<ReadyPackage> makeReady(const CloneContext& context, StagedPackage package, Examination examined,
                               Plan plan);

/// What a load is to do beside the library's work.
struct LoadOptions {
    bool readBack = true;
    bool keepIdentity = false;
    Declared without = {};                     ///< what this television does not have
    std::optional<ComparedState> before = {};  ///< what the television holds, where that is known
    std::vector<PackageEntry> added = {};      ///< files to take out of the home menu before the load
    std::vector<VXClone> removedLogos = {};    ///< that the load takes away: the package has none
};

/// Lets the library load the package and judges what came of it; the record follows. Result: the report,
/// without closing sentences about the whole. Errors: nothing was touched where the record, the settings
/// store or a stop kept the run from beginning; the library broke off.
Result<Report> load(const CloneContext& context, ReadyPackage& ready, const LoadOptions& options,
                    RunRecorder& recorder);

/// "Restored from X." or what is wrong; `done` is the sentence for when nothing is.
std::string endSentence(const Report& report, const std::string& done);

}  // namespace vxclone
