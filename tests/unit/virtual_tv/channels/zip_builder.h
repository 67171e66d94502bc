#pragma once

#include <archive.h>
#include <archive_entry.h>

#include <string>
#include <vector>

namespace vxtv::test {

/// A member that a normal program would not pack.
struct ZipMember {
    std::string name;
    std::string content;
    unsigned type = AE_IFREG;
    unsigned mode = 0644;
    std::string link{};  ///< for a symbolic link: where it leads
};

/// An archive of these members in this order. `options` are those of libarchive:
/// "zip:encryption=traditional".
std::string packedAsTold(const std::vector<ZipMember>& members, const std::string& options = "");

}  // namespace vxtv::test
