// What is let in, on purpose: the names of files are anybody's, and a package without a manifest is only as
// good as its sum.

#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/hostile/compensation.h"
#include "tests/hostile/sealing_again.h"
#include "tests/hostile/stage.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* kForged = "forged";

/// Whether a terminal may be given the text: no control character but the line feed.
bool isPrintable(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte == '\n' || (byte >= 0x20 && byte != 0x7f);
    });
}

TEST(HostileNamesTest, dangerousNamesThatAreSealedArriveAsTheyAreAndAreShownSafely) {
    const Stage& stage = Stage::instance();
    stage.layPackage();
    const std::vector<std::string> names = {"new\nline",  "\x1b[2J",         "$(touch bait)",
                                            "\"quoted\"", "back\\slash.jpg", "..jpg",
                                            "\xff\xfe",   ";reboot",         std::string(255, 'n')};
    for (const std::string& name : names) {
        writeFile(stage.package() / "VXHotel" / name, name);
    }
    sealAgain(stage.package());
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"verify", "/media/usb/clone"},
          {"inspect", "/media/usb/clone", "--files"},
          {"restore", "/media/usb/clone", "--only", "home-menu", "--no-safety"}}) {
        const Finished shown = stage.vxclone(command);
        EXPECT_EQ(shown.status, 0) << shown.output << shown.errors;
        EXPECT_TRUE(isPrintable(shown.output + shown.errors)) << shown.output << shown.errors;
    }
    for (const std::string& name : names) {
        EXPECT_EQ(readFile(stage.there().folder() / "opt/usr/data/hotel/homemenu" / name), name);
    }
}

/// The seal knows no names: a manifest under another name is a file like any other.
void hideManifest(const fs::path& package) {
    fs::rename(package / "manifest.json", package / "manifest.old");
}

/// What such a package can be made to hold by somebody without keys.
void forgeWelcome(const fs::path& package) {
    const std::uint32_t sealed = sumOf(package);
    const fs::path file = package / "vconf/Vconf.json";
    nlohmann::json settings = nlohmann::json::parse(readFile(file));
    settings[kWelcome]["string"] = kForged;
    writeFile(file, settings.dump());
    writeFile(package / "pad", bytesOfHash(sealed - sumOf(package)));
}

TEST(HostileManifestTest, forgedPackageThatKeepsItsManifestIsRefused) {
    const Stage& stage = Stage::instance();
    stage.layPackage();
    forgeWelcome(stage.package());
    const Outcome outcome = stage.restoreThere();
    EXPECT_EQ(outcome.code, "altered");
    EXPECT_THAT(outcome.message, HasSubstr("vconf/Vconf.json altered"));
}

// The limit of packages that other tools made, and why docs/integrity.md advises to ask for the digest.
TEST(HostileManifestTest, forgedPackageOfTheSameSumWithoutManifestIsLetInAndSaidToBeWeaker) {
    const Stage& stage = Stage::instance();
    stage.layPackage();
    hideManifest(stage.package());
    forgeWelcome(stage.package());
    const Finished verify = stage.vxclone({"verify", "/media/usb/clone"});
    EXPECT_EQ(verify.status, 0) << verify.output << verify.errors;
    EXPECT_THAT(unwrapped(verify.output), HasSubstr("checked by the seal alone, which is weaker"));
    const Outcome expecting = stage.restoreThere({"--expect", stage.goodDigest()});
    EXPECT_EQ(expecting.code, "altered");
    EXPECT_THAT(expecting.message, HasSubstr("has no manifest"));
}

TEST(HostileManifestTest, forgedPackageWithoutTheSameSumIsRefused) {
    const Stage& stage = Stage::instance();
    stage.layPackage();
    hideManifest(stage.package());
    forgeWelcome(stage.package());
    fs::remove(stage.package() / "pad");
    EXPECT_EQ(stage.restoreThere().code, "altered");
}

}  // namespace
}  // namespace vxtest
