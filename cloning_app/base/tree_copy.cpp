#include "cloning_app/base/tree_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <deque>
#include <utility>
#include <vector>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr std::size_t kCopyBlockBytes = std::size_t{128} << 10U;
constexpr mode_t kCopiedFileMode = 0666;
constexpr mode_t kLinkedFolderMode = 0755;
/// The number of files whose data is being written to the disk while the next ones are read. Flushing each
/// file separately would empty the disk's cache each time, which takes longer than the writing.
constexpr std::size_t kFilesOnTheirWay = 16;
/// Data of one file that is kept in memory before writing to the disk begins. Thus the progress is never far
/// ahead of the disk.
constexpr std::uint64_t kBytesOnTheirWay = std::uint64_t{8} << 20U;

class Measure final : public TreeVisitor {
 public:
    explicit Measure(const EntryRule& rule) : rule_(rule) {}

    Result<void> file(const TreeEntry& entry, int /*descriptor*/) override {
        ++size_.files;
        size_.bytes += entry.bytes;
        return count(entry);
    }
    Result<void> enterFolder(const TreeEntry& entry) override { return count(entry); }
    Result<void> leaveFolder() override { return {}; }

    const TreeSize& size() const { return size_; }

 private:
    Result<void> count(const TreeEntry& entry) {
        ++size_.entries;
        const std::string problem = rule_ ? rule_(entry) : std::string();
        if (!problem.empty()) {
            return failure(ErrorCode::StickLimit, vxcommon::printable(entry.path) + " " + problem);
        }
        return {};
    }

    const EntryRule& rule_;
    TreeSize size_;
};

class Copy final : public TreeVisitor {
 public:
    Copy(const Tree& from, const Tree& to, const TreeLimits& limits, Flush flush, const DiskCalls& calls,
         const StopFlag& stop)
        : from_(from),
          to_(to),
          limits_(limits),
          flush_(flush),
          calls_(calls),
          stop_(stop),
          buffer_(kCopyBlockBytes) {}

    Result<void> file(const TreeEntry& entry, int descriptor) override {
        Descriptor target(openat(currentFolder(), entry.name.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kCopiedFileMode));
        if (!target.valid()) {
            return tl::make_unexpected(writeError(to_.place, pathOf(entry), errno));
        }
        if (auto copied = copyBytes(entry, descriptor, target.get()); !copied) {
            return copied;
        }
        ++size_.entries;
        ++size_.files;
        return flush_ == Flush::Yes ? sendOff({std::move(target), pathOf(entry)}) : Result<void>();
    }

    Result<void> enterFolder(const TreeEntry& entry) override {
        if (calls_.makeFolder(currentFolder(), entry.name.c_str()) != 0) {
            return tl::make_unexpected(writeError(to_.place, pathOf(entry), errno));
        }
        Descriptor folder(
            openat(currentFolder(), entry.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!folder.valid()) {
            return tl::make_unexpected(writeError(to_.place, pathOf(entry), errno));
        }
        folders_.push_back(std::move(folder));
        ++size_.entries;
        return {};
    }

    Result<void> leaveFolder() override {
        folders_.pop_back();
        return {};
    }

    /// Waits for the files that are being written, and flushes everything.
    Result<void> arrive() {
        while (!onTheirWay_.empty()) {
            if (auto arrived = awaitFirst(); !arrived) {
                return arrived;
            }
        }
        if (flush_ == Flush::Yes && calls_.flushAll(to_.descriptor) != 0) {
            return tl::make_unexpected(writeError(to_.place, to_.path, errno));
        }
        return {};
    }

    const TreeSize& size() const { return size_; }

 private:
    struct Written {
        Descriptor file;
        std::string path;
    };

    Result<void> sendOff(Written written) {
        calls_.startFlush(written.file.get());
        onTheirWay_.push_back(std::move(written));
        return onTheirWay_.size() > kFilesOnTheirWay ? awaitFirst() : Result<void>();
    }

    Result<void> awaitFirst() {
        const Written written = std::move(onTheirWay_.front());
        onTheirWay_.pop_front();
        if (calls_.awaitFlush(written.file.get()) != 0) {
            return tl::make_unexpected(writeError(to_.place, written.path, errno));
        }
        return {};
    }

    int currentFolder() const { return folders_.empty() ? to_.descriptor : folders_.back().get(); }

    std::string pathOf(const TreeEntry& entry) const {
        return to_.path + entry.path.substr(from_.path.size());
    }

    Result<void> copyBytes(const TreeEntry& entry, int source, int target) {
        for (std::uint64_t fileBytes = 0;;) {
            if (stop_.raised()) {
                return tl::make_unexpected(stopError(stop_.signal()));
            }
            const ssize_t got = read(source, buffer_.data(), buffer_.size());
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got < 0) {
                return tl::make_unexpected(readError(from_.place, entry.path, errno));
            }
            if (got == 0) {
                return {};
            }
            fileBytes += static_cast<std::uint64_t>(got);
            size_.bytes += static_cast<std::uint64_t>(got);
            if (fileBytes > limits_.fileBytes || size_.bytes > limits_.totalBytes) {
                return failure(ErrorCode::TooLarge,
                               vxcommon::printable(entry.path) +
                                   " grew while it was read; try again, or take another stick");
            }
            if (const int reason = writeAll(target, static_cast<std::size_t>(got)); reason != 0) {
                return tl::make_unexpected(writeError(to_.place, pathOf(entry), reason));
            }
            const std::uint64_t before = fileBytes - static_cast<std::uint64_t>(got);
            if (flush_ == Flush::Yes && fileBytes / kBytesOnTheirWay != before / kBytesOnTheirWay) {
                calls_.startFlush(target);
            }
        }
    }

    int writeAll(int target, std::size_t size) {
        for (std::size_t done = 0; done < size;) {
            const ssize_t written = calls_.write(target, buffer_.data() + done, size - done);
            if (written < 0 && errno != EINTR) {
                return errno;
            }
            done += written < 0 ? 0 : static_cast<std::size_t>(written);
        }
        return 0;
    }

    const Tree& from_;
    const Tree& to_;
    const TreeLimits& limits_;
    Flush flush_;
    const DiskCalls& calls_;
    const StopFlag& stop_;
    std::vector<char> buffer_;
    std::vector<Descriptor> folders_;
    std::deque<Written> onTheirWay_;
    TreeSize size_;
};

class Link final : public TreeVisitor {
 public:
    Link(const Tree& from, const Tree& to) : from_(from), to_(to) {}

    Result<void> file(const TreeEntry& entry, int /*descriptor*/) override {
        const std::string path = pathInside(entry);
        return judged(linkat(from_.descriptor, path.c_str(), to_.descriptor, path.c_str(), 0), path);
    }
    Result<void> enterFolder(const TreeEntry& entry) override {
        const std::string path = pathInside(entry);
        return judged(mkdirat(to_.descriptor, path.c_str(), kLinkedFolderMode), path);
    }
    Result<void> leaveFolder() override { return {}; }

 private:
    std::string pathInside(const TreeEntry& entry) const { return entry.path.substr(from_.path.size() + 1); }

    Result<void> judged(int status, const std::string& path) const {
        return status == 0 ? Result<void>()
                           : tl::make_unexpected(writeError(to_.place, to_.path + "/" + path, errno));
    }

    const Tree& from_;
    const Tree& to_;
};

}  // namespace

Result<TreeSize> measureTree(const Tree& tree, const TreeLimits& limits, const EntryRule& rule) {
    Measure measure(rule);
    VX_RETURN_IF_FAILED(walkTree(tree, limits, measure));
    return measure.size();
}

Result<TreeSize> copyTree(const Tree& from, const Tree& to, const TreeLimits& limits, Flush flush,
                          const DiskCalls& calls, const StopFlag& stop) {
    Copy copy(from, to, limits, flush, calls, stop);
    VX_RETURN_IF_FAILED(walkTree(from, limits, copy));
    VX_RETURN_IF_FAILED(copy.arrive());
    return copy.size();
}

Result<void> linkTree(const Tree& from, const Tree& to, const TreeLimits& limits) {
    Link link(from, to);
    return walkTree(from, limits, link);
}

}  // namespace vxclone
