#include "common/file_writing.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

#include "common/tree_removal.h"

namespace vxcommon {

namespace fs = std::filesystem;

namespace {

int reasonUnless(bool done) {
    return done ? 0 : errno;
}

std::string patternBeside(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    return (folder / ("." + target.filename().string() + ".XXXXXX")).string();
}

unsigned int flagsOf(Existing existing) {
    switch (existing) {
        case Existing::Refuse:
            return RENAME_NOREPLACE;
        case Existing::Replace:
            return 0;
        case Existing::Exchange:
            break;
    }
    return RENAME_EXCHANGE;
}

}  // namespace

int writeAndFlush(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return reasonUnless(fsync(file) == 0);
}

bool meansNoRoom(int reason) {
    return reason == ENOSPC || reason == EDQUOT;
}

int putInPlace(const fs::path& made, const fs::path& target, const Placing& how) {
    const unsigned int flags = flagsOf(how.existing);
    const bool renamed = flags == 0 ? rename(made.c_str(), target.c_str()) == 0
                                    : renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, target.c_str(), flags) == 0;
    const int reason = reasonUnless(renamed);
    if (reason != EINVAL || how.existing != Existing::Refuse || how.without == WithoutRefusal::Fail) {
        return reason;
    }
    return how.without == WithoutRefusal::Rename
               ? reasonUnless(rename(made.c_str(), target.c_str()) == 0)
               : reasonUnless(link(made.c_str(), target.c_str()) == 0 && unlink(made.c_str()) == 0);
}

Beside Beside::file(const fs::path& target) {
    return {target, true};
}

Beside Beside::folder(const fs::path& target) {
    return {target, false};
}

Beside::Beside(const fs::path& target, bool isFile) : target_(target) {
    std::string path = patternBeside(target);
    if (isFile) {
        file_ = Descriptor(mkostemp(path.data(), O_CLOEXEC));
        isThere_ = file_.valid();
    } else {
        isThere_ = mkdtemp(path.data()) != nullptr;
    }
    refused_ = reasonUnless(isThere_);
    path_ = path;
}

Beside::~Beside() {
    if (isThere_) {
        static_cast<void>(removeTree(path_));
    }
}

int Beside::write(std::string_view bytes) const {
    return refused_ == 0 ? writeAndFlush(file_.get(), bytes) : refused_;
}

int Beside::putInPlace(const Placing& how) {
    const int reason = vxcommon::putInPlace(path_, target_, how);
    isThere_ = reason != 0 || how.existing == Existing::Exchange;
    return reason;
}

}  // namespace vxcommon
