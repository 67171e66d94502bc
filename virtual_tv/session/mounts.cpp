#include "virtual_tv/session/mounts.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/mount.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <system_error>

#include "virtual_tv/base/descriptor.h"

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

namespace {

const std::filesystem::path kSticksSeenAt = "/" / Folder(std::filesystem::path()).media();

std::vector<std::filesystem::path> coveredPaths() {
    std::vector<std::filesystem::path> paths;
    for (const auto& root : coveredRoots()) paths.push_back(root.seenAs);
    return paths;
}

/// Whether the television has something else at the path of a need, so that the need is left out.
Result<bool> isHidden(const Folder& folder, const Need& need, const EntryRecord& record) {
    const auto inside = pathInFolder(need.path);
    if (inside.empty() || record.holds(inside)) return false;
    const auto own = folder.root() / inside;
    std::error_code error;
    const auto type = std::filesystem::symlink_status(own, error).type();
    if (type == std::filesystem::file_type::not_found) return false;
    if (!need.required) return true;
    if (type == std::filesystem::file_type::directory && std::filesystem::is_empty(own, error)) return false;
    return failure(
        ErrorCode::AlreadyExists,
        fmt::format("the television has a '{0}' of its own ({1}), which would hide that of this machine; "
                    "move one of the two",
                    need.path.string(), own.string()));
}

/// Whether a stick's folder, mounted in /media, already shows or hides the need.
Result<bool> isOnStick(const std::vector<Stick>& sticks, const Need& need) {
    for (const auto& stick : sticks) {
        const auto seenAs = kSticksSeenAt / stick.name;
        if (need.path != seenAs && !isBelow(need.path, seenAs)) continue;
        if (!need.required || stick.hostFolder == seenAs) return true;
        return failure(
            ErrorCode::BadArgument,
            fmt::format("the stick '{}' would hide '{}', which is needed; give the stick another name",
                        stick.name, need.path.string()));
    }
    return false;
}

Result<std::vector<std::filesystem::path>> visibleNeeds(const Folder& folder,
                                                        const std::vector<Stick>& sticks,
                                                        const std::vector<Need>& needs,
                                                        const EntryRecord& record) {
    std::vector<std::filesystem::path> paths;
    for (const auto& need : needs) {
        const auto onStick = isOnStick(sticks, need);
        VX_RETURN_IF_FAILED(onStick);
        const auto hidden = isHidden(folder, need, record);
        VX_RETURN_IF_FAILED(hidden);
        if (!*onStick && !*hidden) paths.push_back(need.path);
    }
    return paths;
}

tl::unexpected<Error> cannotBind(const Bind& bind) {
    return failure(ErrorCode::NoIsolation,
                   fmt::format("cannot show '{}' as '{}': {}; see that both are folders you may enter",
                               bind.source.string(), bind.target.string(), reason()));
}

/// A remount must repeat the restrictions of the mount, because a user namespace must not remove them.
unsigned long keptFlags(const std::filesystem::path& mounted) {
    struct Kept {
        unsigned long asStatus;
        unsigned long asMount;
    };
    constexpr std::array kKept = {Kept{ST_NOSUID, MS_NOSUID},         Kept{ST_NODEV, MS_NODEV},
                                  Kept{ST_NOEXEC, MS_NOEXEC},         Kept{ST_NOATIME, MS_NOATIME},
                                  Kept{ST_NODIRATIME, MS_NODIRATIME}, Kept{ST_RELATIME, MS_RELATIME}};
    struct statvfs status {};
    unsigned long flags = 0;
    if (statvfs(mounted.c_str(), &status) != 0) return flags;
    for (const auto& kept : kKept) {
        if ((status.f_flag & kept.asStatus) != 0) flags |= kept.asMount;
    }
    return flags;
}

bool isBound(const Descriptor& source, const Bind& bind) {
    const auto opened = fmt::format("/proc/self/fd/{}", source.get());
    // In a user namespace, a mount can only be copied together with the mounts below it.
    if (mount(opened.c_str(), bind.target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0) return false;
    if (!bind.readOnly) return true;
    const auto flags = MS_REMOUNT | MS_BIND | MS_RDONLY | keptFlags(bind.target);
    return mount(nullptr, bind.target.c_str(), nullptr, flags, nullptr) == 0;
}

Result<std::vector<Descriptor>> openSources(const std::vector<Bind>& binds) {
    std::vector<Descriptor> sources;
    for (const auto& bind : binds) {
        sources.emplace_back(open(bind.source.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!sources.back()) return cannotBind(bind);
    }
    return sources;
}

}  // namespace

Result<std::vector<Bind>> prepareBinds(const Folder& folder, const std::vector<Stick>& sticks,
                                       const std::vector<Need>& needs, const EntryRecord& record) {
    const auto visible = visibleNeeds(folder, sticks, needs, record);
    VX_RETURN_IF_FAILED(visible);
    std::vector<Bind> binds;
    for (const auto& directory : {folder.opt(), folder.tmp(), folder.media()}) {
        binds.push_back({directory, "/" / directory.filename()});
    }
    const auto mountOn = [&](const std::filesystem::path& source, const std::filesystem::path& target,
                             bool readOnly) {
        binds.push_back({source, target, readOnly});
        return record.makeDirectory(pathInFolder(target));
    };
    for (const auto& stick : sticks) {
        const auto made = mountOn(stick.hostFolder, kSticksSeenAt / stick.name, stick.readOnly);
        VX_RETURN_IF_FAILED(made);
    }
    for (const auto& path : pathsToExpose(*visible, coveredPaths())) {
        const auto made = mountOn(path, path, false);
        VX_RETURN_IF_FAILED(made);
    }
    return binds;
}

Result<void> doBinds(const std::vector<Bind>& binds) {
    return doBindsOverMemory({}, binds);
}

Result<void> doBindsOverMemory(const std::vector<std::filesystem::path>& memoryRoots,
                               const std::vector<Bind>& binds) {
    const auto sources = openSources(binds);
    VX_RETURN_IF_FAILED(sources);
    for (const auto& root : memoryRoots) {
        if (mount("tmpfs", root.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "mode=1777") != 0) {
            return failure(ErrorCode::NoIsolation,
                           fmt::format("cannot mount an empty folder at '{}': {}; see that "
                                       "the folder exists",
                                       root.string(), reason()));
        }
    }
    std::error_code error;
    for (std::size_t i = 0; i < binds.size(); ++i) {
        if (!memoryRoots.empty()) std::filesystem::create_directories(binds[i].target, error);
        if (!isBound((*sources)[i], binds[i])) return cannotBind(binds[i]);
    }
    return {};
}

}  // namespace vxtv
