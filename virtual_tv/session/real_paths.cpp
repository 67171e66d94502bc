#include "virtual_tv/session/real_paths.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>

#include <system_error>

namespace vxtv {

namespace {

namespace fs = std::filesystem;

tl::unexpected<Error> ioFailure(const char* what, const fs::path& path, const std::error_code& error) {
    return failure(ErrorCode::Io,
                   fmt::format("cannot {} '{}': {}; run vxtv as root, or where it may use namespaces", what,
                               path.string(), error.message()));
}

/// Whether the link leads into a television's opt or media folder.
bool leadsIntoATelevision(const fs::path& link) {
    std::error_code error;
    const auto target = fs::read_symlink(link, error);
    return !error && target.is_absolute() && target.filename() == link.filename() &&
           target.parent_path().filename() == link.parent_path().filename() &&
           fs::exists(Folder(target.parent_path().parent_path()).database(), error);
}

/// A killed session leaves links of its television behind. With them a second television would show parts of
/// the first.
void removeLeftovers(const fs::path& root) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(root, error)) {
        if (entry.is_symlink(error) && leadsIntoATelevision(entry.path())) fs::remove(entry.path(), error);
    }
}

}  // namespace

Result<RealPaths> RealPaths::take(const Folder& folder, const std::vector<Stick>& sticks,
                                  const EntryRecord& record) {
    RealPaths paths;
    const auto linkSticks = [&]() -> Result<void> {
        for (const auto& stick : sticks) {
            const auto made = record.makeLink(folder.media().filename() / stick.name, stick.hostFolder);
            if (!made) return made;
        }
        return {};
    };
    const auto opt = "/" / folder.opt().filename();
    const auto media = "/" / folder.media().filename();
    const auto taken = paths.makeRoot(opt)
                           .and_then([&] { return paths.makeRoot(media); })
                           .and_then([&] { return paths.lock(); })
                           .and_then(linkSticks)
                           .and_then([&] { return paths.linkAll(folder.opt(), opt); })
                           .and_then([&] { return paths.linkAll(folder.media(), media); });
    VX_RETURN_IF_FAILED(taken);
    return paths;
}

RealPaths::~RealPaths() {
    std::error_code ignored;
    for (const auto& link : links_) fs::remove(link, ignored);
    for (const auto& root : madeRoots_) fs::remove(root, ignored);
}

Result<void> RealPaths::makeRoot(const fs::path& root) {
    std::error_code error;
    if (fs::create_directory(root, error)) madeRoots_.push_back(root);
    if (error) return ioFailure("make the folder", root, error);
    return {};
}

Result<void> RealPaths::lock() {
    const auto& root = "/" / Folder(fs::path()).opt();
    lock_ = Descriptor(open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (lock_ && flock(lock_.get(), LOCK_EX | LOCK_NB) == 0) return {};
    if (lock_ && errno == EWOULDBLOCK) {
        return failure(ErrorCode::Busy,
                       "another session has /opt and /media of this machine; without namespaces "
                       "there can be one at a time: end it first");
    }
    return ioFailure("lock", root, std::error_code(errno, std::generic_category()));
}

Result<void> RealPaths::linkAll(const fs::path& inFolder, const fs::path& root) {
    removeLeftovers(root);
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(inFolder, error)) {
        const auto link = root / entry.path().filename();
        fs::create_directory_symlink(entry.path(), link, error);
        if (error == std::errc::file_exists) {
            return failure(
                ErrorCode::AlreadyExists,
                fmt::format("'{}' of this machine is in the way of the television's, and there is no "
                            "namespace to keep them apart; move it away, or run vxtv as root",
                            link.string()));
        }
        if (error) return ioFailure("make the link", link, error);
        links_.push_back(link);
    }
    if (error) return ioFailure("read", inFolder, error);
    return {};
}

}  // namespace vxtv
