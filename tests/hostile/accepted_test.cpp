// Packages that are accepted on purpose: files may have any names, and a package without a manifest is
// protected only by its sum.

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

/// Whether the text is safe for a terminal: no control character except the line feed.
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

/// The seal does not cover names, so a renamed manifest is a file like any other.
void hideManifest(const fs::path& package) {
    fs::rename(package / "manifest.json", package / "manifest.old");
}

/// What somebody without keys can put into such a package.
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

// The limit for packages of other tools, and the reason why docs/integrity.md advises to use the digest.
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
