#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/package/package_contents.h"
#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// What of a television is compared: where it is now, or as a package holds it.
struct ComparedState {
    std::vector<Setting> settings;      ///< in the order of their keys
    std::vector<PackageEntry> entries;  ///< with the paths that they have in a package, sorted by these
};

/// A setting or a file that the two states do not have alike; in a state that does not have it, it is none.
struct Difference {
    std::string category;  ///< as on the command line; "identity" or "other" for what belongs to none
    std::string what;      ///< the setting's key, or the file's path
    bool isSetting = false;
    std::optional<Setting> firstSetting = {};
    std::optional<Setting> secondSetting = {};
    bool inFirst = true;
    bool inSecond = true;
    std::string application = {};  ///< whose file it is, of the category "apps"; else empty
};

/// The category that an entry of a package belongs to, by its path: "identity" or "other" for what belongs to
/// none.
std::string_view categoryOfPath(std::string_view path);

/// The differences, grouped by category.
std::vector<Difference> differencesOf(const ComparedState& first, const ComparedState& second);

/// What is different, to follow the name of the setting or of the file; `first` and `second` name the two
/// states. Of a secret only that it differs.
std::string wordsOf(const Difference& difference, const std::string& first, const std::string& second);

/// The members of a JSON line.
nlohmann::ordered_json jsonOf(const Difference& difference);

}  // namespace vxclone
