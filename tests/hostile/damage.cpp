#include "tests/hostile/damage.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "tests/support/machine/file_tree.h"

namespace vxtest {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kMode = 0644;

bool bindSocket(const fs::path& place) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = place.filename().string();
    std::copy_n(name.begin(), std::min(name.size(), sizeof address.sun_path - 1), address.sun_path);
    const fs::path back = fs::current_path();
    fs::current_path(place.parent_path());
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    const bool bound = bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(made);
    fs::current_path(back);
    return bound;
}

bool linkTo(const fs::path& target, const fs::path& entry) {
    fs::create_symlink(target, entry);
    return true;
}

bool makeFolder(const fs::path& entry) {
    writeFile(entry / "inner.txt", "inner");
    return true;
}

}  // namespace

const std::vector<NamedImpostor>& specialImpostors() {
    static const std::vector<NamedImpostor> all = {{"absolute link", Impostor::AbsoluteLink},
                                                   {"relative link", Impostor::RelativeLink},
                                                   {"inner link", Impostor::InnerLink},
                                                   {"dangling link", Impostor::DanglingLink},
                                                   {"looping link", Impostor::LoopingLink},
                                                   {"FIFO", Impostor::Fifo},
                                                   {"socket", Impostor::Socket},
                                                   {"character device", Impostor::ZeroDevice},
                                                   {"block device", Impostor::BlockDevice}};
    return all;
}

bool replaceBy(const fs::path& entry, Impostor kind, const fs::path& outside) {
    const fs::path aside = entry.string() + ".aside";
    const fs::path target = fs::is_directory(entry) ? outside : outside / "secret.txt";
    if (kind == Impostor::InnerLink) {
        fs::rename(entry, aside);
    } else {
        fs::remove_all(entry);
    }
    switch (kind) {
        case Impostor::AbsoluteLink:
            return linkTo(target, entry);
        case Impostor::RelativeLink:
            return linkTo(target.lexically_relative(entry.parent_path()), entry);
        case Impostor::InnerLink:
            return linkTo(aside.filename(), entry);
        case Impostor::DanglingLink:
            return linkTo("nowhere", entry);
        case Impostor::LoopingLink:
            return linkTo(entry.filename(), entry);
        case Impostor::Fifo:
            return mkfifo(entry.c_str(), kMode) == 0;
        case Impostor::Socket:
            return bindSocket(entry);
        case Impostor::ZeroDevice:
            return mknod(entry.c_str(), S_IFCHR | kMode, makedev(1, 5)) == 0;
        case Impostor::BlockDevice:
            return mknod(entry.c_str(), S_IFBLK | kMode, makedev(7, 0)) == 0;
        case Impostor::Folder:
            return makeFolder(entry);
        case Impostor::File:
            writeFile(entry, "a file");
            return true;
    }
    return false;
}

std::vector<std::string> entriesOf(const fs::path& package) {
    std::vector<std::string> entries;
    for (const auto& entry : fs::recursive_directory_iterator(package)) {
        entries.push_back(entry.path().lexically_relative(package).string());
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

void flip(const fs::path& file, std::size_t offset, unsigned char bits) {
    std::string content = readFile(file);
    content.at(offset) = static_cast<char>(static_cast<unsigned char>(content.at(offset)) ^ bits);
    writeFile(file, content);
}

void resize(const fs::path& file, std::uint64_t bytes) {
    if (!fs::exists(file)) {
        writeFile(file, "");
    }
    fs::resize_file(file, bytes);
}

std::string deep(const std::string& open, const std::string& close, const std::string& inner) {
    constexpr std::size_t kLayers = 100'000;
    std::string text;
    for (std::size_t layer = 0; layer < kLayers; ++layer) {
        text += open;
    }
    text += inner;
    for (std::size_t layer = 0; layer < kLayers; ++layer) {
        text += close;
    }
    return text;
}

}  // namespace vxtest
