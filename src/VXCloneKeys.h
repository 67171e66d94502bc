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
