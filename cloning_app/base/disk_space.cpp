#include "cloning_app/base/disk_space.h"

#include <fmt/format.h>
#include <linux/magic.h>
#include <sys/statvfs.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr std::uint64_t kAnySize = std::numeric_limits<std::uint64_t>::max();
constexpr std::string_view kFatRefuses = "\"*/:<>?\\|";
constexpr long kExfatMagic = 0x2011BAB0;

struct TypedRules {
    long type = 0;
    FileSystemRules rules = {};
};

constexpr std::array kRules = {
    TypedRules{MSDOS_SUPER_MAGIC, {(std::uint64_t{4} << 30U) - 1, kFatRefuses, "FAT"}},
    TypedRules{kExfatMagic, {kAnySize, kFatRefuses, "exFAT"}},
};
constexpr FileSystemRules kNoRules = {kAnySize, "", ""};

bool refuses(const FileSystemRules& rules, std::string_view name) {
    const auto refused = [&rules](char character) {
        return static_cast<unsigned char>(character) < 0x20U ||
               rules.refusedCharacters.find(character) != std::string_view::npos;
    };
    return name.empty() || name.back() == '.' || name.back() == ' ' ||
           std::any_of(name.begin(), name.end(), refused);
}

/// FAT and exFAT preserve the case of a name, but names that differ only in case are equal.
std::string inSmallLetters(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

/// Something that is too large for its place, and the free room there.
struct Shortage {
    Place place;
    TreeSize package;
    std::string besides;  ///< the further data that needs room; empty if there is none
    std::string needed;
    std::string available;
};

tl::unexpected<Error> tooFull(const Shortage& shortage) {
    const bool stick = shortage.place == Place::Stick;
    return failure(
        stick ? ErrorCode::StickFull : ErrorCode::TelevisionFull,
        fmt::format("the package{} {} {}, the {} has {}; free some space{}",
                    shortage.package.files == 0 ? "" : fmt::format(" ({})", sizeText(shortage.package)),
                    shortage.besides.empty()
                        ? "needs"
                        : fmt::format("and what a restore needs besides ({}) need", shortage.besides),
                    shortage.needed, stick ? "stick" : "television's disk", shortage.available,
                    stick ? " or take another stick" : " on the television"));
}

}  // namespace

const FileSystemRules& rulesOf(long fileSystemType) {
    for (const TypedRules& typed : kRules) {
        if (typed.type == fileSystemType) {
            return typed.rules;
        }
    }
    return kNoRules;
}

const FileSystemRules& rulesAt(int directory) {
    struct statfs facts {};
    return fstatfs(directory, &facts) == 0 ? rulesOf(static_cast<long>(facts.f_type)) : kNoRules;
}

std::string problemWith(const FileSystemRules& rules, std::string_view name, std::uint64_t bytes) {
    if (rules.name.empty()) {
        return {};
    }
    if (bytes > rules.largestFile) {
        return fmt::format(
            "is larger than 4 GiB, which a {} stick cannot hold; take a stick formatted as exFAT",
            rules.name);
    }
    if (refuses(rules, name)) {
        return fmt::format("has a name that a {} stick cannot hold; take a stick with another file system",
                           rules.name);
    }
    return {};
}

std::string TreeJudge::problemWith(const TreeEntry& entry) {
    std::string problem = vxclone::problemWith(rules_, entry.name, entry.bytes);
    if (!problem.empty() || rules_.name.empty()) {
        return problem;
    }
    const auto [before, isNew] = names_.emplace(inSmallLetters(entry.path), entry.name);
    return isNew ? ""
                 : fmt::format("has the name of {}, which a {} stick takes for the same; rename one of them",
                               vxcommon::printable(before->second), rules_.name);
}

Result<void> checkSpace(const Tree& folder, const TreeSize& package, const TreeSize& reclaimed,
                        const TreeSize& besides) {
    struct statvfs facts {};
    if (fstatvfs(folder.descriptor, &facts) != 0) {
        return tl::make_unexpected(readError(folder.place, folder.path, errno));
    }
    Shortage shortage{
        folder.place, package, besides.entries == 0 ? std::string() : sizeText(besides.bytes), {}, {}};
    const std::uint64_t block = facts.f_frsize;
    const std::uint64_t available = facts.f_bavail * block + reclaimed.bytes;
    const std::uint64_t entries = package.entries + besides.entries;
    const std::uint64_t wanted = package.bytes + besides.bytes + entries * block;
    if (facts.f_blocks != 0 && wanted > available) {
        shortage.needed = sizeText(wanted);
        shortage.available = sizeText(available) + " free";
        return tooFull(shortage);
    }
    const std::uint64_t places = facts.f_favail + reclaimed.entries;
    if (facts.f_files != 0 && entries > places) {
        shortage.needed = fmt::format("{} files and folders", entries);
        shortage.available = fmt::format("room for {}", places);
        return tooFull(shortage);
    }
    return {};
}

std::string countText(std::uint64_t count, std::string_view thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

std::string sizeText(std::uint64_t bytes) {
    constexpr std::array kUnits = {"bytes", "kB", "MB", "GB"};
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= 1000.0 && unit + 1 < kUnits.size()) {
        value /= 1000.0;
        ++unit;
    }
    return unit == 0 ? fmt::format("{} {}", bytes, kUnits.front())
                     : fmt::format("{:.1f} {}", value, kUnits.at(unit));
}

std::string sizeText(const TreeSize& size) {
    return countText(size.files, "file") + ", " + sizeText(size.bytes);
}

}  // namespace vxclone
