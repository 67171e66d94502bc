#pragma once

// Where the clone package lies on the television. Written with and without the trailing slash, because the
// services that are handed these paths differ in what they expect.

#define VX_CLONE_DIRECTORY "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone"

inline constexpr char kCloneDirectory[] = VX_CLONE_DIRECTORY;

/// The settings snapshot: its directory, and the file's name in it.
inline constexpr char kVconfDirectory[] = VX_CLONE_DIRECTORY "/vconf/";
inline constexpr char kVconfFileName[] = "Vconf.json";

/// The package's identity, below the directory that the caller names.
inline constexpr char kProductInfoFile[] = "/ProductCloneInfo.txt";

/// The manifest while it is made or checked: plain, and enciphered.
inline constexpr char kPlainManifest[] = VX_CLONE_DIRECTORY "/validate_temp.txt";
inline constexpr char kEncipheredManifest[] = VX_CLONE_DIRECTORY "/validate.txt";

/// The clone key as it is shipped, and the mark of a secure storage that is up.
inline constexpr char kKeyFile[] = "/usr/share/wqd/vx-clone-api-key/00000044.bin";
inline constexpr char kSecureStorageReady[] = "/tmp/securestorage-ready";

#undef VX_CLONE_DIRECTORY
