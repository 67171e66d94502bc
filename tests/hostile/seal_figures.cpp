// The number of changes that the seal alone detects, and that vxclone detects. docs/integrity.md explains the
// figures.

#include <fmt/format.h>

#include <cstdlib>
#include <functional>
#include <random>

#include "cloning_app/television/library_engine.h"
#include "src/VXCloneUtil.h"
#include "tests/hostile/compensation.h"
#include "tests/hostile/stage.h"
#include "tests/support/machine/private_filesystem.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 16;
constexpr std::size_t kPackages = 5;
constexpr std::size_t kForgeries = 20'000;
constexpr std::size_t kChanges = 1'000'000;
constexpr std::size_t kPackageTrials = 50;
constexpr std::size_t kContent = 1000;

std::mt19937& chance() {
    static std::mt19937 numbers(20260301);
    return numbers;
}
std::size_t below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(chance());
}
char anyByte() {
    return static_cast<char>(below(256));
}
std::string anyBytes(std::size_t count) {
    std::string bytes(count, '\0');
    std::generate(bytes.begin(), bytes.end(), anyByte);
    return bytes;
}

void say(const std::string& what, std::size_t noticed, std::size_t tried) {
    fmt::print("{:<62} {:>9} of {:>9} noticed\n", what, noticed, tried);
}

/// A file, and any seal over it.
class SealedFile {
 public:
    SealedFile() {
        const bool fetched = CVXCloneUtil::GetAESInfo(key_, iv_, "");
        if (!fetched) {
            throw std::runtime_error("the television has no clone key");
        }
    }
    void setContent(const std::string& content) const { writeFile(file_, content); }

    /// The seal as the library makes it.
    std::string seal() const {
        vxclone::LibraryEngine engine;
        engine.seal({file_.string()}, seal_.string()).value();
        return readFile(seal_);
    }
    /// A plain text enciphered with the clone key.
    std::string enciphered(const std::string& plain) const {
        writeFile(plain_, plain);
        CVXCloneUtil::EncryptDecryptFile(plain_.string(), seal_.string(), key_, iv_, CRYPT_OP_ENCRYPT);
        return readFile(seal_);
    }
    /// Whether the library's check refuses the seal.
    bool notices(const std::string& seal) const {
        writeFile(seal_, seal);
        vxclone::LibraryEngine engine;
        return !engine.checkSeal({file_.string()}, seal_.string()).value();
    }

 private:
    TemporaryDirectory place_;
    fs::path file_ = place_ / "file";
    fs::path seal_ = place_ / "seal";
    fs::path plain_ = place_ / "plain";
    std::string key_;
    std::string iv_;
};

/// Tries every other value of every byte of one block.
std::size_t noticedFlips(const SealedFile& sealed, const std::string& seal, std::size_t block) {
    std::size_t noticed = 0;
    for (std::size_t at = block * kBlock; at < (block + 1) * kBlock; ++at) {
        for (unsigned bits = 1; bits < 256; ++bits) {
            std::string changed = seal;
            changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ bits);
            noticed += sealed.notices(changed) ? 1U : 0U;
        }
    }
    return noticed;
}

void measureCipher() {
    const SealedFile sealed;
    constexpr std::size_t kFlips = kBlock * 255;
    std::size_t noticed = 0;
    for (std::size_t package = 0; package < kPackages; ++package) {
        sealed.setContent(anyBytes(kContent));
        noticed += noticedFlips(sealed, sealed.seal(), 0);
    }
    say("seal: any byte changed, the only block", noticed, kPackages * kFlips);

    const std::string content = anyBytes(kContent);
    sealed.setContent(content);
    const std::string number = std::to_string(hashOf(content));
    const std::string longer = sealed.enciphered(number + "\n" + std::string(2 * kBlock + kBlock / 2, 'x'));
    for (std::size_t block = 0; block < longer.size() / kBlock; ++block) {
        say(fmt::format("longer seal, number in block 1: any byte of block {}", block + 1),
            noticedFlips(sealed, longer, block), kFlips);
    }

    sealed.setContent("");
    noticed = 0;
    for (std::size_t forgery = 0; forgery < kForgeries; ++forgery) {
        noticed += sealed.notices(anyBytes(kBlock)) ? 1U : 0U;
    }
    say("seal of random bytes, for files whose sum is 0", noticed, kForgeries);
    sealed.setContent(content);
    noticed = 0;
    for (std::size_t forgery = 0; forgery < kForgeries; ++forgery) {
        noticed += sealed.notices(anyBytes(kBlock)) ? 1U : 0U;
    }
    say("seal of random bytes, for files of any other sum", noticed, kForgeries);
}

/// A change of a file that leads to another content.
struct Change {
    const char* name;
    std::function<void(std::string& content)> make;
};

const std::vector<Change>& changesByChance() {
    static const std::vector<Change> all = {
        {"one byte becomes another",
         [](std::string& content) { content[below(content.size())] = anyByte(); }},
        {"two neighbouring bytes become others",
         [](std::string& content) { content.replace(below(content.size() - 1), 2, anyBytes(2)); }},
        {"sixteen neighbouring bytes become others",
         [](std::string& content) {
             content.replace(below(content.size() - kBlock), kBlock, anyBytes(kBlock));
         }},
        {"two bytes change places",
         [](std::string& content) {
             std::swap(content[below(content.size())], content[below(content.size())]);
         }},
        {"it is cut somewhere", [](std::string& content) { content.resize(below(content.size())); }}};
    return all;
}

void measureSumByChance() {
    const std::string content = anyBytes(kContent);
    for (const Change& change : changesByChance()) {
        std::size_t tried = 0;
        std::size_t noticed = 0;
        while (tried < kChanges) {
            std::string changed = content;
            change.make(changed);
            if (changed != content) {
                ++tried;
                noticed += hashOf(changed) != hashOf(content) ? 1U : 0U;
            }
        }
        say(std::string("sum, by chance: ") + change.name, noticed, tried);
    }
}

/// A change of a package by somebody who knows the sum and has no key.
struct Forgery {
    const char* name;
    std::function<void(const fs::path& package)> make;
};

void compensate(const fs::path& package, const std::function<void()>& change) {
    const std::uint32_t sum = sumOf(package);
    change();
    writeFile(package / "pad", bytesOfHash(sum - sumOf(package)));
}

/// Adds 1 to one byte and subtracts 3 from the next, if both have room for that.
void shiftNeighbours(const fs::path& file) {
    std::string content = readFile(file);
    for (;;) {
        const std::size_t at = below(content.size() - 1);
        const int first = static_cast<signed char>(content[at]);
        const int second = static_cast<signed char>(content[at + 1]);
        if (first < 127 && second >= -125) {
            content[at] = static_cast<char>(first + 1);
            content[at + 1] = static_cast<char>(second - 3);
            writeFile(file, content);
            return;
        }
    }
}

void exchange(const fs::path& one, const fs::path& other) {
    const fs::path aside = one.parent_path() / "aside";
    fs::rename(one, aside);
    fs::rename(other, one);
    fs::rename(aside, other);
}

const std::vector<Forgery>& forgeries() {
    static const std::vector<Forgery> all = {
        {"two neighbouring bytes shifted",
         [](const fs::path& package) { shiftNeighbours(package / "VXHotel/background.jpg"); }},
        {"any content, and a file that makes up for it",
         [](const fs::path& package) {
             compensate(package, [&] { writeFile(package / "logo/logo.png", anyBytes(kContent)); });
         }},
        {"zeros put before a file",
         [](const fs::path& package) {
             const fs::path file = package / "logo/logo.png";
             writeFile(file, std::string(1 + below(kContent), '\0') + readFile(file));
         }},
        {"a file renamed",
         [](const fs::path& package) {
             fs::rename(package / "logo/logo.png", package / "logo" / std::to_string(below(kContent)));
         }},
        {"the contents of two files exchanged",
         [](const fs::path& package) {
             exchange(package / "VXMBRLogo/stb_app_icon.png", package / "VXMBRLogo/stb_source_icon.png");
         }},
        {"an empty file added",
         [](const fs::path& package) { writeFile(package / std::to_string(below(kContent)), ""); }}};
    return all;
}

std::size_t refused(const Forgery& forgery, bool manifestHidden) {
    const Stage& stage = Stage::instance();
    std::size_t count = 0;
    for (std::size_t trial = 0; trial < kPackageTrials; ++trial) {
        stage.layPackage();
        if (manifestHidden) {
            fs::rename(stage.package() / "manifest.json", stage.package() / "manifest.old");
        }
        forgery.make(stage.package());
        count += stage.restoreHere({}, true).status == 0 ? 0U : 1U;
    }
    return count;
}

void measureForgeries() {
    for (const Forgery& forgery : forgeries()) {
        say(std::string("seal alone: ") + forgery.name, refused(forgery, true), kPackageTrials);
        say(std::string("seal and manifest: ") + forgery.name, refused(forgery, false), kPackageTrials);
    }
}

int measure() {
    if (const auto problem = enterPrivateFilesystem()) {
        fmt::print(stderr, "seal figures: needs folders of its own: {}\n", *problem);
        return EXIT_FAILURE;
    }
    Stage::instance();
    measureCipher();
    measureSumByChance();
    measureForgeries();
    return EXIT_SUCCESS;
}

}  // namespace
}  // namespace vxtest

int main() {
    try {
        return vxtest::measure();
    } catch (const std::exception& error) {
        fmt::print(stderr, "seal figures: {}\n", error.what());
        return EXIT_FAILURE;
    }
}
