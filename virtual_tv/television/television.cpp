#include "virtual_tv/television/television.h"

#include <fmt/format.h>

#include <utility>

#include "virtual_tv/base/own_file.h"

namespace vxtv {

namespace fs = std::filesystem;

fs::path absoluteFolder(const fs::path& path) {
    std::error_code error;
    fs::path absolute = fs::absolute(path, error);
    absolute = (error ? path : absolute).lexically_normal();
    return absolute.has_filename() || !absolute.has_relative_path() ? absolute : absolute.parent_path();
}

Television::Television(Folder folder, std::unique_ptr<Database> database)
    : folder_(std::move(folder)),
      database_(std::move(database)),
      calls_(std::make_unique<CallLog>(folder_.calls())),
      dlog_(std::make_unique<DlogFile>(folder_.dlog())) {}

Result<Television> Television::open(const fs::path& path) {
    if (path.empty()) {
        return failure(ErrorCode::NotATelevision, "no television was named; give the path of its folder");
    }
    Folder folder(absoluteFolder(path));
    Result<std::unique_ptr<Database>> database =
        checkOwnFolders(folder).and_then([&folder] { return Database::open(folder.database()); });
    VX_RETURN_IF_FAILED(database);
    return Television(std::move(folder), std::move(*database));
}

}  // namespace vxtv
