#include "tests/hostile/sealing_again.h"

#include <fcntl.h>

#include <stdexcept>

#include "cloning_app/check/sealing.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/package_contents.h"
#include "cloning_app/package/package_key.h"
#include "cloning_app/television/library_engine.h"
#include "tests/support/machine/file_tree.h"

namespace vxtest {

namespace {

namespace fs = std::filesystem;

constexpr const char* kBodyBegin = R"(,"manifest":)";
constexpr const char* kBodyEnd = R"(,"authentication":")";
constexpr const char* kNewSeal = "validate.new";

template <class Value>
Value required(vxclone::Result<Value> result) {
    if (!result) {
        throw std::runtime_error("cannot be sealed: " + result.error().sentence);
    }
    return std::move(*result);
}

/// A package folder, open.
struct Opened {
    explicit Opened(const fs::path& package)
        : folder(open(package.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          tree{folder.get(), package.string(), vxclone::Place::Television} {}

    vxclone::Descriptor folder;
    vxclone::Tree tree;
};

vxclone::PackageKey key() {
    auto key = vxclone::PackageKey::ofTelevision();
    if (!key) {
        throw std::runtime_error("the television has no package key");
    }
    return std::move(*key);
}

/// A new seal over all current files.
void sealFiles(const fs::path& package) {
    const Opened opened(package);
    vxclone::LibraryEngine engine;
    const auto contents = required(vxclone::readContents(opened.tree, vxclone::Digests::None));
    if (!required(engine.seal(contents.files, (package / kNewSeal).string()))) {
        throw std::runtime_error("the library does not seal");
    }
    fs::rename(package / kNewSeal, package / vxclone::kSealFile);
}

}  // namespace

void sealAgain(const fs::path& package) {
    const Opened opened(package);
    vxclone::LibraryEngine engine;
    fs::remove(package / vxclone::kManifestFile);
    required(vxclone::sealPackage(engine, opened.tree, required(vxclone::originOfBackup("clone")), key()));
}

void sealWithManifest(const fs::path& package, const std::string& body) {
    writeFile(package / vxclone::kManifestFile, manifestFile(body));
    sealFiles(package);
}

void sealWithoutManifest(const fs::path& package) {
    fs::remove(package / vxclone::kManifestFile);
    sealFiles(package);
}

std::string manifestFile(const std::string& body, const std::string& version) {
    const std::string code = key().codeOf("vxclone package manifest " + version + "\n" + body);
    return R"({"format":")" + version + '"' + kBodyBegin + body + kBodyEnd + code + "\"}\n";
}

std::string bodyOf(const std::string& manifestFile) {
    const std::size_t begin = manifestFile.find(kBodyBegin) + std::string_view(kBodyBegin).size();
    return manifestFile.substr(begin, manifestFile.rfind(kBodyEnd) - begin);
}

}  // namespace vxtest
