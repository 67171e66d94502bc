#pragma once

#include <optional>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// What kind of television it is. A part that a television does not tell, or a package does not hold, is
/// none.
struct Identity {
    std::optional<std::string> model;
    std::optional<std::string> productTag;
    std::optional<int> tuner;  ///< with the mark of the regional variant
};

/// What this television says of itself.
Identity televisionIdentity();

/// The identity as the file of a package: product tag, model and tuner number, a line each. The library's
/// check reads this form; what `VXCloneAPI::WriteDataToFile` makes is another, which that check never
/// accepts. Errors: `IdentityUnusable`, a part is missing or is nothing that the check could read back.
Result<std::string> identityText(const Identity& identity);

/// The identity in the text of such a file. Parts that are not there, and a tuner that is no number, are
/// none.
Identity parseIdentity(const std::string& text);

/// More than any file of an identity holds.
inline constexpr std::size_t kMostIdentityBytes = 1024;

}  // namespace vxclone
