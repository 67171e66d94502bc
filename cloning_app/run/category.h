#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "cloning_app/errors.h"
#include "include/vx_clone_api.h"

namespace vxclone {

enum class Direction { Backup, Restore };

/// What can be learnt of a category's outcome in one direction.
enum class Handling {
    Reported,      ///< the library reports success or failure
    NotEvaluated,  ///< the library reports a failure whatever happened
    ReadBack,      ///< the library says nothing; vxclone looks at what it left
    Added,         ///< the library leaves it out; vxclone sees to it
    Silent,        ///< nothing is done and nothing said
    NotInBackup,   ///< a backup leaves it out
    NotPossible    ///< a restore refuses it
};

/// One category of a clone.
struct Category {
    VXClone value;
    std::string_view name;        ///< on the command line and in JSON
    std::string_view enumerator;  ///< in the library's result list
    std::string_view words;       ///< for people
    Handling inBackup;
    Handling inRestore;
    std::string_view entry;  ///< the package's entry without which a restore of it fails; may be empty
};

inline constexpr std::size_t kCategoryCount = 15;

/// All of them, in the library's order: the index is the value.
const std::array<Category, kCategoryCount>& categories();

const Category& categoryOf(VXClone value);
Handling handlingOf(const Category& category, Direction direction);
/// Whether a restore loads anything of the category.
bool isLoaded(const Category& category);

/// The category of that enumerator's name.
std::optional<VXClone> categoryNamed(std::string_view enumerator);

/// All values in the library's order.
std::vector<VXClone> allCategories();

/// The categories of a list such as "channels,apps": our names or the enumerators', in the library's order,
/// each once. Errors: `UnknownCategory`, naming it and all that there are.
Result<std::vector<VXClone>> parseCategories(std::string_view list);

}  // namespace vxclone
