#pragma once

#include <unistd.h>

#include <utility>

namespace vxcommon {

/// Owns one file descriptor and closes it. A negative number makes it empty, so it can take the result of
/// open(2) and be tested with `if`.
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
    ~Descriptor() { close(); }

    int get() const { return number_; }
    bool valid() const { return number_ >= 0; }
    explicit operator bool() const { return valid(); }
    void close() {
        if (valid()) {
            ::close(std::exchange(number_, -1));
        }
    }

 private:
    int number_ = -1;
};

}  // namespace vxcommon
