// Changes of seal and manifest without the keys: flipped bytes, moved blocks, files of another television,
// parts of two packages.

#include <gtest/gtest.h>

#include "tests/hostile/damage.h"
#include "tests/hostile/refusals.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 16;
constexpr unsigned kBits = 8;

Case flipped(const std::string& file, std::size_t offset, unsigned char bits) {
    // A shorter identity is another one, but the seal has no name in the message.
    const bool named = file != "validate.txt";
    return {file + " at " + std::to_string(offset) + " by " + std::to_string(bits),
            [file, offset, bits](const fs::path& package) {
                flip(package / file, offset, bits);
                return true;
            },
            kAltered, named ? file : ""};
}

TEST(HostileSealTest, everyBitOfTheSealIsRefusedWhenItIsFlipped) {
    std::vector<Case> cases;
    for (std::size_t offset = 0; offset < kBlock; ++offset) {
        for (unsigned bit = 0; bit < kBits; ++bit) {
            cases.push_back(flipped("validate.txt", offset, static_cast<unsigned char>(1U << bit)));
        }
    }
    expectRefusals(cases);
}

TEST(HostileSealTest, everyBlockOfEveryFileIsRefusedWhenAByteIsFlipped) {
    const Stage& stage = Stage::instance();
    const std::size_t step = isLongForm() ? kBlock * 8 : kBlock * 128;
    std::vector<Case> cases;
    for (const std::string& entry : entriesOf(stage.good())) {
        if (!fs::is_regular_file(stage.good() / entry) || entry == "validate.txt") {
            continue;
        }
        const std::size_t size = fs::file_size(stage.good() / entry);
        for (std::size_t offset = 0; offset < size; offset += step) {
            cases.push_back(flipped(entry, offset, 1));
        }
        cases.push_back(flipped(entry, size - 1, 0x80));
    }
    // The version is read first, and a changed version may be that of a later format.
    expectRefusals(cases);
}

Case withSeal(const std::string& name, const std::function<std::string(const std::string& seal)>& change) {
    return {"a seal " + name,
            [change](const fs::path& package) {
                writeFile(package / "validate.txt", change(readFile(package / "validate.txt")));
                return true;
            },
            kAltered, "was altered after it was made"};
}

TEST(HostileSealTest, blocksThatAreMovedAddedOrTakenAwayAreRefused) {
    expectRefusals(
        {withSeal("twice", [](const std::string& seal) { return seal + seal; }),
         withSeal(
             "with its halves swapped",
             [](const std::string& seal) { return seal.substr(kBlock / 2) + seal.substr(0, kBlock / 2); }),
         withSeal("backwards",
                  [](const std::string& seal) { return std::string(seal.rbegin(), seal.rend()); }),
         withSeal("behind a block of zeros",
                  [](const std::string& seal) { return std::string(kBlock, '\0') + seal; }),
         withSeal("before a block of zeros",
                  [](const std::string& seal) { return seal + std::string(kBlock, '\0'); }),
         withSeal("of zeros", [](const std::string& /*seal*/) { return std::string(kBlock, '\0'); }),
         withSeal("in plain text", [](const std::string& /*seal*/) { return std::string("1234567890"); }),
         withSeal("of no bytes", [](const std::string& /*seal*/) { return std::string(); }),
         withSeal("without its last byte",
                  [](const std::string& seal) { return seal.substr(0, kBlock - 1); }),
         withSeal("of 16 MiB", [](const std::string& seal) { return seal + std::string(16U << 20U, 'x'); })});
}

Case fromOther(const std::string& name, const std::vector<std::string>& files, const std::string& says) {
    return {name,
            [files](const fs::path& package) {
                for (const std::string& file : files) {
                    fs::remove_all(package / file);
                    fs::copy(Stage::instance().other() / file, package / file, fs::copy_options::recursive);
                }
                return true;
            },
            kAltered, says};
}

TEST(HostileSealTest, sealAndManifestOfAnotherTelevisionAreRefused) {
    expectRefusals({fromOther("its seal", {"validate.txt"}, ""),
                    fromOther("its manifest", {"manifest.json"}, "VXHotel/background.jpg altered"),
                    fromOther("both", {"manifest.json", "validate.txt"}, "VXHotel/background.jpg altered")});
}

TEST(HostileSealTest, partsOfTwoPackagesInOneAreRefusedByName) {
    const Stage& stage = Stage::instance();
    std::vector<Case> cases;
    for (const std::string& entry : entriesOf(stage.other())) {
        const fs::path mine = stage.good() / entry;
        const fs::path theirs = stage.other() / entry;
        const bool reserved = entry == "validate.txt" || entry == "manifest.json";
        if (!reserved && fs::is_regular_file(theirs) &&
            (!fs::exists(mine) || readFile(mine) != readFile(theirs))) {
            cases.push_back(fromOther("its " + entry, {entry}, entry));
        }
    }
    ASSERT_GT(cases.size(), 10U);
    cases.push_back(fromOther("all settings", {"vconf", "settings-data.backup"}, "vconf/Vconf.json altered"));
    cases.push_back(
        fromOther("all pictures", {"logo", "VXHotel", "VXMBRLogo"}, "VXHotel/background.jpg altered"));
    expectRefusals(cases);
}

TEST(HostileSealTest, packageOfAnotherTelevisionIsRefusedToWhoExpectsThisOne) {
    Case replayed = fromOther("all of it", {}, "is not the expected package");
    replayed.damage = [](const fs::path& /*package*/) {
        Stage::instance().layPackage(Stage::instance().other());
        return true;
    };
    replayed.expect = Stage::instance().goodDigest();
    expectRefusals({replayed});
}

Case without(const std::string& name, const std::vector<std::string>& entries, std::string_view code,
             const std::string& says) {
    return {name,
            [entries](const fs::path& package) {
                for (const std::string& entry : entries) {
                    fs::remove_all(package / entry);
                }
                return true;
            },
            code, says};
}

TEST(HostileSealTest, packagesThatLackAnEntryAreRefusedByName) {
    const Stage& stage = Stage::instance();
    std::vector<Case> cases = {
        without("no manifest", {"manifest.json"}, kAltered, ""),
        without("no seal", {"validate.txt"}, "not-complete", "validate.txt"),
        without("no identity", {"ProductCloneInfo.txt"}, "not-complete", "ProductCloneInfo.txt"),
        without("neither manifest nor seal", {"manifest.json", "validate.txt"}, "not-complete",
                "validate.txt")};
    for (const std::string& entry : entriesOf(stage.good())) {
        if (entry.find('/') == std::string::npos && entry.find(".txt") == std::string::npos &&
            entry != "manifest.json") {
            cases.push_back(without("no " + entry, {entry}, kAltered, entry));
        }
    }
    expectRefusals(cases);
}

}  // namespace
}  // namespace vxtest
