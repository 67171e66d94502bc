#pragma once

// The clone directory on the television. It exists with and without the trailing slash, because the services
// expect different forms.

#define VX_CLONE_DIRECTORY "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone"

inline constexpr char kCloneDirectory[] = VX_CLONE_DIRECTORY;
inline constexpr char kCloneDirectoryWithSlash[] = VX_CLONE_DIRECTORY "/";

/// The settings snapshot: its directory, and the file's name in it.
inline constexpr char kVconfDirectory[] = VX_CLONE_DIRECTORY "/vconf/";
inline constexpr char kVconfFileName[] = "Vconf.json";

/// The television's own pictures and home menu, one directory each.
inline constexpr char kLogoDirectory[] = VX_CLONE_DIRECTORY "/logo/";
inline constexpr char kMbrLogoDirectory[] = VX_CLONE_DIRECTORY "/VXMBRLogo/";
inline constexpr char kHomeMenuDirectory[] = VX_CLONE_DIRECTORY "/VXHotel/";

/// Paths that services get besides the whole directory: for the home data, the timers, the channel map and
/// its archive.
inline constexpr char kHomeDataEntry[] = VX_CLONE_DIRECTORY "/org.vorta.homedatacontrol-service";
inline constexpr char kTimerDirectory[] = VX_CLONE_DIRECTORY "/tvtimer/";
inline constexpr char kChannelMapDirectory[] = VX_CLONE_DIRECTORY "/tvs-chms/";
inline constexpr char kChannelMapArchive[] = VX_CLONE_DIRECTORY "/tvs-chms/tvs-chms.zip";

/// The package's identity, relative to the directory that the caller passes.
inline constexpr char kProductInfoFile[] = "/ProductCloneInfo.txt";

/// The seal while it is made or checked: plain, and enciphered.
inline constexpr char kPlainManifest[] = VX_CLONE_DIRECTORY "/validate_temp.txt";
inline constexpr char kEncipheredManifest[] = VX_CLONE_DIRECTORY "/validate.txt";

/// The clone key as it is shipped, and the file that shows that the secure storage is ready.
inline constexpr char kKeyFile[] = "/usr/share/wqd/vx-clone-api-key/00000044.bin";
inline constexpr char kSecureStorageReady[] = "/tmp/securestorage-ready";

#undef VX_CLONE_DIRECTORY
