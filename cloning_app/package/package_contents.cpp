#include "cloning_app/package/package_contents.h"

#include <fmt/format.h>
#include <openssl/evp.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <memory>
#include <set>

#include "cloning_app/package/layout.h"

namespace vxclone {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{128} << 10U;
/// In place of the digest and the size of a folder.
constexpr std::string_view kFolderFacts = "folder -";

struct FreeDigest {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

/// The SHA-256 of what is left of the file in hexadecimal digits; empty when it cannot be read (errno).
std::string digestOf(int file) {
    const std::unique_ptr<EVP_MD_CTX, FreeDigest> context(EVP_MD_CTX_new());
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    errno = ENOMEM;
    if (!context || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1) {
        return {};
    }
    std::vector<char> block(kBlockBytes);
    for (ssize_t got = 1; got != 0;) {
        got = read(file, block.data(), block.size());
        if (got < 0 && errno != EINTR) {
            return {};
        }
        if (got > 0) {
            EVP_DigestUpdate(context.get(), block.data(), static_cast<std::size_t>(got));
        }
    }
    EVP_DigestFinal_ex(context.get(), digest.data(), &size);
    std::string text;
    for (unsigned index = 0; index < size; ++index) {
        text += fmt::format("{:02x}", digest.at(index));
    }
    return text;
}

/// A name for one line of a list: what would break the line, and the mark of that, are written as \xNN.
std::string escaped(const std::string& name) {
    std::string text;
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        const bool plain = byte >= 0x20U && byte != 0x7fU && character != '\\';
        text += plain ? std::string(1, character) : fmt::format("\\x{:02x}", byte);
    }
    return text;
}

class Reader final : public TreeVisitor {
 public:
    explicit Reader(const Tree& package) : package_(package) {}

    Result<void> file(const TreeEntry& entry, int descriptor) override {
        const std::string name = nameOf(entry);
        if (sidecarFolder_ != 0 || isSidecar(entry.name) || name == kSealFile) {
            return {};
        }
        contents_.files.push_back(entry.path);
        if (name == kContentsFile) {
            return {};
        }
        const std::string digest = digestOf(descriptor);
        if (digest.empty()) {
            return tl::make_unexpected(readError(package_.place, entry.path, errno));
        }
        contents_.list += fmt::format("{} {} {}\n", digest, entry.bytes, escaped(name));
        return {};
    }

    Result<void> enterFolder(const TreeEntry& entry) override {
        if (sidecarFolder_ != 0 || isSidecar(entry.name)) {
            ++sidecarFolder_;
        } else {
            contents_.list += fmt::format("{} {}\n", kFolderFacts, escaped(nameOf(entry)));
        }
        return {};
    }

    Result<void> leaveFolder() override {
        sidecarFolder_ -= sidecarFolder_ == 0 ? 0 : 1;
        return {};
    }

    PackageContents contents() && {
        std::sort(contents_.files.begin(), contents_.files.end());
        return std::move(contents_);
    }

 private:
    std::string nameOf(const TreeEntry& entry) const { return entry.path.substr(package_.path.size() + 1); }

    const Tree& package_;
    std::size_t sidecarFolder_ = 0;  ///< how many folders deep the walk is in one that is passed over
    PackageContents contents_;
};

std::set<std::string> linesOf(const std::string& list) {
    std::set<std::string> lines;
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = std::min(list.find('\n', start), list.size());
        lines.insert(list.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

/// The name in a line: what follows its digest and its size.
std::string nameIn(const std::string& line) {
    const std::size_t size = line.find(' ');
    const std::size_t name = size == std::string::npos ? size : line.find(' ', size + 1);
    return name == std::string::npos ? line : line.substr(name + 1);
}

}  // namespace

Result<PackageContents> readContents(const Tree& package) {
    Reader reader(package);
    if (const auto walked = walkTree(package, TreeLimits{}, reader); !walked) {
        return tl::make_unexpected(walked.error());
    }
    return std::move(reader).contents();
}

std::vector<std::string> differingEntries(const std::string& one, const std::string& other) {
    const auto ones = linesOf(one);
    const auto others = linesOf(other);
    std::vector<std::string> lines;
    std::set_symmetric_difference(ones.begin(), ones.end(), others.begin(), others.end(),
                                  std::back_inserter(lines));
    std::set<std::string> names;
    std::transform(lines.begin(), lines.end(), std::inserter(names, names.end()), nameIn);
    return {names.begin(), names.end()};
}

}  // namespace vxclone
