#include "tests/unit/cloning_app/fake_engine.h"

#include <cstdint>
#include <filesystem>

#include "tests/unit/cloning_app/fake_system_info.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace {

/// The library's own hash. It does not depend on the names and the order of the files.
std::uint32_t hashOf(const std::vector<std::string>& files) {
    std::uint32_t total = 0;
    for (const std::string& path : files) {
        std::uint32_t hash = 0;
        for (const char character : readFile(path)) {
            hash = hash * 3 + static_cast<std::uint32_t>(static_cast<signed char>(character));
        }
        total += hash;
    }
    return total;
}

}  // namespace

vxclone::Result<int> FakeEngine::checkIdentity(const std::string& folder) {
    if (!identityAnswer || *identityAnswer != kCompares) {
        return identityAnswer;
    }
    std::ifstream file(folder + "/ProductCloneInfo.txt");
    if (!file) {
        return 5;
    }
    const FakeSystemInfo& info = FakeSystemInfo::instance();
    std::string line;
    std::getline(file, line);
    if (line != info.productTag.value_or("")) {
        return 3;
    }
    std::getline(file, line);
    if (!info.model || line != *info.model) {
        return 1;
    }
    if (!std::getline(file, line)) {
        return 0;
    }
    if (!info.regionalTuner) {
        return -1;
    }
    return std::atoi(line.c_str()) == (info.tuner.value_or(0) | (*info.regionalTuner ? 0x80 : 0)) ? 0 : 4;
}

vxclone::Result<bool> FakeEngine::seal(const std::vector<std::string>& files, const std::string& seal) {
    sealed = files;
    const std::filesystem::path folder = std::filesystem::path(seal).parent_path();
    writeFile(folder / "validate_temp.txt", "left when it fails");
    writeFile(folder / "validate.txt", "left when it fails");
    if (!sealing || !*sealing) {
        return sealing;
    }
    writeFile(seal, std::to_string(hashOf(files)));
    // As the real library does, so a seal with its own name would be lost.
    std::filesystem::remove(folder / "validate_temp.txt");
    std::filesystem::remove(folder / "validate.txt");
    return true;
}

vxclone::Result<bool> FakeEngine::checkSeal(const std::vector<std::string>& files, const std::string& seal) {
    checked = files;
    const std::filesystem::path folder = std::filesystem::path(seal).parent_path();
    writeFile(folder / "validate_temp.txt", "");
    std::filesystem::remove(folder / "validate_temp.txt");
    return readsItsSeals && std::filesystem::is_regular_file(seal) &&
           readFile(seal) == std::to_string(hashOf(files));
}
