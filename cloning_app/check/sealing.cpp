#include "cloning_app/check/sealing.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "cloning_app/base/small_file.h"
#include "cloning_app/base/stamp.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/manifest_file.h"
#include "cloning_app/television/shortage.h"

namespace vxclone {

namespace {

/// The file to which the library writes a new seal. It cannot have the seal's own name, because the library
/// removes that file from the clone folder.
constexpr const char* kNewSealFile = "validate.vxclone-new";

// The result of the library's check for a seal that is right.
constexpr int kSealFits = 0;

std::string in(const Tree& package, std::string_view name) {
    return package.path + "/" + std::string(name);
}

tl::unexpected<Error> noKey(std::string_view which) {
    const auto none =
        failure(ErrorCode::NoKey,
                fmt::format("this television has no {}, so a backup cannot be sealed; restart the "
                            "television and try again, and have its keys installed if that does not help",
                            which));
    return tl::make_unexpected(orShortage(none.value(), std::string(kCloneRoot)));
}

tl::unexpected<Error> notSealed(const std::string& why) {
    return failure(ErrorCode::NotSealed, "the backup cannot be sealed: " + why +
                                             "; free some space on the television's disk and back up again");
}

/// Turns the library's answer into success or an error. If the call itself failed, the backup is not sealed.
Result<void> sealedOr(const Result<bool>& answer, const std::string& whyNot) {
    if (!answer) {
        const bool full = answer.error().code == ErrorCode::TelevisionFull;
        return failure(ErrorCode::NotSealed,
                       "the backup cannot be sealed: " + answer.error().sentence +
                           (full ? "" : ", or free some space on the television's disk first"));
    }
    return *answer ? Result<void>() : notSealed(whyNot);
}

Result<void> recordIdentity(CloneEngine& engine, const Tree& package, const Identity& identity) {
    const auto text = identityText(identity);
    VX_RETURN_IF_FAILED(text);
    if (const auto written = writeSmallFile(package, kIdentityFile, *text); !written) {
        return written;
    }
    const auto readBack = engine.checkIdentity(package.path);
    VX_RETURN_IF_FAILED(readBack);
    if (*readBack != kSealFits) {
        return notSealed(fmt::format("the clone library does not accept the {} of this television (code {})",
                                     kIdentityFile, *readBack));
    }
    return {};
}

/// Seals the files, and checks that the library accepts its own seal.
Result<void> makeSeal(CloneEngine& engine, const Tree& package, const std::vector<std::string>& files) {
    const auto made =
        sealedOr(engine.seal(files, in(package, kNewSealFile)), "the clone library could not write the seal");
    if (!made) {
        return made;
    }
    if (renameat(package.descriptor, kNewSealFile, package.descriptor, kSealFile) != 0) {
        return tl::make_unexpected(writeError(package.place, in(package, kSealFile), errno));
    }
    return sealedOr(engine.checkSeal(files, in(package, kSealFile)),
                    "the seal does not match what was sealed");
}

Result<std::string> recordAndSeal(CloneEngine& engine, const Tree& package, const PackageOrigin& origin,
                                  const PackageKey& key) {
    VX_RETURN_IF_FAILED(recordIdentity(engine, package, origin.source));
    // The seal covers the manifest, too, so the file must exist when the files are listed.
    VX_RETURN_IF_FAILED(writeSmallFile(package, kManifestFile, ""));
    auto contents = readContents(package);
    VX_RETURN_IF_FAILED(contents);
    auto digest = writeManifest(package, {origin, std::move(contents->entries)}, key);
    if (!digest) {
        return digest;
    }
    VX_RETURN_IF_FAILED(makeSeal(engine, package, contents->files));
    return digest;
}

void removeSealing(const Tree& package) {
    for (const char* const name : {kNewSealFile, kSealFile, kSealWorkingFile}) {
        removeTree(package.descriptor, name);
    }
}

}  // namespace

Result<PackageKey> requireKeys(CloneEngine& engine) {
    const auto key = engine.hasKey();
    VX_RETURN_IF_FAILED(key);
    if (!*key) {
        return noKey("clone key");
    }
    auto packageKey = PackageKey::ofTelevision();
    return packageKey ? Result<PackageKey>(std::move(*packageKey)) : noKey("package key");
}

Result<SealedPackage> sealPackage(CloneEngine& engine, const Tree& package, const PackageOrigin& origin,
                                  const PackageKey& key) {
    removeSealing(package);
    auto digest = recordAndSeal(engine, package, origin, key);
    if (!digest) {
        removeSealing(package);
        return tl::make_unexpected(digest.error());
    }
    return SealedPackage{{Check{Subject::Identity, Finding::Recorded},
                          Check{Subject::Manifest, Finding::Recorded}, Check{Subject::Seal, Finding::Sealed}},
                         std::move(*digest)};
}

Result<PackageOrigin> originOfBackup(const std::string& name) {
    if (name.empty() || name.size() > kLongestPackageName) {
        return failure(ErrorCode::BadArguments,
                       fmt::format("the package's name must have 1 to {} bytes; choose another with --name",
                                   kLongestPackageName));
    }
    const Identity identity = televisionIdentity();
    VX_RETURN_IF_FAILED(identityText(identity));
    return PackageOrigin{.name = name,
                         .madeAt = timeText(secondsNow()),
                         .madeBy = fmt::format("vxclone {}", version()),
                         .source = identity};
}

std::vector<ManifestResult> resultsOf(const std::vector<Row>& rows) {
    std::vector<ManifestResult> results;
    for (const Row& row : rows) {
        results.push_back({std::string(categoryOf(row.category).name), std::string(nameOf(row.verdict)),
                           row.detail, row.subject});
    }
    return results;
}

}  // namespace vxclone
