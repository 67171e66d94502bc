#pragma once

// Where this television keeps its pictures. Whether a path ends in "/" is the platform's business; the
// directory need not exist.

#include <string>

/// The boot logo directory.
std::string vx_get_bootlogo_path();

/// The directory of the set-top box's logo and icons.
std::string vx_get_mbrlogo_path();

/// The home-menu directory.
std::string vx_get_homemenu_path();
