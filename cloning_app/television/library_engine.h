#pragma once

#include "cloning_app/television/clone_engine.h"

namespace vxclone {

/// The clone library of this television.
class LibraryEngine final : public CloneEngine {
 public:
    Result<void> backUp() override;
    Result<void> restore(const std::vector<VXClone>& list) override;
    Result<int> checkIdentity(const std::string& folder) override;
    Result<bool> hasKey() override;
    Result<bool> seal(const std::vector<std::string>& files, const std::string& seal) override;
    Result<bool> checkSeal(const std::vector<std::string>& files, const std::string& seal) override;
};

}  // namespace vxclone
