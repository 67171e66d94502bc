// Texts from a stick that could control a terminal, fake a line or look like another text. All output, as
// text or as JSON, must show every character safely.

#include <gtest/gtest.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <random>

#include "common/character_width.h"
#include "common/printable.h"
#include "tests/hostile/refusals.h"
#include "tests/hostile/sealing_again.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// Is put after a line feed in every text.
constexpr const char* kFakedLine = "FAKED: done";

/// Pieces from which names are made. The first ones are UTF-8.
const std::vector<std::string>& pieces() {
    static const std::vector<std::string> all = {"\x1b[2J",
                                                 "\x1b]0;x\x07",
                                                 "\n",
                                                 "\r",
                                                 "\t",
                                                 "\x7f",
                                                 "\u009b2J",
                                                 "\u202e",
                                                 "\u2066",
                                                 "\u200b",
                                                 "\ufeff",
                                                 "\u2028",
                                                 "\u2029",
                                                 "\u00ad",
                                                 "\u061c",
                                                 "\U000e0041",
                                                 std::string("\n") + kFakedLine,
                                                 "plain",
                                                 "\u00fc",
                                                 "\x9b",
                                                 "\xff",
                                                 "\xc3",
                                                 "\xed\xa0\x80"};
    return all;
}
constexpr std::size_t kPiecesOfUtf8 = 19;

std::string name(std::mt19937& generator, std::size_t most) {
    std::uniform_int_distribution<std::size_t> piece(0, most - 1);
    std::string text;
    for (int count = 0; count < 6; ++count) {
        text += pieces()[piece(generator)];
    }
    return text;
}

/// The place of the first character that is neither printable nor a line feed; empty if there is none.
std::string troubleIn(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const vxcommon::Character character = vxcommon::characterAt(text, at);
        const bool lineFeed = character.value == U'\n';
        if (!character.valid || (!lineFeed && vxcommon::isDeceptive(character.value))) {
            return vxcommon::printable(text.substr(at > 20 ? at - 20 : 0, 60));
        }
        at += character.bytes;
    }
    const bool faked =
        text.rfind(kFakedLine, 0) == 0 || text.find(std::string("\n") + kFakedLine) != std::string::npos;
    return faked ? "a faked line" : "";
}

void expectShownSafely(const std::vector<std::string>& command) {
    for (const bool asJson : {false, true}) {
        std::vector<std::string> arguments = command;
        if (asJson) {
            arguments.emplace_back("--json");
        }
        const Finished look = Stage::instance().vxclone(arguments);
        EXPECT_FALSE(look.timedOut) << command.front();
        EXPECT_EQ(troubleIn(look.output), "") << command.front();
        EXPECT_EQ(troubleIn(look.errors), "") << command.front();
    }
}

/// Puts generated names into all texts of a package: settings, files, folders, identity and manifest.
void poison(const fs::path& package, std::mt19937& generator) {
    const std::size_t any = pieces().size();
    json settings = json::parse(readFile(package / "vconf/Vconf.json"));
    for (int count = 0; count < 10; ++count) {
        settings["db/" + name(generator, kPiecesOfUtf8)] = {{"string", name(generator, kPiecesOfUtf8)}};
        settings["db/" + name(generator, kPiecesOfUtf8)] = {{name(generator, kPiecesOfUtf8), 1}};
        writeFile(package / "VXHotel" / name(generator, any), "x");
        writeFile(package / name(generator, any) / name(generator, any), "x");
    }
    writeFile(package / "vconf/Vconf.json", settings.dump());
}

TEST(HostileShownTest, namesInAPackageSteerNoTerminalAndFakeNoLine) {
    Stage& stage = Stage::instance();
    const unsigned rounds = isLongForm() ? 40 : 3;
    for (unsigned seed = 0; seed < rounds; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 generator(seed);
        stage.layPackage();
        poison(stage.package(), generator);
        if (seed % 2 == 1) {
            json body = json::parse(bodyOf(readFile(stage.package() / "manifest.json")));
            body["name"] = "\\x1b[2J\u202e\\x0a" + std::string(kFakedLine);
            body["madeBy"] = "\u2028\u200b";
            body["categories"][0]["detail"] = "\\x0a" + std::string(kFakedLine);
            body["categories"][0]["category"] = "\u202e";
            body["lacks"] =
                json::array({{{"category", "apps"}, {"what", "\u202e\\x1b"}, {"declared", false}}});
            sealWithManifest(stage.package(), body.dump());
            writeFile(stage.package() / "ProductCloneInfo.txt", "\x1b[2J\u202e\n\u2028\n3\n");
        }
        stage.there().makeReady();
        for (const std::vector<std::string>& command :
             {std::vector<std::string>{"inspect", "/media/usb/clone", "--files"},
              {"diff", "/media/usb/clone", "--quick"},
              {"list"},
              {"verify", "/media/usb/clone"},
              {"restore", "/media/usb/clone", "--dry-run"},
              {"inspect", "/media/usb/\x1b[2J\n\u202e\x9b"},
              {"restore", "/media/usb/clone", "--only", "\x1b[2J\n\u202e\x9b"}}) {
            expectShownSafely(command);
        }
    }
}

}  // namespace
}  // namespace vxtest
