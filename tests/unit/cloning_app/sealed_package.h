#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>

#include "cloning_app/check/sealing.h"
#include "tests/unit/cloning_app/fake_engine.h"

/// The origin of a package of this television.
inline vxclone::PackageOrigin originHere() {
    return {"Room 101",
            "2026-03-01T12:30:00Z",
            "vxclone 1.0.0",
            vxclone::televisionIdentity(),
            {{"av", "success"}, {"apps", "success", "it answered", "org.vorta.orvel-app"}}};
}

/// Completes and seals the folder as a package of this television. Result: its digest.
inline std::string sealFolder(const std::filesystem::path& folder,
                              const vxclone::PackageOrigin& origin = originHere()) {
    FakeEngine engine;
    const vxclone::Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY));
    const auto key = vxclone::PackageKey::ofTelevision();
    const auto sealed = vxclone::sealPackage(
        engine, {opened.get(), folder.string(), vxclone::Place::Television}, origin, key.value());
    EXPECT_TRUE(sealed) << sealed.error().sentence;
    return sealed ? sealed->digest : std::string();
}

/// Makes the folder a package of another tool: only with identity and seal.
inline void sealFolderWithoutManifest(const std::filesystem::path& folder) {
    sealFolder(folder);
    std::filesystem::remove(folder / "manifest.json");
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.path().filename() != "validate.txt") {
            files.push_back(entry.path().string());
        }
    }
    FakeEngine engine;
    ASSERT_TRUE(engine.seal(files, (folder / "validate.vxclone-new").string()).value());
    std::filesystem::rename(folder / "validate.vxclone-new", folder / "validate.txt");
}
