#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/record/run_record.h"

namespace vxclone {

/// What a run leaves that was stopped, died or broke off.
enum class Remains {
    Nothing,      ///< all is as it was before
    OldOrNew,     ///< the stick holds the package before or the new one
    HalfChanged,  ///< the load had begun
    NotReadBack   ///< the load had come to its end
};

/// The name for programs: "half-changed".
std::string_view nameOf(Remains remains);

/// What the run left. Result: none where it came to its end, or ended with an error before it changed
/// anything.
std::optional<Remains> remainsOf(const RunRecord& record);

/// That in words, and what to do: "nothing was changed; start again when ready".
std::string consequenceOf(const RunRecord& record);
/// The same of a command that changes nothing, ever.
std::string consequenceOfLooking();

/// A sentence about a restore or an undo before this run that broke off and left the television changed; none
/// where no such run is known, or this one loaded something itself.
std::optional<std::string> sentenceAboutEarlier(const RunRecord& record);

/// The run in words: "restore from /media/usb/clone, begun 2026-11-21T05:10:50Z".
std::string describe(const RunRecord& record);

/// What the next start says of the last run and those before, where not all of them came to their end.
std::vector<std::string> sentencesForTheNextStart(const RunRecord& record);

}  // namespace vxclone
