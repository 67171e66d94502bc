#pragma once

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

namespace vxtv {

/// Owns one file descriptor and closes it. Empty when made from -1, so the result of open(2) can be put in
/// as it is and asked with `if`.
class Descriptor {
 public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Descriptor() { close(); }

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }
    void close() {
        if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
    }

 private:
    int descriptor_ = -1;
};

/// What the system says about an error number, in words.
inline std::string reason(int error = errno) {
    return std::generic_category().message(error);
}

}  // namespace vxtv
