#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>

#include "cloning_app/run/integrity.h"
#include "tests/unit/cloning_app/fake_engine.h"

/// Makes what is in the folder a package of this television, complete and sealed.
inline void sealFolder(const std::filesystem::path& folder) {
    FakeEngine engine;
    const vxclone::Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY));
    const auto sealed = vxclone::sealPackage(
        engine, {opened.get(), folder.string(), vxclone::Place::Television}, vxclone::televisionIdentity());
    ASSERT_TRUE(sealed) << sealed.error().sentence;
}
