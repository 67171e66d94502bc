#include "cloning_app/report/shown_phase.h"

#include <array>

namespace vxclone {

namespace {

struct PhaseFact {
    ShownPhase phase;
    std::string_view name;
    std::string_view words;
    int weight;
};

// In the order of the enumeration. The weights are hundredths of the time of a usual restore and of a usual
// backup. The phases of a run divide the whole by their weights.
constexpr std::array kFacts = {
    PhaseFact{ShownPhase::Staging, "staging", "copying and checking", 15},
    PhaseFact{ShownPhase::Safety, "safety", "safety backup", 30},
    PhaseFact{ShownPhase::Saving, "saving", "saving", 45},
    PhaseFact{ShownPhase::Sealing, "sealing", "sealing", 10},
    PhaseFact{ShownPhase::Writing, "writing", "writing", 40},
    PhaseFact{ShownPhase::Load, "load", "loading", 28},
    PhaseFact{ShownPhase::LookingUp, "looking-up", "looking up", 2},
    PhaseFact{ShownPhase::ReadBack, "read-back", "reading back", 20},
    PhaseFact{ShownPhase::Closing, "closing", "closing", 5},
};
static_assert(kFacts.size() == kShownPhaseCount);
static_assert(kFacts.back().phase == static_cast<ShownPhase>(kShownPhaseCount - 1));

const PhaseFact& factOf(ShownPhase phase) {
    return kFacts.at(static_cast<std::size_t>(phase));
}

}  // namespace

std::string_view nameOf(ShownPhase phase) {
    return factOf(phase).name;
}

std::string_view wordsOf(ShownPhase phase) {
    return factOf(phase).words;
}

int weightOf(ShownPhase phase) {
    return factOf(phase).weight;
}

ShownPhases phasesOfBackup() {
    return {ShownPhase::Saving, ShownPhase::Sealing, ShownPhase::Writing, ShownPhase::Closing};
}

ShownPhases phasesOfLoad(bool safety, bool readBack) {
    ShownPhases phases = {ShownPhase::Staging};
    if (safety) {
        phases.push_back(ShownPhase::Safety);
    }
    phases.insert(phases.end(), {ShownPhase::Load, ShownPhase::LookingUp});
    if (readBack) {
        phases.push_back(ShownPhase::ReadBack);
    }
    phases.push_back(ShownPhase::Closing);
    return phases;
}

ShownPhases phasesOfDiff() {
    return {ShownPhase::Saving, ShownPhase::Closing};
}

ShownPhases phasesOfDryRun(bool quick) {
    return quick ? ShownPhases{ShownPhase::Staging, ShownPhase::Closing}
                 : ShownPhases{ShownPhase::Staging, ShownPhase::Saving, ShownPhase::Closing};
}

}  // namespace vxclone
