#pragma once

#include <filesystem>
#include <string>

namespace vxtest {

// What somebody who has the keys of the fleet can do to a package, by the product's own code. All work with
// the keys of the television of this process; each throws where it cannot be done.

/// Makes manifest and seal anew over what the package now holds.
void sealAgain(const std::filesystem::path& package);

/// Gives the package this body of a manifest, authenticated, and a seal over all.
void sealWithManifest(const std::filesystem::path& package, const std::string& body);

/// Takes the manifest away and makes the seal anew: a package of another tool.
void sealWithoutManifest(const std::filesystem::path& package);

/// The file of a manifest with this body, authenticated.
std::string manifestFile(const std::string& body, const std::string& version = "1.1");

/// The body in the file of a manifest.
std::string bodyOf(const std::string& manifestFile);

}  // namespace vxtest
