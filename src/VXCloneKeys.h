#pragma once

// Names that the library shares with the television and with its caller.

#include <cstdint>

/// The values of the direction of a run.
inline constexpr std::int32_t kDirectionBackup = 0;
inline constexpr std::int32_t kDirectionRestore = 1;

/// Settings-store keys through which a caller follows a run.
inline constexpr char kCloneProgressKey[] = "db/hotel/clone_progress";
inline constexpr char kCloneResultKey[] = "db/hotel/clone_result";

/// Feature, an int: whether the network-backed categories take part.
inline constexpr char kNetworkSupportFeature[] = "com.kestrel/featureconf/network.network_support";

/// Feature, a switch: whether a package's tuner number carries the regional variant.
inline constexpr char kTunerSupportFeature[] =
    "com.kestrel/featureconf/vx_hotel_cloning.product_clone_info.tuner_support";

/// Entries of the secure storage.
inline constexpr char kAesKeyEntry[] = "VX_CLONE_API_AES_KEY";
inline constexpr char kAesIvEntry[] = "VX_CLONE_API_AES_IV";
