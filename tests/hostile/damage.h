#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vxtest {

/// What stands in an entry's place.
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
/// Those that no package may hold anywhere.
const std::vector<NamedImpostor>& specialImpostors();

/// Puts the impostor in the place of the entry. False when this machine does not allow to make one.
bool replaceBy(const std::filesystem::path& entry, Impostor kind, const std::filesystem::path& outside);

/// All entries of a package: paths relative to it, sorted.
std::vector<std::string> entriesOf(const std::filesystem::path& package);

/// Changes the byte at `offset` by exclusive or.
void flip(const std::filesystem::path& file, std::size_t offset, unsigned char bits = 1);

/// Makes the file as large as told; what is added takes no room on the disk.
void resize(const std::filesystem::path& file, std::uint64_t bytes);

/// `inner` between 100,000 openings and as many closings.
std::string deep(const std::string& open, const std::string& close, const std::string& inner = {});

}  // namespace vxtest
