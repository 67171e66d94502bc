#pragma once

// Names that the library shares with the television and with its caller.

#include <cstdint>

/// The values of the direction of a run.
inline constexpr std::int32_t kDirectionBackup = 0;
inline constexpr std::int32_t kDirectionRestore = 1;

/// The settings-store keys by which a caller follows a run.
inline constexpr char kCloneProgressKey[] = "db/hotel/clone_progress";
inline constexpr char kCloneResultKey[] = "db/hotel/clone_result";

/// Settings of network time: the mode, an int that is 0 if network time is on, and the server, a string.
inline constexpr char kNtpModeKey[] = "db/menu/system/time/ntp/ntp_mode";
inline constexpr char kNtpServerKey[] = "db/menu/system/time/ntp/server_url";

/// Feature, an int: whether the network-backed categories take part.
inline constexpr char kNetworkSupportFeature[] = "com.kestrel/featureconf/network.network_support";

/// Feature, a bool: whether a package's tuner number has the bit for the regional variant.
inline constexpr char kTunerSupportFeature[] =
    "com.kestrel/featureconf/vx_hotel_cloning.product_clone_info.tuner_support";

/// The applications that save and load their own data: a fixed one, and the key of a string setting that
/// names the other one.
inline constexpr char kOrvelApplication[] = "org.vorta.orvel-app";
inline constexpr char kFirstScreenKey[] = "db/first_screen/type";

/// The request that applications get at their launch and over their message port.
inline constexpr char kRequestKey[] = "externalRequest";
inline constexpr char kRequestBackup[] = "request_clone_backup";
inline constexpr char kRequestRestore[] = "request_clone_restore";
inline constexpr char kPathKey[] = "path";

/// Entries of the secure storage.
inline constexpr char kAesKeyEntry[] = "VX_CLONE_API_AES_KEY";
inline constexpr char kAesIvEntry[] = "VX_CLONE_API_AES_IV";
