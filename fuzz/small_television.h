#pragma once

#include <filesystem>
#include <string_view>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/store/data_service.h"

namespace vxfuzz {

/// A television for all inputs of a run, and a folder for packages.
class SmallTelevision {
 public:
    vxtv::Database& database() const { return television_.database(); }
    const std::filesystem::path& package() const { return package_; }
    const std::filesystem::path& otherPackage() const { return otherPackage_; }

    /// All data of the service on the television.
    vxtv::Texts texts(std::string_view service) const;

 private:
    vxtv::test::TestFolder folder_;
    vxtv::Television television_ = vxtv::test::makeTelevision(folder_.path() / "tv");
    std::filesystem::path package_ = folder_.path() / "package";
    std::filesystem::path otherPackage_ = folder_.path() / "other";
    bool made_ =
        std::filesystem::create_directory(package_) && std::filesystem::create_directory(otherPackage_);
};

}  // namespace vxfuzz
