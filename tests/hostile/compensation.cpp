#include "tests/hostile/compensation.h"

#include <algorithm>

#include "tests/support/machine/file_tree.h"

namespace vxtest {

std::uint32_t hashOf(const std::string& content) {
    std::uint32_t hash = 0;
    for (const char byte : content) {
        hash = hash * 3 + static_cast<std::uint32_t>(static_cast<signed char>(byte));
    }
    return hash;
}

std::uint32_t sumOf(const std::filesystem::path& package) {
    std::uint32_t sum = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(package)) {
        if (entry.is_regular_file() && entry.path() != package / "validate.txt") {
            sum += hashOf(readFile(entry.path()));
        }
    }
    return sum;
}

/// The base-3 digits of the number are such a content, the highest first.
std::string bytesOfHash(std::uint32_t hash) {
    std::string bytes;
    for (; hash > 0; hash /= 3) {
        bytes.push_back(static_cast<char>(hash % 3));
    }
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

}  // namespace vxtest
