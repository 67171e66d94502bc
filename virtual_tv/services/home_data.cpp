#include "virtual_tv/services/home_data.h"

#include <fmt/format.h>

#include <system_error>

#include "virtual_tv/services/value_services.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

/// A link or a file in place of the folder shows that no television made the package.
Result<void> expectFolder(const fs::path& folder) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(folder, error);
    if (fs::exists(status) && !fs::is_directory(status)) {
        return failure(ErrorCode::NotABackupFile,
                       fmt::format("{} is no folder of home data; make the backup anew", folder.string()));
    }
    return {};
}

}  // namespace

Result<void> backUpHomeData(Database& database, const fs::path& folder) {
    return expectFolder(folder).and_then([&] {
        // If this fails, writing the file fails, too, and gives the reason.
        std::error_code ignored;
        fs::create_directory(folder, ignored);
        return ServiceValues(database, homeDataService()).backUp(folder);
    });
}

Result<void> restoreHomeData(Database& database, const fs::path& folder) {
    return expectFolder(folder).and_then(
        [&] { return ServiceValues(database, homeDataService()).restore(folder); });
}

}  // namespace vxtv
