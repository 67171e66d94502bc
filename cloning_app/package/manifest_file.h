#pragma once

#include <optional>
#include <string>

#include "cloning_app/package/manifest.h"
#include "cloning_app/package/package_key.h"

namespace vxclone {

/// Who stands behind a manifest.
enum class Authenticity {
    Proven,   ///< it was made with this television's key, and not altered
    Unknown,  ///< this television has no key, so nobody can tell
    Broken    ///< it was altered, or made with another key
};

/// A package's manifest, as it was read.
struct ReadManifest {
    Manifest manifest;
    std::string digest;  ///< its SHA-256: what names exactly this package
    Authenticity authenticity;
};

/// Larger than any manifest. What would need a larger one is not backed up.
inline constexpr std::size_t kMostManifestBytes = std::size_t{8} << 20U;

/// Writes the manifest into the package. Result: its digest. Errors: `NotSealed` when it would be too large,
/// the disk says no.
Result<std::string> writeManifest(const Tree& package, const Manifest& manifest, const PackageKey& key);

/// Reads the package's manifest. Result: none when it has none. `key` may be none. Errors: `Altered` when it
/// is not what a manifest is, `NewerPackage` when a later vxclone made it in a way that this one does not
/// know, it cannot be read, or `stop`, which may be none, was raised meanwhile.
Result<std::optional<ReadManifest>> readManifest(const Tree& package, const std::optional<PackageKey>& key,
                                                 const StopFlag* stop = nullptr);

}  // namespace vxclone
