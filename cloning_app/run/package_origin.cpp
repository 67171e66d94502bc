#include "cloning_app/run/package_origin.h"

#include <fmt/format.h>

#include <array>
#include <ctime>

#include "cloning_app/version.h"

namespace vxclone {

namespace {

std::string timeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

}  // namespace

Result<PackageOrigin> originOfBackup(const std::string& name) {
    if (name.empty() || name.size() > kLongestPackageName) {
        return failure(ErrorCode::BadArguments,
                       fmt::format("the package's name must have 1 to {} bytes; choose another with --name",
                                   kLongestPackageName));
    }
    const Identity identity = televisionIdentity();
    if (const auto text = identityText(identity); !text) {
        return tl::make_unexpected(text.error());
    }
    return PackageOrigin{name, timeNow(), fmt::format("vxclone {}", version()), identity};
}

std::vector<ManifestResult> resultsOf(const std::vector<Row>& rows) {
    std::vector<ManifestResult> results;
    for (const Row& row : rows) {
        results.push_back({std::string(categoryOf(row.category).name), std::string(nameOf(row.verdict)),
                           row.detail, row.subject});
    }
    return results;
}

}  // namespace vxclone
