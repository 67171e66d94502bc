#include "cloning_app/run/package_origin.h"

#include <fmt/format.h>

#include "cloning_app/run/run_record.h"
#include "cloning_app/version.h"

namespace vxclone {

namespace {}  // namespace

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
    return PackageOrigin{name, timeText(secondsNow()), fmt::format("vxclone {}", version()), identity};
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
