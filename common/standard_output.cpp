#include "common/standard_output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>

namespace vxcommon {

namespace {

/// Whether the call may be repeated after this failure.
bool mayGoOn(int reason) {
    if (reason != EAGAIN) {
        return reason == EINTR;
    }
    // Another program, such as the one on the terminal, has made the shared descriptor non-blocking.
    pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, -1) >= 0 || errno == EINTR;
}

}  // namespace

StandardOutput::StandardOutput() : before_(std::cout.rdbuf(this)) {
    setp(held_.data(), held_.data() + held_.size());
}

StandardOutput::~StandardOutput() {
    finish();
    std::cout.rdbuf(before_);
}

int StandardOutput::finish() {
    sync();
    return reason_;
}

StandardOutput::int_type StandardOutput::overflow(int_type character) {
    if (sync() != 0) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(character);
        pbump(1);
    }
    return traits_type::not_eof(character);
}

int StandardOutput::sync() {
    write(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(held_.data(), held_.data() + held_.size());
    return reason_ == 0 ? 0 : -1;
}

void StandardOutput::write(const char* text, std::size_t size) {
    while (size != 0 && reason_ == 0) {
        const ssize_t written = ::write(STDOUT_FILENO, text, size);
        if (written >= 0) {
            text += written;
            size -= static_cast<std::size_t>(written);
        } else if (!mayGoOn(errno)) {
            reason_ = errno;
        }
    }
}

}  // namespace vxcommon
