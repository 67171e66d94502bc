#include "cloning_app/check/integrity.h"

#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/base/small_file.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/television/shortage.h"

namespace vxclone {

namespace {

/// The size of the largest file that the library writes while it checks a seal.
constexpr std::size_t kSealBytes = 16;

// The result of the library's check for an identity that fits.
constexpr int kLibraryFits = 0;
constexpr int kLibraryFlagUnreadable = -1;
constexpr int kLibraryModelDiffers = 1;
constexpr int kLibraryTagDiffers = 3;
constexpr int kLibraryTunerDiffers = 4;

/// Whether our own comparison explains the library's answer.
bool isExplained(int answer, const std::vector<Check>& checks) {
    const auto bad = [&checks](Subject subject) {
        return std::any_of(checks.begin(), checks.end(), [subject](const Check& check) {
            return check.subject == subject && problemOf(check).has_value();
        });
    };
    switch (answer) {
        case kLibraryFits:
            return true;
        case kLibraryTagDiffers:
            return bad(Subject::ProductTag);
        case kLibraryModelDiffers:
            return bad(Subject::Model);
        case kLibraryTunerDiffers:
        case kLibraryFlagUnreadable:
            return bad(Subject::Tuner);
        default:
            return false;
    }
}

Result<std::vector<Check>> examineIdentity(CloneEngine& engine, const Tree& package) {
    const auto identity = readIdentity(package);
    VX_RETURN_IF_FAILED(identity);
    if (!*identity) {
        return std::vector{missingIdentity()};
    }
    std::vector<Check> checks = compareIdentities(televisionIdentity(), **identity);
    const auto answer = engine.checkIdentity(package.path);
    VX_RETURN_IF_FAILED(answer);
    if (!isExplained(*answer, checks)) {
        checks.push_back({Subject::Identity, Finding::Refused, "", "", fmt::format("code {}", *answer)});
    }
    return checks;
}

bool lacksAKey(const std::vector<Check>& checks) {
    return std::any_of(checks.begin(), checks.end(),
                       [](const Check& check) { return check.finding == Finding::None; });
}

Finding findingOf(EntryDifference::Kind kind) {
    switch (kind) {
        case EntryDifference::Kind::Missing:
            return Finding::Gone;
        case EntryDifference::Kind::Added:
            return Finding::Added;
        case EntryDifference::Kind::Altered:
            break;
    }
    return Finding::Altered;
}

/// The content of the package, whose entries are already known.
Result<Holdings> holdingsOf(const Tree& package, const PackageContents& contents, const StopFlag& stop) {
    auto settings = readSettings(package, &stop);
    if (!settings && settings.error().code != ErrorCode::SettingsDamaged) {
        return tl::make_unexpected(settings.error());
    }
    return Holdings{contents.entries,
                    settings ? settings->value_or(std::vector<Setting>()) : std::vector<Setting>()};
}

/// Adds the checks of the manifest. A file of that name that is not a manifest means an altered package, not
/// a failed examination.
Result<void> examineManifest(const Tree& package, const PackageContents& contents, const StopFlag& stop,
                             Examination& result) {
    const auto holdings = holdingsOf(package, contents, stop);
    VX_RETURN_IF_FAILED(holdings);
    const auto manifest = readManifest(package, PackageKey::ofTelevision(), &stop);
    if (!manifest && manifest.error().code == ErrorCode::Altered) {
        result.checks.push_back({Subject::Manifest, Finding::Altered, "", "", kManifestFile});
        judgeCompleteness({}, *holdings, result.checks, result.lacks);
        return {};
    }
    VX_RETURN_IF_FAILED(manifest);
    result.checks.push_back(checkOf(*manifest));
    judgeCompleteness(*manifest, *holdings, result.checks, result.lacks);
    if (*manifest) {
        result.digest = (*manifest)->digest;
        result.name = (*manifest)->manifest.origin.name;
        for (const EntryDifference& difference :
             differencesOf((*manifest)->manifest.entries, contents.entries)) {
            result.checks.push_back({Subject::File, findingOf(difference.kind), "", "", difference.path});
        }
    }
    return {};
}

Result<Check> examineSeal(CloneEngine& engine, const Tree& package, const Tree& root,
                          const std::vector<std::string>& files) {
    // The library would overwrite the package's own file of this name. No sealed package has one.
    const auto taken = hasEntry(package, kSealWorkingFile);
    VX_RETURN_IF_FAILED(taken);
    if (*taken) {
        return Check{Subject::Seal, Finding::Altered, "", "", kSealWorkingFile};
    }
    // Reserves the room first, because the library cannot distinguish a full disk from a wrong seal.
    VX_RETURN_IF_FAILED(writeSmallFile(root, kSealWorkingFile, std::string(kSealBytes, '0')));
    const auto good = engine.checkSeal(files, root.path + "/" + kSealFile);
    removeTree(root.descriptor, kSealWorkingFile);
    VX_RETURN_IF_FAILED(good);
    return Check{Subject::Seal, *good ? Finding::Unaltered : Finding::Altered};
}

/// The result of the seal's check, if there is a seal.
Result<std::vector<Check>> examineSealIfAny(CloneEngine& engine, const Tree& package, const Tree& root,
                                            const std::vector<std::string>& files, bool key) {
    const auto sealed = hasEntry(root, kSealFile);
    VX_RETURN_IF_FAILED(sealed);
    if (!*sealed) {
        return std::vector{Check{Subject::Seal, Finding::Missing, "", "", kSealFile}};
    }
    if (!key) {
        return std::vector<Check>();
    }
    return examineSeal(engine, package, root, files).map([](const Check& seal) { return std::vector{seal}; });
}

std::string shown(const std::optional<std::string>& value) {
    return value ? *value : "unknown";
}
std::string shown(const std::optional<int>& value) {
    return value ? std::to_string(*value) : "unknown";
}

template <class Value>
Check compare(Subject subject, const Value& television, const Value& package) {
    Finding finding = television == package ? Finding::Same : Finding::Differs;
    if (!television || !package) {
        finding = television ? Finding::Absent : Finding::Unknown;
    }
    return {subject, finding, shown(television), shown(package)};
}

}  // namespace

void judgeCompleteness(const std::optional<ReadManifest>& manifest, const Holdings& holdings,
                       std::vector<Check>& checks, std::vector<Lack>& lacks) {
    Completeness judged = completenessOf(manifest, holdings);
    for (std::string& contradiction : judged.contradictions) {
        checks.push_back({Subject::Manifest, Finding::Altered, "", "",
                          std::string(kManifestFile) + ": " + std::move(contradiction)});
    }
    lacks = std::move(judged.lacks);
}

Check checkOf(const std::optional<ReadManifest>& manifest) {
    if (!manifest) {
        return {Subject::Manifest, Finding::Unlisted};
    }
    switch (manifest->authenticity) {
        case Authenticity::Proven:
            return {Subject::Manifest, Finding::Unaltered};
        case Authenticity::Unknown:
            return {Subject::PackageKey, Finding::None};
        case Authenticity::Broken:
            break;
    }
    return {Subject::Manifest, Finding::Altered, "", "", kManifestFile};
}

Result<Examination> examinePackage(CloneEngine& engine, const Tree& package, const Tree& root,
                                   const StopFlag& stop) {
    auto reading = ContentsReading::begin(package, Digests::OfFiles, &stop);
    VX_RETURN_IF_FAILED(reading);
    auto identity = examineIdentity(engine, root);
    VX_RETURN_IF_FAILED(identity);
    Examination result{.checks = std::move(*identity)};
    const auto key = engine.hasKey();
    VX_RETURN_IF_FAILED(key);
    if (!*key) {
        result.checks.push_back({Subject::Key, Finding::None});
    }
    // The library reads the files while their digests are computed on other threads.
    const auto seal = examineSealIfAny(engine, package, root, reading->files(), *key);
    VX_RETURN_IF_FAILED(seal);
    const auto contents = reading->finish();
    VX_RETURN_IF_FAILED(contents);
    VX_RETURN_IF_FAILED(examineManifest(package, *contents, stop, result));
    result.checks.insert(result.checks.end(), seal->begin(), seal->end());
    if (lacksAKey(result.checks)) {
        if (auto shortage = shortageAt(root.path)) {
            return tl::make_unexpected(std::move(*shortage));
        }
    }
    return result;
}

std::vector<Check> compareIdentities(const Identity& television, const Identity& package) {
    return {compare(Subject::Model, television.model, package.model),
            compare(Subject::ProductTag, television.productTag, package.productTag),
            compare(Subject::Tuner, television.tuner, package.tuner)};
}

Result<std::optional<Identity>> readIdentity(const Tree& package) {
    const auto text = readSmallFile(package, kIdentityFile, kMostIdentityBytes);
    VX_RETURN_IF_FAILED(text);
    return *text ? std::optional(parseIdentity(**text)) : std::nullopt;
}

Check missingIdentity() {
    return {Subject::Identity, Finding::Missing, "", "", kIdentityFile};
}

bool overrideModel(std::vector<Check>& checks) {
    for (Check& check : checks) {
        if (check.subject == Subject::Model && check.finding == Finding::Differs) {
            check.finding = Finding::Overridden;
            return true;
        }
    }
    return false;
}

}  // namespace vxclone
