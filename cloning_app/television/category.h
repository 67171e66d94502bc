#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "cloning_app/base/errors.h"
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

/// What a whole package holds of a category.
enum class Holding {
    Nothing,         ///< the category has no entry of its own
    Parts,           ///< every one of its parts
    Folder,          ///< its entry, a folder that may be empty
    FolderIfThere,   ///< the same, where the television has such a folder: vxclone looks for itself
    EachSetting,     ///< a value for every setting that travels
    EachApplication  ///< a folder for every application that the library asks
};

/// The most parts that a category has.
inline constexpr std::size_t kMostParts = 2;

/// One category of a clone.
struct Category {
    VXClone value;
    std::string_view name;        ///< on the command line and in JSON
    std::string_view enumerator;  ///< in the library's result list
    std::string_view words;       ///< for people
    Handling inBackup;
    Handling inRestore;
    Holding holding;
    std::string_view entry;  ///< its entry at the top of a package; empty where it has none of its own
    /// Of `Holding::Parts`: files, or folders with a file in them. An empty name stands for none.
    std::array<std::string_view, kMostParts> parts;
};

inline constexpr std::size_t kCategoryCount = 15;

/// All of them, in the library's order: the index is the value.
const std::array<Category, kCategoryCount>& categories();

const Category& categoryOf(VXClone value);
Handling handlingOf(const Category& category, Direction direction);
/// Whether a restore loads anything of the category.
bool isLoaded(const Category& category);

/// The category whose entry at the top of a package has this name; none for the entries of applications and
/// of services that nobody knows.
std::optional<VXClone> categoryOfEntry(std::string_view entry);

/// The category of that enumerator's name.
std::optional<VXClone> categoryNamed(std::string_view enumerator);

/// The category of that name on the command line or in JSON.
std::optional<VXClone> categoryCalled(std::string_view name);

/// All values in the library's order.
std::vector<VXClone> allCategories();

/// The names in a list such as "channels, apps", without the blanks around them. An empty list has none.
std::vector<std::string_view> namesInList(std::string_view list);

/// The categories of a list such as "channels, apps": our names or the enumerators', in capitals or not and
/// with blanks around them or without; in the library's order, each once. Errors: `UnknownCategory`, naming
/// it, the one that is likely meant and all that there are.
Result<std::vector<VXClone>> parseCategories(std::string_view list);

}  // namespace vxclone
