// manifest.json of a package: any bytes, or any body with a correct code.

#include <fcntl.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>

#include <array>
#include <optional>

#include "cloning_app/package/digest.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/manifest_file.h"
#include "fuzz/input.h"
#include "fuzz/target.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/scripted/scripted_platform.h"

namespace vxfuzz {
namespace {

using vxclone::Authenticity;
using vxclone::Manifest;
using vxclone::ReadManifest;

const std::string kKey(vxclone::PackageKey::kBytes, 'p');

/// A folder that contains only a manifest.
class Package {
 public:
    void write(std::string_view text) const { vxtest::writeFile(file(), text); }
    std::string text() const { return vxtest::readFile(file()); }
    vxclone::Tree tree() const { return {descriptor_.get(), folder_.path().string(), vxclone::Place::Stick}; }

 private:
    std::filesystem::path file() const { return folder_ / vxclone::kManifestFile; }

    vxtest::TemporaryDirectory folder_;
    vxclone::Descriptor descriptor_{open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
};

std::string codeOf(const std::string& text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> code{};
    unsigned size = 0;
    HMAC(EVP_sha256(), kKey.data(), static_cast<int>(kKey.size()),
         reinterpret_cast<const unsigned char*>(text.data()), text.size(), code.data(), &size);
    return vxclone::hexText({reinterpret_cast<const char*>(code.data()), size});
}

std::string canonical(std::string_view version, std::string_view body) {
    return "vxclone package manifest " + std::string(version) + "\n" + std::string(body);
}

std::string withCode(std::string_view version, std::string_view body) {
    return R"({"format":")" + std::string(version) + R"(","manifest":)" + std::string(body) +
           R"(,"authentication":")" + codeOf(canonical(version, body)) + "\"}\n";
}

/// Whether the file contains the correct code for its content.
bool hasRightCode(const std::string& text) {
    constexpr std::size_t kTail = sizeof R"(,"authentication":""})" + 64;
    constexpr std::size_t kVersion = sizeof R"({"format":")" - 1;
    const std::size_t versionEnd = text.find('"', kVersion);
    const std::size_t body = versionEnd + sizeof R"(","manifest":)" - 1;
    return versionEnd != std::string::npos && text.size() >= body + kTail &&
           text == withCode(text.substr(kVersion, versionEnd - kVersion),
                            text.substr(body, text.size() - kTail - body));
}

void checkPaths(const Manifest& manifest) {
    const std::string* before = nullptr;
    for (const vxclone::PackageEntry& entry : manifest.entries) {
        const std::filesystem::path path(entry.path);
        require(before == nullptr || *before < entry.path, "the entries stand in order");
        require(path.is_relative() && path.lexically_normal() == path && *path.begin() != ".." &&
                    entry.path.find('\0') == std::string::npos,
                "an entry lies in the package");
        before = &entry.path;
    }
}

bool isSame(const Manifest& one, const Manifest& other) {
    return vxclone::manifestBody(one) == vxclone::manifestBody(other);
}

void writeAgain(const Package& package, const Manifest& manifest,
                const std::optional<vxclone::PackageKey>& key) {
    const auto digest = vxclone::writeManifest(package.tree(), manifest, *key);
    require(digest.has_value(), "a manifest that was read can be written");
    const auto again = vxclone::readManifest(package.tree(), key);
    require(again && *again, "a manifest that was written can be read");
    require((*again)->authenticity == Authenticity::Proven, "a manifest that was written is proven");
    require((*again)->digest == *digest && isSame((*again)->manifest, manifest),
            "a manifest that was written is read as it was");
}

void run(std::string_view bytes) {
    static const Package package;
    static const auto key = [] {
        vxtest::ScriptedPlatform::instance().setSecret(vxclone::kPackageKeyEntry, kKey);
        return vxclone::PackageKey::ofTelevision();
    }();
    Input input(bytes);
    switch (input.byte()) {
        case 'b':
            package.write(withCode("1.0", input.rest()));
            break;
        case 'v': {
            const std::string_view version = input.until('\n');
            package.write(withCode(version, input.rest()));
            break;
        }
        default:
            package.write(input.rest());
    }
    const auto read = vxclone::readManifest(package.tree(), key);
    if (!read) {
        requireShowable(read.error().sentence);
        return;
    }
    const bool proven = (*read)->authenticity == Authenticity::Proven;
    require(proven == hasRightCode(package.text()), "a manifest is proven by the right code alone");
    checkPaths((*read)->manifest);
    writeAgain(package, (*read)->manifest, key);
}

const Target kManifest("manifest", run);

}  // namespace
}  // namespace vxfuzz
