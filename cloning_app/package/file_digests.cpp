#include "cloning_app/package/file_digests.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "cloning_app/package/digest.h"

namespace vxclone {

namespace {

/// More would not be read faster from one disk.
constexpr unsigned kMostThreads = 4;
/// Files that are held open and wait for a thread: as many as most packages have, so that the caller can go
/// on, and fewer than a process may open.
constexpr std::size_t kMostWaiting = 512;

}  // namespace

FileDigests::FileDigests(const StopFlag* stop)
    : stop_(stop), threadsWanted_(std::clamp(std::thread::hardware_concurrency(), 1U, kMostThreads)) {}

FileDigests::~FileDigests() {
    {
        const std::lock_guard lock(mutex_);
        waiting_.clear();
    }
    endThreads();
}

FileDigests::Outcome FileDigests::outcomeOf(int file) const {
    if (stop_ != nullptr && stop_->raised()) {
        return {{}, ECANCELED};
    }
    std::string digest = digestOfFile(file);
    const int reason = digest.empty() ? errno : 0;
    return {std::move(digest), reason};
}

void FileDigests::addThread() {
    try {
        threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
        // Those that were made do it all, or the caller's thread does.
        threadsWanted_ = 0;
    }
}

void FileDigests::add(int file) {
    if (threads_.size() < threadsWanted_) {
        addThread();
    }
    // A file of our own at the same place: the caller closes its own.
    Descriptor own(threads_.empty() ? -1 : fcntl(file, F_DUPFD_CLOEXEC, 0));
    if (!own.valid()) {
        Outcome outcome = outcomeOf(file);
        const std::lock_guard lock(mutex_);
        outcomes_.push_back(std::move(outcome));
        return;
    }
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return waiting_.size() < kMostWaiting; });
    waiting_.push_back({std::move(own), outcomes_.size()});
    outcomes_.emplace_back();
    changed_.notify_all();
}

std::vector<FileDigests::Outcome> FileDigests::finish() {
    endThreads();
    return {std::make_move_iterator(outcomes_.begin()), std::make_move_iterator(outcomes_.end())};
}

void FileDigests::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return complete_ || !waiting_.empty(); });
        if (waiting_.empty()) {
            return;
        }
        const Job job = std::move(waiting_.front());
        waiting_.pop_front();
        changed_.notify_all();
        lock.unlock();
        Outcome outcome = outcomeOf(job.file.get());
        lock.lock();
        outcomes_[job.number] = std::move(outcome);
    }
}

void FileDigests::endThreads() {
    {
        const std::lock_guard lock(mutex_);
        complete_ = true;
        changed_.notify_all();
    }
    for (std::thread& thread : threads_) {
        thread.join();
    }
    threads_.clear();
}

}  // namespace vxclone
