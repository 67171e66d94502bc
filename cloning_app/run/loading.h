#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cloning_app/run/integrity.h"
#include "cloning_app/run/read_back.h"
#include "cloning_app/run/run_record.h"
#include "cloning_app/run/staged_package.h"

namespace vxclone {

/// What the library is told to load, and what is left out of that and why.
struct Plan {
    std::vector<VXClone> list;
    std::vector<Row> leftOut = {};
    bool everything = false;  ///< nobody chose

    bool holds(VXClone category) const;
};

/// A package in the clone folder, let in and ready to be loaded.
struct ReadyPackage {
    StagedPackage package;
    Examination examined;
    Plan plan;
    std::optional<std::vector<Setting>>
        settings;  ///< none where the package holds none or they are not chosen
};

/// Reads what is needed of an admitted package. Errors: its settings are to be loaded and damaged; a stop.
Result<ReadyPackage> makeReady(const CloneContext& context, StagedPackage package, Examination examined,
                               Plan plan);

/// What a load is to do beside the library's work.
struct LoadOptions {
    bool readBack = true;
    bool keepIdentity = false;
    std::optional<ComparedState> before = {};  ///< what the television holds, where that is known
    bool removesLogo = false;                  ///< that the boot logo is gone afterwards is what is wanted
};

/// Lets the library load the package and judges what came of it; the record follows. Result: the report,
/// without closing sentences about the whole. Errors: nothing was touched where the record, the settings
/// store or a stop kept the run from beginning; the library broke off.
Result<Report> load(const CloneContext& context, ReadyPackage& ready, const LoadOptions& options,
                    RunRecorder& recorder);

/// "Restored from X." or what is wrong; `done` is the sentence for when nothing is.
std::string endSentence(const Report& report, const std::string& done);

}  // namespace vxclone
