#include "cloning_app/storage/mounts.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <sstream>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr const char* kMountList = "/proc/self/mountinfo";

/// Whether the path is the folder or below it.
bool isWithin(const std::filesystem::path& path, const std::filesystem::path& folder) {
    const auto [inPath, inFolder] = std::mismatch(path.begin(), path.end(), folder.begin(), folder.end());
    return inFolder == folder.end();
}

std::optional<FolderPlace> askForPlace(int folder) {
    struct statx facts {};
    if (statx(folder, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_BASIC_STATS | STATX_MNT_ID, &facts) !=
        0) {
        return std::nullopt;
    }
    FolderPlace place{makedev(facts.stx_dev_major, facts.stx_dev_minor), {}};
    if ((facts.stx_mask & STATX_MNT_ID) != 0) {
        place.mount = facts.stx_mnt_id;
    }
    return place;
}

std::optional<std::string> askForMounts() {
    const Descriptor file(open(kMountList, O_RDONLY | O_CLOEXEC));
    if (!file.valid()) {
        return std::nullopt;
    }
    constexpr std::size_t kChunk = 4096;
    std::array<char, kChunk> chunk{};
    std::string text;
    for (ssize_t got = 1; got != 0;) {
        got = read(file.get(), chunk.data(), chunk.size());
        if (got < 0 && errno != EINTR) {
            return std::nullopt;
        }
        text.append(chunk.data(), got < 0 ? 0 : static_cast<std::size_t>(got));
    }
    return text;
}

/// A path of the list with its escapes resolved: blanks and some other characters are written as \NNN in
/// octal.
std::string unescaped(const std::string& text) {
    constexpr std::size_t kDigits = 3;
    constexpr int kOctal = 8;
    std::string path;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string digits = text[at] == '\\' ? text.substr(at + 1, kDigits) : "";
        if (digits.size() == kDigits && digits.find_first_not_of("01234567") == std::string::npos) {
            path += static_cast<char>(std::stoi(digits, nullptr, kOctal));
            at += kDigits;
        } else {
            path += text[at];
        }
    }
    return path;
}

/// A line begins with number, parent's number, device, root and mount point.
std::optional<Mount> parseMount(const std::string& line) {
    std::istringstream words(line);
    Mount mount;
    std::uint64_t parent = 0;
    unsigned major = 0;
    unsigned minor = 0;
    char colon = ' ';
    if (!(words >> mount.number >> parent >> major >> colon >> minor >> mount.root >> mount.point)) {
        return std::nullopt;
    }
    mount.device = makedev(major, minor);
    mount.root = unescaped(mount.root);
    mount.point = unescaped(mount.point);
    return mount;
}

const Mount* mountOf(const FolderPlace& place, const std::vector<Mount>& mounts) {
    const auto found = std::find_if(mounts.begin(), mounts.end(),
                                    [&place](const Mount& mount) { return mount.number == place.mount; });
    return found == mounts.end() ? nullptr : &*found;
}

/// Whether the mount shows a part of what the clone folder's mount shows.
bool showsTheSame(const Mount& mount, const FolderPlace& cloneFolder, const std::vector<Mount>& mounts) {
    const Mount* const own = mountOf(cloneFolder, mounts);
    return own != nullptr && mount.device == own->device && isWithin(mount.root, own->root);
}

bool isStick(const Mount& mount, const FolderPlace& cloneFolder, const std::vector<Mount>& mounts) {
    return mount.point != kSticks && isWithin(mount.point, kSticks) &&
           !showsTheSame(mount, cloneFolder, mounts);
}

/// The place of the clone folder. If it does not exist yet, that of its nearest existing parent.
Result<FolderPlace> placeOfCloneFolder(const std::filesystem::path& cloneRoot,
                                       const MountQuestions& questions) {
    for (std::filesystem::path path = cloneRoot;; path = path.parent_path()) {
        const Descriptor folder(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        const int reason = folder.valid() ? 0 : errno;
        const auto place = folder.valid() ? questions.placeOf(folder.get()) : std::nullopt;
        if (place) {
            return *place;
        }
        if (folder.valid() || !meansAbsent(reason) || path == path.parent_path()) {
            return tl::make_unexpected(
                readError(Place::Television, path.string(), folder.valid() ? errno : reason));
        }
    }
}

Error notOnAStick(const std::string& name, const std::vector<std::string>& sticks) {
    const std::string where = vxcommon::printable(name);
    if (sticks.empty()) {
        return {ErrorCode::StickMissing,
                fmt::format("{} is on this television itself, and no stick is plugged in; put a stick in, "
                            "or write here with --on-this-disk",
                            where)};
    }
    return {ErrorCode::StickMissing,
            fmt::format("{} is on this television itself, not on a stick (plugged in: {}); name a place "
                        "on the stick, or write here with --on-this-disk",
                        where, vxcommon::printable(fmt::format("{}", fmt::join(sticks, ", "))))};
}

}  // namespace

MountQuestions realMountQuestions() {
    return {askForPlace, askForMounts};
}

std::vector<Mount> parseMounts(std::string_view text) {
    std::vector<Mount> mounts;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        if (auto mount = parseMount(line)) {
            mounts.push_back(std::move(*mount));
        }
    }
    return mounts;
}

bool isTelevisionsOwn(const FolderPlace& folder, const FolderPlace& cloneFolder,
                      const std::vector<Mount>& mounts) {
    if (folder.mount && folder.mount == cloneFolder.mount) {
        return true;
    }
    const Mount* const mount = mountOf(folder, mounts);
    if (mount == nullptr) {
        return folder.device == cloneFolder.device;
    }
    if (isStick(*mount, cloneFolder, mounts)) {
        return false;
    }
    return folder.device == cloneFolder.device || isWithin(kSticks, mount->point);
}

std::vector<std::string> pluggedIn(const FolderPlace& cloneFolder, const std::vector<Mount>& mounts) {
    std::vector<std::string> points;
    for (const Mount& mount : mounts) {
        if (isStick(mount, cloneFolder, mounts)) {
            points.push_back(mount.point);
        }
    }
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

Result<bool> goesOntoAStick(const WrittenPlace& place, const std::filesystem::path& cloneRoot,
                            const MountQuestions& questions) {
    const auto there = questions.placeOf(place.folder.descriptor);
    if (!there) {
        return tl::make_unexpected(readError(place.folder.place, place.folder.path, errno));
    }
    const auto own = placeOfCloneFolder(cloneRoot, questions);
    VX_RETURN_IF_FAILED(own);
    const auto text = questions.mounts();
    if (!text) {
        return tl::make_unexpected(readError(Place::Television, kMountList, errno));
    }
    const std::vector<Mount> mounts = parseMounts(*text);
    if (!isTelevisionsOwn(*there, *own, mounts)) {
        return true;
    }
    if (place.onThisDisk) {
        return false;
    }
    return tl::make_unexpected(notOnAStick(place.name, pluggedIn(*own, mounts)));
}

}  // namespace vxclone
