#include "cloning_app/package/manifest_file.h"

#include <fmt/format.h>

#include <charconv>
#include <string_view>

#include "cloning_app/base/small_file.h"
#include "cloning_app/package/digest.h"
#include "cloning_app/package/layout.h"
#include "common/strict_json.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

// The file: these three, with the version, the body and the code between them, and nothing else.
constexpr std::string_view kBeforeVersion = R"({"format":")";
constexpr std::string_view kBeforeBody = R"(","manifest":)";
constexpr std::string_view kBeforeCode = R"(,"authentication":")";
constexpr std::string_view kEnd = "\"}\n";
constexpr std::size_t kCodeDigits = 64;
constexpr std::size_t kTailBytes = kBeforeCode.size() + kCodeDigits + kEnd.size();

constexpr int kMajor = 1;
constexpr std::string_view kVersion = "1.1";
constexpr std::size_t kLongestVersion = 16;

/// What is authenticated, so that the code stands for nothing else that the key may ever be used for.
std::string canonical(std::string_view version, std::string_view body) {
    return fmt::format("vxclone package manifest {}\n{}", version, body);
}

struct Parts {
    std::string_view version;
    std::string_view body;
    std::string_view code;
};

/// Takes the file's text apart; none where it is put together in another way.
std::optional<Parts> partsOf(std::string_view text) {
    const std::size_t version = kBeforeVersion.size();
    const std::size_t versionEnd = text.substr(0, version + kLongestVersion).find('"', version);
    if (text.substr(0, version) != kBeforeVersion || versionEnd == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t body = versionEnd + kBeforeBody.size();
    if (text.substr(versionEnd, kBeforeBody.size()) != kBeforeBody || text.size() < body + kTailBytes) {
        return Parts{text.substr(version, versionEnd - version), {}, {}};
    }
    const std::string_view tail = text.substr(text.size() - kTailBytes);
    if (tail.substr(0, kBeforeCode.size()) != kBeforeCode || tail.substr(kTailBytes - kEnd.size()) != kEnd) {
        return Parts{text.substr(version, versionEnd - version), {}, {}};
    }
    return Parts{text.substr(version, versionEnd - version),
                 text.substr(body, text.size() - kTailBytes - body),
                 tail.substr(kBeforeCode.size(), kCodeDigits)};
}

/// The first number of "1.1"; 0 where there is none.
int majorOf(std::string_view version) {
    int major = 0;
    int minor = 0;
    const char* const end = version.data() + version.size();
    const char* const dot = std::from_chars(version.data(), end, major).ptr;
    const bool whole =
        dot != end && *dot == '.' && dot + 1 != end && std::from_chars(dot + 1, end, minor).ptr == end;
    return whole && major > 0 && minor >= 0 ? major : 0;
}

std::string pathOf(const Tree& package) {
    return vxcommon::printable(package.path + "/" + kManifestFile);
}

tl::unexpected<Error> manifestDamaged(const Tree& package, const std::string& why) {
    return failure(ErrorCode::Altered, fmt::format("{} {}; make a new backup", pathOf(package), why));
}

Result<Manifest> bodyIn(const Tree& package, std::string_view body, const StopFlag* stop) {
    try {
        auto manifest = manifestIn(body, stop);
        return manifest ? Result<Manifest>(std::move(*manifest)) : manifestDamaged(package, manifest.error());
    } catch (const vxcommon::ParsingStopped&) {
        return tl::make_unexpected(stopError(stop->signal()));
    }
}

Authenticity judge(const std::optional<PackageKey>& key, std::string_view text, std::string_view code) {
    if (!key) {
        return Authenticity::Unknown;
    }
    return key->accepts(text, code) ? Authenticity::Proven : Authenticity::Broken;
}

}  // namespace

Result<std::string> writeManifest(const Tree& package, const Manifest& manifest, const PackageKey& key) {
    const std::string body = manifestBody(manifest);
    const std::string authenticated = canonical(kVersion, body);
    std::string text(kBeforeVersion);
    text.append(kVersion).append(kBeforeBody).append(body).append(kBeforeCode);
    text.append(key.codeOf(authenticated)).append(kEnd);
    if (text.size() > kMostManifestBytes) {
        return failure(ErrorCode::NotSealed,
                       "the backup cannot be sealed: its files' names are longer than any package holds; "
                       "remove some files from the television");
    }
    VX_RETURN_IF_FAILED(writeSmallFile(package, kManifestFile, text));
    return digestOf(authenticated);
}

Result<std::optional<ReadManifest>> readManifest(const Tree& package, const std::optional<PackageKey>& key,
                                                 const StopFlag* stop) {
    const auto text = readSmallFile(package, kManifestFile, kMostManifestBytes + 1);
    VX_RETURN_IF_FAILED(text);
    if (!*text) {
        return std::optional<ReadManifest>();
    }
    const auto parts = partsOf(**text);
    const int major = parts ? majorOf(parts->version) : 0;
    if (major > kMajor) {
        return failure(
            ErrorCode::NewerPackage,
            fmt::format("{} was made by a later vxclone (package format {}); bring vxclone up to date",
                        pathOf(package), vxcommon::printable(parts->version)));
    }
    if (major != kMajor || parts->body.empty() || (*text)->size() > kMostManifestBytes) {
        return manifestDamaged(package, "is no manifest");
    }
    auto manifest = bodyIn(package, parts->body, stop);
    VX_RETURN_IF_FAILED(manifest);
    const std::string authenticated = canonical(parts->version, parts->body);
    return std::optional(
        ReadManifest{std::move(*manifest), digestOf(authenticated), judge(key, authenticated, parts->code)});
}

}  // namespace vxclone
