#include "virtual_tv/session/exposure.h"

#include <algorithm>
#include <system_error>

#include "virtual_tv/session/covered.h"

namespace vxtv {

std::vector<std::filesystem::path> pathsToExpose(const std::vector<std::filesystem::path>& needed,
                                                 const std::vector<std::filesystem::path>& covered) {
    auto candidates = needed;
    std::sort(candidates.begin(), candidates.end());
    std::vector<std::filesystem::path> exposed;
    for (const auto& path : candidates) {
        const auto holdsPath = [&](const auto& other) { return other == path || isBelow(path, other); };
        const bool isCovered = std::any_of(covered.begin(), covered.end(),
                                           [&](const auto& root) { return isBelow(path, root); }) &&
                               std::find(covered.begin(), covered.end(), path) == covered.end();
        if (isCovered && std::none_of(exposed.begin(), exposed.end(), holdsPath)) exposed.push_back(path);
    }
    return exposed;
}

std::vector<std::filesystem::path> bothNames(const std::filesystem::path& path) {
    auto written = std::filesystem::absolute(path).lexically_normal();
    if (!written.has_filename()) written = written.parent_path();
    std::error_code absent;
    const auto real = std::filesystem::canonical(path, absent);
    if (absent || real == written) return {written};
    return {written, real};
}

std::filesystem::path ownTree() {
    std::error_code unreadable;
    return std::filesystem::read_symlink("/proc/self/exe", unreadable).parent_path().parent_path();
}

}  // namespace vxtv
