#include "virtual_tv/session/covered.h"

#include <algorithm>
#include <system_error>

namespace vxtv {

namespace {

std::vector<CoveredRoot> findCoveredRoots() {
    const Folder relative{std::filesystem::path()};
    std::vector<CoveredRoot> roots;
    for (const auto& inFolder : {relative.opt(), relative.tmp(), relative.media()}) {
        const auto seenAs = "/" / inFolder;
        roots.push_back({seenAs, inFolder});
        std::error_code absent;
        const auto real = std::filesystem::canonical(seenAs, absent);
        if (!absent && real != seenAs) roots.push_back({real, inFolder});
    }
    return roots;
}

}  // namespace

const std::vector<CoveredRoot>& coveredRoots() {
    static const auto roots = findCoveredRoots();
    return roots;
}

bool isBelow(const std::filesystem::path& path, const std::filesystem::path& ancestor) {
    const auto [end, next] = std::mismatch(ancestor.begin(), ancestor.end(), path.begin(), path.end());
    return end == ancestor.end() && next != path.end();
}

const CoveredRoot* coveringRoot(const std::filesystem::path& path) {
    const auto& roots = coveredRoots();
    const auto found = std::find_if(roots.begin(), roots.end(),
                                    [&](const auto& root) { return isBelow(path, root.seenAs); });
    return found == roots.end() ? nullptr : &*found;
}

std::filesystem::path pathInFolder(const std::filesystem::path& path) {
    const auto* root = coveringRoot(path);
    return root == nullptr ? std::filesystem::path() : root->inFolder / path.lexically_relative(root->seenAs);
}

}  // namespace vxtv
