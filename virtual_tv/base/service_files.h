#pragma once

#include <array>
#include <string_view>

/// What the services of this television leave in a package, by their paths there: files, or folders with
/// files in them. The cloning application looks for them, to know what a package lacks. A port to another
/// television has such a header of its own, with the same names and at least one path in each; the option
/// VXCLONE_SERVICE_FILES names it. All paths of an array have the same first part.
namespace vxport {

inline constexpr std::array<std::string_view, 1> kFactoryFiles = {"factory.backup"};
inline constexpr std::array<std::string_view, 1> kPictureAndSoundFiles = {"picture-and-sound.backup"};
inline constexpr std::array<std::string_view, 1> kHomeDataFiles = {"org.vorta.homedatacontrol-service"};
inline constexpr std::array<std::string_view, 1> kWebApplicationFiles = {"web-applications.backup"};
inline constexpr std::array<std::string_view, 2> kChannelFiles = {"tvs-chms/tvs-chms.zip",
                                                                  "tvs-chms/hotel-channels.backup"};
inline constexpr std::array<std::string_view, 1> kSettingsDataFiles = {"settings-data.backup"};
inline constexpr std::array<std::string_view, 1> kTimerFiles = {"tvtimer"};

}  // namespace vxport
