#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
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

/// What a whole package holds of a category, and how that is compared with a television.
enum class Holding {
    Nothing,          ///< no entry of its own; nothing to compare
    Parts,            ///< every one of its parts; compared with what the library saves of the television
    Folder,           ///< its entry, a folder that may be empty; compared with the television's own folder
    FolderIfThere,    ///< the same, where the television has such a folder: vxclone looks for itself
    EachSetting,      ///< a value for every setting that travels; compared with the settings store
    EachApplication,  ///< a folder for every application that the library asks; compared with what they save
};

/// Who chose the name of a category's entry in a package.
enum class EntryBy {
    Nobody,   ///< there is no entry
    Library,  ///< the same for every television, so that it marks a folder as a package
    Service   ///< this television's service
};

/// How a package makes a restore take away what the television has of a category.
enum class Removal {
    Never,
    ByNoEntry,    ///< the package has no entry of the category
    ByEmptyEntry  ///< the entry is an empty folder
};

/// What a restore does with what the television has of a category and the package does not hold.
enum class Surplus { Replaced, Stays };

/// What a category puts to use that travels with another one.
struct Need {
    VXClone category;
    std::string_view why;  ///< empty: nothing is needed
    /// The settings without which the category is not loaded.
    std::span<const std::string_view> settings;
};

inline constexpr Need kNoNeed = {VXCLONE_FACTORY_SETTINGS, "", {}};

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
    EntryBy entryBy;
    /// Of `Holding::Parts`: files, or folders with a file in them, all of them in the entry or the entry
    /// itself.
    std::span<const std::string_view> parts;
    /// Where the files of the entry lie on the television as they are; null where they lie nowhere as files.
    std::string (*folder)();
    Removal removal;
    Surplus surplus;
    Need need;
};

inline constexpr std::size_t kCategoryCount = 15;

/// The first name of a path.
constexpr std::string_view topOf(std::string_view path) {
    return path.substr(0, path.find('/'));
}

/// All of them, in the library's order: the index is the value.
const std::array<Category, kCategoryCount>& categories();

const Category& categoryOf(VXClone value);
Handling handlingOf(const Category& category, Direction direction);
/// Whether a restore loads anything of the category.
bool isLoaded(const Category& category);

/// The category whose entry at the top of a package has this name; none for the entries of applications and
/// of services that nobody knows.
std::optional<VXClone> categoryOfEntry(std::string_view entry);

/// Whether an entry of this name at its top makes a folder a clone package: the library gives it that name on
/// every television.
bool isKnownEntry(std::string_view name);

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
