#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/package/package_contents.h"
#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// The part of a television's state that is compared, either on the television or in a package.
struct ComparedState {
    std::vector<Setting> settings;      ///< in the order of their keys
    std::vector<PackageEntry> entries;  ///< with their paths in a package, sorted by path
};

/// A setting or a file that differs between two states. The value is empty if a state does not have it.
struct Difference {
    std::string category;  ///< as on the command line; "identity" or "other" for what belongs to none
    std::string what;      ///< the setting's key, or the file's path
    bool isSetting = false;
    std::optional<Setting> firstSetting = {};
    std::optional<Setting> secondSetting = {};
    bool inFirst = true;
    bool inSecond = true;
    std::string application = {};  ///< the owner of the file in the category "apps"; otherwise empty
};

/// The category of an entry of a package, by its path: "identity" or "other" if it belongs to none.
std::string_view categoryOfPath(std::string_view path);

/// The differences, grouped by category.
std::vector<Difference> differencesOf(const ComparedState& first, const ComparedState& second);

/// The difference in words, to follow the name of the setting or file. `first` and `second` name the two
/// states. For a secret it only says that the values differ.
std::string wordsOf(const Difference& difference, const std::string& first, const std::string& second);

/// The members of a JSON line.
nlohmann::ordered_json jsonOf(const Difference& difference);

}  // namespace vxclone
