#pragma once

#include <memory>
#include <string>
#include <string_view>

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

}  // namespace vxclone
