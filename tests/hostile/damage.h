#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vxtest {

/// The kind of file that replaces an entry.
enum class Impostor {
    AbsoluteLink,  ///< to a file or folder outside of the package
    RelativeLink,  ///< the same with `..`
    InnerLink,     ///< to the entry itself, under another name in the package
    DanglingLink,
    LoopingLink,
    Fifo,
    Socket,
    ZeroDevice,
    BlockDevice,
    Folder,  ///< in the place of a file
    File     ///< in the place of a folder
};

struct NamedImpostor {
    const char* name;
    Impostor kind;
};
/// The kinds that no package may contain anywhere.
const std::vector<NamedImpostor>& specialImpostors();

/// Replaces the entry by the impostor. False if this machine does not allow to make one.
bool replaceBy(const std::filesystem::path& entry, Impostor kind, const std::filesystem::path& outside);

/// All entries of a package: paths relative to it, sorted.
std::vector<std::string> entriesOf(const std::filesystem::path& package);

/// Changes the byte at `offset` by an exclusive or.
void flip(const std::filesystem::path& file, std::size_t offset, unsigned char bits = 1);

/// Changes the size of the file. Added bytes take no room on the disk.
void resize(const std::filesystem::path& file, std::uint64_t bytes);

/// `inner` between 100,000 openings and as many closings.
std::string deep(const std::string& open, const std::string& close, const std::string& inner = {});

}  // namespace vxtest
