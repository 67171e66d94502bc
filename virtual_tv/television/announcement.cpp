#include "virtual_tv/television/announcement.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/live_file.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv {

namespace {

/// The content identifies our own mark.
constexpr std::string_view kContent = "made by vxtv\n";

bool isOurs(const std::filesystem::path& mark) {
    const auto content = readPlainFile(mark, kContent.size() + 1);
    return content && *content == kContent;
}

}  // namespace

Result<void> raiseReadyMark(const std::filesystem::path& mark) {
    const Descriptor file(open(mark.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (!file && errno == EEXIST) {
        return {};
    }
    const ssize_t written = file ? write(file.get(), kContent.data(), kContent.size()) : 0;
    if (written != static_cast<ssize_t>(kContent.size())) {
        const std::string why = reason();
        if (file) {
            unlink(mark.c_str());
        }
        return failure(
            ErrorCode::Io,
            fmt::format("the mark {} of the secure storage cannot be made: {}; without it the clone "
                        "key is out of reach",
                        mark.string(), why));
    }
    return {};
}

void lowerReadyMark(const std::filesystem::path& mark) {
    if (isOurs(mark)) {
        unlink(mark.c_str());
    }
}

std::optional<std::string> busAddress(const Folder& folder) {
    return lineOfLiveFile(folder.busAddress());
}

}  // namespace vxtv
