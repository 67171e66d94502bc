// Enciphers a file and deciphers it again: bench_cipher_file PLAIN ENCIPHERED AGAIN
// Prints the bytes a second of each.

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "VXCloneUtil.h"

namespace {

double bytesASecond(const std::string& from, const std::string& to, eCRYPT_OP_TYPE type) {
    const auto begin = std::chrono::steady_clock::now();
    const bool done =
        CVXCloneUtil::EncryptDecryptFile(from, to, std::string(32, 'k'), std::string(16, 'i'), type);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    return done ? static_cast<double>(std::filesystem::file_size(from)) / seconds.count() : 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("usage: bench_cipher_file PLAIN ENCIPHERED AGAIN\n", stderr);
        return 2;
    }
    const double enciphering = bytesASecond(argv[1], argv[2], CRYPT_OP_ENCRYPT);
    const double deciphering = bytesASecond(argv[2], argv[3], CRYPT_OP_DECRYPT);
    std::printf("%.0f %.0f\n", enciphering, deciphering);
    return enciphering > 0 && deciphering > 0 ? 0 : 1;
}
