#pragma once

#include <filesystem>
#include <string>

namespace vxtest {

// Changes to a package by somebody who has the keys of the fleet, made with the product's own code. All use
// the keys of the television of this process, and throw on failure.

/// Makes a new manifest and a new seal for the current content of the package.
void sealAgain(const std::filesystem::path& package);

/// Writes a manifest with this body, authenticates it, and seals everything.
void sealWithManifest(const std::filesystem::path& package, const std::string& body);

/// Removes the manifest and makes a new seal, as in a package of another tool.
void sealWithoutManifest(const std::filesystem::path& package);

/// The file of a manifest with this body, authenticated.
std::string manifestFile(const std::string& body, const std::string& version = "1.1");

/// The body of the manifest in the file.
std::string bodyOf(const std::string& manifestFile);

}  // namespace vxtest
