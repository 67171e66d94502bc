#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/record/run_record.h"

namespace vxclone {

/// The state in which an unfinished run leaves the television and the stick.
enum class Remains {
    Nothing,      ///< nothing has changed
    OldOrNew,     ///< the stick holds the old or the new package
    HalfChanged,  ///< the load had begun
    NotReadBack   ///< the load had ended
};

/// The name for programs: "half-changed".
std::string_view nameOf(Remains remains);

/// The state that the run left behind. Result: empty if it was completed, or ended with an error before it
/// changed anything.
std::optional<Remains> remainsOf(const RunRecord& record);

/// The same in words, with the next step: "nothing was changed; start again when ready".
std::string consequenceOf(const RunRecord& record);
/// The same for a command that never changes anything.
std::string consequenceOfLooking();

/// A sentence about an earlier restore or undo that was interrupted and left the television changed. Empty if
/// no such run is known, or if this run has loaded something itself.
std::optional<std::string> sentenceAboutEarlier(const RunRecord& record);

/// The run in words: "restore from /media/usb/clone, begun 2026-11-21T05:10:50Z".
std::string describe(const RunRecord& record);

/// The sentences with which the next command reports the last run and earlier ones that were not completed.
std::vector<std::string> sentencesForTheNextStart(const RunRecord& record);

}  // namespace vxclone
