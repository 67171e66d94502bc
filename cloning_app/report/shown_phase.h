#pragma once

#include <string_view>
#include <vector>

namespace vxclone {

/// What a run works at, as its progress shows it. The record of a run has phases of its own (`RunPhase`),
/// which tell what may be changed by then.
enum class ShownPhase {
    Staging,    ///< the package is copied onto the television and checked
    Safety,     ///< the television is saved into the safety backup
    Saving,     ///< the library saves the television
    Sealing,    ///< the package is completed and sealed
    Writing,    ///< the package goes to the stick
    Load,       ///< the library loads the package
    LookingUp,  ///< what was loaded is looked up on the television
    ReadBack,   ///< the television is saved again and compared with the package
    Closing     ///< the last checks, the record and what has to be removed
};

inline constexpr std::size_t kShownPhaseCount = 9;

/// All of a run, in per cent.
inline constexpr int kWholePercent = 100;

/// The phase's name for programs and its words for people.
std::string_view nameOf(ShownPhase phase);
std::string_view wordsOf(ShownPhase phase);

/// How much of a run's time the phase takes, compared with the others of the same run.
int weightOf(ShownPhase phase);

/// What a run consists of, in the order of the work.
using ShownPhases = std::vector<ShownPhase>;
ShownPhases phasesOfBackup();
/// Of a restore or an undo.
ShownPhases phasesOfLoad(bool safety, bool readBack);
/// Of a comparison of the television with a package.
ShownPhases phasesOfDiff();
ShownPhases phasesOfDryRun(bool quick);

}  // namespace vxclone
