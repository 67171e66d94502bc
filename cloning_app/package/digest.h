#pragma once

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/base/tree_walk.h"

struct evp_md_ctx_st;

namespace vxclone {

/// The bytes as lower-case hexadecimal digits.
std::string hexText(std::string_view bytes);

/// The SHA-256 of what it is given, piece by piece. One thread at a time.
class Sha256 {
 public:
    Sha256();
    void add(std::string_view bytes);
    /// The digest in hexadecimal digits; empty when the cryptographic library failed. The last call.
    std::string finish();

 private:
    struct Free {
        void operator()(evp_md_ctx_st* context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> context_;
    bool good_;
};

/// The SHA-256 of the text in hexadecimal digits.
std::string digestOf(std::string_view text);

/// The SHA-256 of what is left of the open file in hexadecimal digits; empty when it cannot be read (errno).
std::string digestOfFile(int file);

/// Digests many files on threads of its own, a thread a file up to one a core, and a few at most. Where no
/// thread can be made, the caller's does the work. Used by one thread; ends its threads when it is destroyed.
class FileDigests {
 public:
    /// The digest of one file.
    struct Outcome {
        std::string digest;  ///< SHA-256 in hexadecimal digits; empty when the file cannot be read
        int reason = 0;      ///< then the system's reason (errno)
    };

    /// Once `stop` is raised, files that still wait are not read (ECANCELED).
    explicit FileDigests(const StopFlag* stop = nullptr);
    /// Leaves out what still waits.
    ~FileDigests();
    FileDigests(const FileDigests&) = delete;
    FileDigests& operator=(const FileDigests&) = delete;

    /// Takes a file, open for reading at its start; the descriptor stays the caller's, who may close it.
    /// Waits while too many files are open.
    void add(int file);

    /// Waits for all files. Result: their digests, in the order in which they were added. The last call.
    std::vector<Outcome> finish();

 private:
    struct Job {
        Descriptor file;
        std::size_t number;
    };

    Outcome outcomeOf(int file) const;
    void addThread();
    void work();
    void endThreads();

    const StopFlag* stop_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Job> waiting_;
    bool complete_ = false;
    std::deque<Outcome> outcomes_;  ///< does not move what it holds when it grows
    std::size_t threadsWanted_;
    std::vector<std::thread> threads_;
};

}  // namespace vxclone
