#pragma once

#include <string>
#include <string_view>

namespace vxclone {

/// Where the library writes a package and reads one.
inline constexpr std::string_view kCloneRoot = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/";

inline constexpr const char* kSettingsFolder = "vconf";
inline constexpr const char* kSettingsFileName = "Vconf.json";
inline constexpr std::string_view kSettingsFile = "vconf/Vconf.json";

/// Which kind of television a package is from; the library's seal over all its files; what the package says
/// of itself, which the seal covers.
inline constexpr const char* kIdentityFile = "ProductCloneInfo.txt";
inline constexpr const char* kSealFile = "validate.txt";
inline constexpr const char* kManifestFile = "manifest.json";

/// The library's own working file in the clone root while it makes or checks a seal.
inline constexpr const char* kSealWorkingFile = "validate_temp.txt";

/// The names, beside the package's folder, of a package that is being written and of one that is being
/// replaced.
std::string newSiblingOf(std::string_view folderName);
std::string oldSiblingOf(std::string_view folderName);

}  // namespace vxclone
