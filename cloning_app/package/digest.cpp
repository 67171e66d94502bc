#include "cloning_app/package/digest.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

namespace vxclone {

namespace {

constexpr std::size_t kDigestBlockBytes = std::size_t{128} << 10U;

/// More would not be read faster from one disk.
constexpr unsigned kMostThreads = 4;
/// Files that are held open and wait for a thread: as many as most packages have, so that the caller can go
/// on, and fewer than a process may open.
constexpr std::size_t kMostWaiting = 512;

}  // namespace

std::string hexText(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0xfU];
    }
    return text;
}

void Sha256::Free::operator()(evp_md_ctx_st* context) const {
    EVP_MD_CTX_free(context);
}

Sha256::Sha256()
    : context_(EVP_MD_CTX_new()),
      good_(context_ != nullptr && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1) {}

void Sha256::add(std::string_view bytes) {
    good_ = good_ && EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1;
}

std::string Sha256::finish() {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    good_ = good_ && EVP_DigestFinal_ex(context_.get(), digest.data(), &size) == 1;
    std::string bytes(digest.begin(), digest.begin() + size);
    return good_ ? hexText(bytes) : std::string();
}

std::string digestOf(std::string_view text) {
    Sha256 digest;
    digest.add(text);
    return digest.finish();
}

std::string digestOfFile(int file) {
    Sha256 digest;
    std::vector<char> block(kDigestBlockBytes);
    for (;;) {
        const ssize_t got = read(file, block.data(), block.size());
        if (got < 0 && errno != EINTR) {
            return {};
        }
        if (got == 0) {
            break;
        }
        digest.add({block.data(), got < 0 ? 0 : static_cast<std::size_t>(got)});
    }
    errno = ENOMEM;
    return digest.finish();
}

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
