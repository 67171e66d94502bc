#pragma once

#include <string_view>
#include <vector>

namespace vxclone {

/// The current work of a run, as its progress shows it. The record of a run has other phases (`RunPhase`),
/// which say what may have been changed.
enum class ShownPhase {
    Staging,    ///< the package is copied onto the television and checked
    Safety,     ///< the television is saved into the safety backup
    Saving,     ///< the library saves the television
    Sealing,    ///< the package is completed and sealed
    Writing,    ///< the package goes to the stick
    Load,       ///< the library loads the package
    LookingUp,  ///< the loaded settings are read on the television
    ReadBack,   ///< the television is saved again and compared with the package
    Closing     ///< the last checks, the record and what has to be removed
};

inline constexpr std::size_t kShownPhaseCount = 9;

/// The whole run in per cent.
inline constexpr int kWholePercent = 100;

/// The phase's name for programs, and its words for people.
std::string_view nameOf(ShownPhase phase);
std::string_view wordsOf(ShownPhase phase);

/// The share of the run's time that the phase needs, relative to the other phases of the run.
int weightOf(ShownPhase phase);

/// The phases of a run in their order.
using ShownPhases = std::vector<ShownPhase>;
ShownPhases phasesOfBackup();
/// The phases of a restore or an undo.
ShownPhases phasesOfLoad(bool safety, bool readBack);
/// The phases of a comparison of the television with a package.
ShownPhases phasesOfDiff();
ShownPhases phasesOfDryRun(bool quick);

}  // namespace vxclone
