#include "cloning_app/package/digest.h"

#include <openssl/evp.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <vector>

namespace vxclone {

namespace {

constexpr std::size_t kDigestBlockBytes = std::size_t{128} << 10U;

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

}  // namespace vxclone
