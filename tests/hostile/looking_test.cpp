// Commands that only look, on damaged packages: none follows a link, blocks on a pipe, crashes, writes
// control characters, or changes the television.

#include <gmock/gmock.h>

#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/hostile/damage.h"
#include "tests/hostile/stage.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

constexpr int kMostStatuses = 10;

struct Look {
    std::string name;
    std::function<bool(const fs::path& package)> damage;
};

std::vector<Look> damagedPackages() {
    std::vector<Look> looks;
    const std::vector<std::string> entries = {
        "ProductCloneInfo.txt", "manifest.json", "validate.txt", "vconf",
        "vconf/Vconf.json",     "logo",          "logo/logo.png"};
    std::vector<Impostor> kinds = {Impostor::RelativeLink, Impostor::Fifo};
    if (isLongForm()) {
        kinds.clear();
        for (const NamedImpostor& impostor : specialImpostors()) {
            kinds.push_back(impostor.kind);
        }
    }
    for (const std::string& entry : entries) {
        for (const Impostor kind : kinds) {
            looks.push_back({entry + " " + std::to_string(static_cast<int>(kind)),
                             [entry, kind](const fs::path& package) {
                                 return replaceBy(package / entry, kind, package.parent_path() / "bait");
                             }});
        }
    }
    looks.push_back({"deep manifest", [](const fs::path& package) {
                         writeFile(package / "manifest.json", std::string(100'000, '['));
                         return true;
                     }});
    looks.push_back({"deep settings", [](const fs::path& package) {
                         writeFile(package / "vconf/Vconf.json",
                                   std::string(100'000, '[') + std::string(100'000, ']'));
                         return true;
                     }});
    looks.push_back({"control characters", [](const fs::path& package) {
                         writeFile(package / "\x1b[2J\n\xff", "x");
                         writeFile(package / "ProductCloneInfo.txt", "\x1b[2J\n\x1b[3J\n3\n");
                         return true;
                     }});
    return looks;
}

void expectJsonLines(const std::string& output) {
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_FALSE(nlohmann::json::parse(line, nullptr, false).is_discarded()) << line;
    }
}

void expectHarmless(const std::vector<std::string>& command) {
    std::vector<std::string> arguments = command;
    arguments.emplace_back("--json");
    const Finished look = Stage::instance().vxclone(arguments);
    EXPECT_FALSE(look.timedOut) << command.front();
    EXPECT_LE(look.status, kMostStatuses) << command.front() << look.errors;
    EXPECT_THAT(look.output + look.errors, Not(HasSubstr("BAIT"))) << command.front();
    EXPECT_THAT(look.output + look.errors, Not(HasSubstr("\x1b"))) << command.front();
    expectJsonLines(look.output);
}

TEST(HostileLooksTest, lookingAtADamagedPackageEndsAndShowsNothingFromOutside) {
    Stage& stage = Stage::instance();
    const std::string bait = R"({"db/vxhotel/hotelmenu/welcomemessage":{"string":"BAIT"}})";
    std::size_t looks = 0;
    for (const Look& one : damagedPackages()) {
        SCOPED_TRACE(one.name);
        stage.layPackage();
        for (const char* const name : {"secret.txt", "Vconf.json", "logo.png"}) {
            writeFile(stage.stick() / "bait" / name, bait);
        }
        if (!one.damage(stage.package())) {
            continue;
        }
        stage.there().makeReady();
        const FileTree before = stage.there().state();
        for (const std::vector<std::string>& command :
             {std::vector<std::string>{"inspect", "/media/usb/clone", "--files"},
              {"diff", "/media/usb/clone", "--quick"},
              {"list"},
              {"verify", "/media/usb/clone"}}) {
            expectHarmless(command);
            ++looks;
        }
        EXPECT_EQ(stage.there().state(), before);
        EXPECT_THAT(stage.there().changingCalls(), testing::IsEmpty());
        // This one lets the library save the television.
        expectHarmless({"diff", "/media/usb/clone"});
        ++looks;
        EXPECT_TRUE(std::filesystem::is_empty(stage.there().cloneRoot()));
    }
    std::cout << "hostile: " << looks << " looks at damaged packages\n";
}

}  // namespace
}  // namespace vxtest
