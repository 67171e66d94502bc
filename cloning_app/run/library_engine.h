#pragma once

#include "cloning_app/run/clone_engine.h"

namespace vxclone {

/// The clone library of this television.
class LibraryEngine final : public CloneEngine {
 public:
    Result<void> backUp() override;
    Result<void> restore(const std::vector<VXClone>& list) override;
};

}  // namespace vxclone
