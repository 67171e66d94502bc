#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// A folder of this machine that acts as a USB stick in the television.
struct Stick {
    std::filesystem::path hostFolder;  ///< absolute, real
    std::string name;                  ///< it appears as /media/NAME
    bool readOnly = false;             ///< the folder is not writable: a write-protected stick
};

/// Reads HOSTDIR or HOSTDIR:NAME; the default name is `usb`. The text after the last colon is the name unless
/// it contains a slash. On failure (BadArgument) the sentence says whether the folder or the name is wrong.
Result<Stick> parseStick(std::string_view text);

/// The same for several sticks, whose names must be different.
Result<std::vector<Stick>> parseSticks(const std::vector<std::string>& texts);

}  // namespace vxtv
