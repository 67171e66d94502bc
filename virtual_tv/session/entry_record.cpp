#include "virtual_tv/session/entry_record.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <string>

#include "virtual_tv/base/own_file.h"

namespace vxtv {

namespace {

constexpr int kDirectory = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kRecordMode = 0644;
/// A path may contain every other character.
constexpr char kEnd = '\0';

void removeEntry(const Descriptor& parent, const char* name) {
    struct stat status {};
    if (!parent || fstatat(parent.get(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
    if (S_ISDIR(status.st_mode)) unlinkat(parent.get(), name, AT_REMOVEDIR);
    if (S_ISLNK(status.st_mode)) unlinkat(parent.get(), name, 0);
}

}  // namespace

Descriptor EntryRecord::openDirectory(const std::filesystem::path& path) const {
    Descriptor directory(open(folder_.root().c_str(), kDirectory));
    for (const auto& name : path) {
        if (directory) directory = Descriptor(openat(directory.get(), name.c_str(), kDirectory));
    }
    return directory;
}

Result<void> EntryRecord::makeDirectory(const std::filesystem::path& path) const {
    std::filesystem::path made;
    Descriptor parent = openDirectory(made);
    for (const auto& name : path) {
        made /= name;
        Descriptor next(openat(parent.get(), name.c_str(), kDirectory));
        if (!next && errno == ENOENT && add(made)) {
            mkdirat(parent.get(), name.c_str(), 0755);
            next = Descriptor(openat(parent.get(), name.c_str(), kDirectory));
        }
        if (!next) {
            return failure(
                ErrorCode::Io,
                fmt::format("cannot make the folder '{}' to show a folder of this machine there: {}; "
                            "move what is there out of the way",
                            (folder_.root() / made).string(), reason()));
        }
        parent = std::move(next);
    }
    return {};
}

Result<void> EntryRecord::makeLink(const std::filesystem::path& path,
                                   const std::filesystem::path& target) const {
    const auto parent = openDirectory(path.parent_path());
    if (parent && faccessat(parent.get(), path.filename().c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
        return failure(ErrorCode::AlreadyExists,
                       fmt::format("'{}' is in the way of a stick of that name; give the stick another name",
                                   (folder_.root() / path).string()));
    }
    if (parent && add(path) && symlinkat(target.c_str(), parent.get(), path.filename().c_str()) == 0)
        return {};
    return failure(ErrorCode::Io,
                   fmt::format("cannot make the link '{}': {}; see that the folder can be written",
                               (folder_.root() / path).string(), reason()));
}

bool EntryRecord::holds(const std::filesystem::path& path) const {
    const auto recorded = entries();
    return std::find(recorded.begin(), recorded.end(), path) != recorded.end();
}

void EntryRecord::removeAll() const {
    auto recorded = entries();
    std::sort(recorded.rbegin(), recorded.rend());
    for (const auto& path : recorded) {
        const bool leadsOut = path.is_absolute() || std::find(path.begin(), path.end(), "..") != path.end();
        if (!leadsOut) removeEntry(openDirectory(path.parent_path()), path.filename().c_str());
    }
    unlink(file().c_str());
}

std::vector<std::filesystem::path> EntryRecord::entries() const {
    std::vector<std::filesystem::path> recorded;
    const auto record = openOwnFile(file(), O_RDONLY);
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t count = 0; record && (count = read(record->get(), piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    std::istringstream paths(text);
    for (std::string path; std::getline(paths, path, kEnd);) recorded.emplace_back(path);
    return recorded;
}

bool EntryRecord::add(const std::filesystem::path& path) const {
    const auto record = openOwnFile(file(), O_WRONLY | O_APPEND | O_CREAT, kRecordMode);
    const auto line = path.string() + kEnd;
    return record && write(record->get(), line.data(), line.size()) == static_cast<ssize_t>(line.size());
}

}  // namespace vxtv
