#include "cloning_app/run/integrity.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "cloning_app/package/layout.h"
#include "cloning_app/package/package_contents.h"
#include "cloning_app/package/small_file.h"

namespace vxclone {

namespace {

/// Where the library puts a new seal: it removes a file with the seal's own name from the clone folder.
constexpr const char* kNewSealFile = "validate.vxclone-new";
constexpr std::size_t kMostEntriesNamed = 3;
/// How much longer than it should be a list of contents is read, for the sentence about it.
constexpr std::size_t kMoreListBytes = std::size_t{64} << 10U;
/// As large as anything that the library writes while it checks a seal.
constexpr std::size_t kSealBytes = 16;

// What the library's check of the identity answers.
constexpr int kLibraryFits = 0;
constexpr int kLibraryFlagUnreadable = -1;
constexpr int kLibraryModelDiffers = 1;
constexpr int kLibraryTagDiffers = 3;
constexpr int kLibraryTunerDiffers = 4;

std::string in(const Tree& package, std::string_view name) {
    return package.path + "/" + std::string(name);
}

tl::unexpected<Error> notSealed(const std::string& why) {
    return failure(ErrorCode::NotSealed, "the backup cannot be sealed: " + why +
                                             "; free some space on the television's disk and back up again");
}

/// What the library said while it sealed; a call that broke off is a backup that is not sealed.
Result<void> sealedOr(const Result<bool>& answer, const std::string& whyNot) {
    if (!answer) {
        return failure(ErrorCode::NotSealed, "the backup cannot be sealed: " + answer.error().sentence);
    }
    return *answer ? Result<void>() : notSealed(whyNot);
}

Result<void> recordIdentity(CloneEngine& engine, const Tree& package, const Identity& identity) {
    const auto text = identityText(identity);
    if (!text) {
        return tl::make_unexpected(text.error());
    }
    if (const auto written = writeSmallFile(package, kIdentityFile, *text); !written) {
        return written;
    }
    const auto readBack = engine.checkIdentity(package.path);
    if (!readBack) {
        return tl::make_unexpected(readBack.error());
    }
    if (*readBack != kLibraryFits) {
        return notSealed(fmt::format("the clone library does not accept the {} of this television (code {})",
                                     kIdentityFile, *readBack));
    }
    return {};
}

/// Seals the files, and sees whether the library takes its own seal.
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

Result<void> recordAndSeal(CloneEngine& engine, const Tree& package, const Identity& identity) {
    if (const auto recorded = recordIdentity(engine, package, identity); !recorded) {
        return recorded;
    }
    if (const auto room = writeSmallFile(package, kContentsFile, ""); !room) {
        return room;
    }
    const auto contents = readContents(package);
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    if (const auto listed = writeSmallFile(package, kContentsFile, contents->list); !listed) {
        return listed;
    }
    return makeSeal(engine, package, contents->files);
}

void removeSealing(const Tree& package) {
    for (const char* const name : {kNewSealFile, kSealFile, kSealWorkingFile}) {
        removeTree(package.descriptor, name);
    }
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

/// Whether the library's answer is no surprise after our own comparison.
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
    const auto text = readSmallFile(package, kIdentityFile, kMostIdentityBytes);
    if (!text) {
        return tl::make_unexpected(text.error());
    }
    if (!*text) {
        return std::vector{Check{Subject::Identity, Finding::Missing, "", "", kIdentityFile}};
    }
    const Identity here = televisionIdentity();
    const Identity there = parseIdentity(**text);
    std::vector<Check> checks = {compare(Subject::Model, here.model, there.model),
                                 compare(Subject::ProductTag, here.productTag, there.productTag),
                                 compare(Subject::Tuner, here.tuner, there.tuner)};
    const auto answer = engine.checkIdentity(package.path);
    if (!answer) {
        return tl::make_unexpected(answer.error());
    }
    if (!isExplained(*answer, checks)) {
        checks.push_back({Subject::Identity, Finding::Refused, "", "", fmt::format("code {}", *answer)});
    }
    return checks;
}

/// What the list of contents says against the package, for people; empty when it agrees.
Result<std::string> contentsProblem(const Tree& package, const PackageContents& contents) {
    const auto list = readSmallFile(package, kContentsFile, contents.list.size() + kMoreListBytes);
    if (!list) {
        return tl::make_unexpected(list.error());
    }
    if (!*list) {
        return std::string(kContentsFile) + " is gone";
    }
    if (**list == contents.list) {
        return std::string();
    }
    const std::vector<std::string> names = differingEntries(**list, contents.list);
    std::string text;
    for (std::size_t index = 0; index < std::min(names.size(), kMostEntriesNamed); ++index) {
        text += (index == 0 ? "" : ", ") + names[index];
    }
    if (names.size() > kMostEntriesNamed) {
        text += fmt::format(" and {} more", names.size() - kMostEntriesNamed);
    }
    return text.empty() ? std::string(kContentsFile) : text;
}

Result<Check> examineSeal(CloneEngine& engine, const Tree& package) {
    const auto contents = readContents(package);
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    const auto problem = contentsProblem(package, *contents);
    if (!problem) {
        return tl::make_unexpected(problem.error());
    }
    // The library cannot tell a full disk from a wrong seal. A package's own file of this name is altered by
    // the library, and no sealed package has one.
    const auto working = readSmallFile(package, kSealWorkingFile, 1);
    if (!working || *working) {
        return Check{Subject::Seal, Finding::Altered, "", "", kSealWorkingFile};
    }
    if (const auto room = writeSmallFile(package, kSealWorkingFile, std::string(kSealBytes, '0')); !room) {
        return tl::make_unexpected(room.error());
    }
    const auto good = engine.checkSeal(contents->files, in(package, kSealFile));
    removeTree(package.descriptor, kSealWorkingFile);
    if (!good) {
        return tl::make_unexpected(good.error());
    }
    const bool unaltered = *good && problem->empty();
    return Check{Subject::Seal, unaltered ? Finding::Unaltered : Finding::Altered, "", "", *problem};
}

}  // namespace

Result<void> requireKey(CloneEngine& engine) {
    const auto key = engine.hasKey();
    if (!key) {
        return tl::make_unexpected(key.error());
    }
    if (!*key) {
        return failure(
            ErrorCode::NoKey,
            "this television has no clone key, so a backup cannot be sealed; restart the television "
            "and try again, and have its key installed if that does not help");
    }
    return {};
}

Result<std::vector<Check>> sealPackage(CloneEngine& engine, const Tree& package, const Identity& identity) {
    removeSealing(package);
    if (const auto sealed = recordAndSeal(engine, package, identity); !sealed) {
        removeSealing(package);
        return tl::make_unexpected(sealed.error());
    }
    return std::vector{Check{Subject::Identity, Finding::Recorded}, Check{Subject::Seal, Finding::Sealed}};
}

Result<std::vector<Check>> examinePackage(CloneEngine& engine, const Tree& package) {
    auto checks = examineIdentity(engine, package);
    if (!checks) {
        return checks;
    }
    const auto key = engine.hasKey();
    if (!key) {
        return tl::make_unexpected(key.error());
    }
    if (!*key) {
        checks->push_back({Subject::Key, Finding::None});
    }
    if (faccessat(package.descriptor, kSealFile, F_OK, AT_SYMLINK_NOFOLLOW) != 0) {
        checks->push_back({Subject::Seal, Finding::Missing, "", "", kSealFile});
    } else if (*key) {
        auto seal = examineSeal(engine, package);
        if (!seal) {
            return tl::make_unexpected(seal.error());
        }
        checks->push_back(std::move(*seal));
    }
    return checks;
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
