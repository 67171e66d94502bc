#pragma once

// Where the clone package lies on the television. Written with and without the trailing slash, because the
// services that are handed these paths differ in what they expect.

#define VX_CLONE_DIRECTORY "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone"

inline constexpr char kCloneDirectory[] = VX_CLONE_DIRECTORY;

/// The settings snapshot: its directory, and the file's name in it.
inline constexpr char kVconfDirectory[] = VX_CLONE_DIRECTORY "/vconf/";
inline constexpr char kVconfFileName[] = "Vconf.json";

#undef VX_CLONE_DIRECTORY
