#include "virtual_tv/factory/profile_shelf.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "virtual_tv/base/shipped_files.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

constexpr const char* kExtension = ".json";

}  // namespace

ProfileShelf ProfileShelf::ofThisProgram() {
    return ProfileShelf(shippedData() / "profiles");
}

std::vector<std::string> ProfileShelf::names() const {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder_, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (entry->path().extension() == kExtension) {
            names.push_back(entry->path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

Result<fs::path> ProfileShelf::find(const std::string& nameOrFile) const {
    if (nameOrFile.find('/') != std::string::npos || fs::path(nameOrFile).extension() == kExtension) {
        return fs::path(nameOrFile);
    }
    const std::vector<std::string> shipped = names();
    if (std::find(shipped.begin(), shipped.end(), nameOrFile) != shipped.end()) {
        return folder_ / (nameOrFile + kExtension);
    }
    if (shipped.empty()) {
        return failure(ErrorCode::UnknownProfile,
                       fmt::format("there is no profile {}: {} holds none; give the path of a .json file",
                                   nameOrFile, folder_.string()));
    }
    return failure(ErrorCode::UnknownProfile,
                   fmt::format("there is no profile {}; choose one of {}, or give the path of a .json file",
                               nameOrFile, fmt::join(shipped, ", ")));
}

}  // namespace vxtv
