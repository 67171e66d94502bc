#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// Whether the bytes are text in UTF-8.
bool isUtf8(std::string_view bytes);

/// The keys of those texts that are not what the television holds, because that is no UTF-8: the settings
/// file is JSON, which holds no other text, and the library puts other characters in place of such bytes.
/// `settings` are those of a backup of this television.
std::vector<std::string> textsThatCannotTravel(const std::vector<Setting>& settings);

/// The setting of this television with the longest text. Any thread.
struct LongText {
    std::string key;
    std::size_t bytes = 0;
};
LongText longestText();

}  // namespace vxclone
