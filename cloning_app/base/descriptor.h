#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace vxclone {

/// How a folder is opened that somebody may exchange for a link.
inline constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// An open file descriptor, closed at the end of its life. A negative number stands for none.
class Descriptor {
 public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }

    int get() const { return number_; }
    bool valid() const { return number_ >= 0; }

 private:
    int number_ = -1;
};

}  // namespace vxclone
