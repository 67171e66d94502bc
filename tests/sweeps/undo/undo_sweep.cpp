#include "tests/sweeps/undo/undo_sweep.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/support/machine/exit_status.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/tool_paths.h"

namespace vxtest {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kWayBack = "vxclone undo";
constexpr const char* kNotBegun = "the restore did not begin";

/// The cloned parts, with the names of `vxtv compare`. Some areas are divided by the kind of their content.
/// The icons of a source are left out, because a restore sets the same paths on every television.
const std::vector<std::string> kParts = {"av",
                                         "boot-logo",
                                         "channels/channel",
                                         "channels/hotel",
                                         "channels/transponder",
                                         "factory",
                                         "home-data",
                                         "home-menu",
                                         "mbr-logo",
                                         "network-time",
                                         "settings",
                                         "settings-keys",
                                         "timers",
                                         "was"};
const std::vector<std::string> kPartsOfApplications = {"apps/org.harbour.firstscreen",
                                                       "apps/org.vorta.orvel-app"};

/// The areas that are divided by their content, and the character that ends the name of the kind.
constexpr std::pair<std::string_view, char> kDivided[] = {{"channels", ' '}, {"apps", '/'}};

std::string partOf(const std::string& area, const std::string& name) {
    for (const auto& [divided, end] : kDivided) {
        if (area == divided) {
            return area + "/" + name.substr(0, name.find(end));
        }
    }
    return area;
}

std::string all(const Finished& finished) {
    return "status " + std::to_string(finished.status) + "\n" + finished.output + finished.errors;
}

Finished vxtv(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), vxtvProgram());
    return run({std::move(arguments), {}, {}, {}});
}

bool leavesWayBack(const Bench& bench) {
    const auto names = bench.namesOfData();
    return std::find(names.begin(), names.end(), "Safety") != names.end();
}

}  // namespace

std::string UndoCounts::text() const {
    return std::to_string(undone) + " undone, of these " + std::to_string(doubted) + " with a doubt, " +
           std::to_string(untouched) + " not begun";
}

UndoSweep::UndoSweep(bool withApplications) : withApplications_(withApplications) {
    makeProfiles();
    make("source", "room-101");
    make("target", "room-102");
    fs::create_directory(stick());
}

void UndoSweep::makeProfiles() const {
    fs::copy(sourceFolder() / "virtual_tv/profiles", place_ / "profiles", fs::copy_options::recursive);
    for (const char* const name : {"room-101.json", "room-102.json"}) {
        Json profile = Json::parse(readFile(place_ / "profiles" / name));
        if (!withApplications_) {
            profile["applications"] = Json::array();
            profile["settings"].erase("db/first_screen/type");
        }
        writeFile(place_ / "profiles" / name, profile.dump());
    }
}

void UndoSweep::make(const char* television, const char* profile) const {
    const Finished made = vxtv(
        {"create", place_ / television, "--profile", place_ / "profiles" / (std::string(profile) + ".json")});
    ASSERT_EQ(made.status, 0) << made.errors;
}

std::vector<std::string> UndoSweep::differingParts(const fs::path& one, const fs::path& other) const {
    const Json compared = Json::parse(vxtv({"compare", one, other, "--json"}).output);
    std::set<std::string> parts;
    for (const Json& area : compared.at("areas")) {
        // Not cloned.
        if (area.at("area") == "navigation-lists") {
            continue;
        }
        for (const Json& difference : area.at("differences")) {
            parts.insert(partOf(area.at("area"), difference.at("name")));
        }
    }
    return {parts.begin(), parts.end()};
}

void UndoSweep::SetUp() {
    const Bench first(place_ / "source", stick());
    std::vector<std::string> backup = {"backup", "/media/usb/clone"};
    if (!withApplications_) {
        backup.insert(backup.end(), {"--without", "apps"});
    }
    const Finished saved = first.vxclone(backup);
    ASSERT_EQ(saved.status, 0) << all(saved);
    fs::copy(first.stick(), stick(), fs::copy_options::recursive);

    const Bench second = newBench();
    const Finished restored = second.vxclone(restore_);
    ASSERT_EQ(restored.status, 0) << all(restored);
    std::vector<std::string> parts = kParts;
    if (withApplications_) {
        parts.insert(parts.end(), kPartsOfApplications.begin(), kPartsOfApplications.end());
    }
    ASSERT_THAT(differingParts(second.television(), target()), testing::UnorderedElementsAreArray(parts));
    expectWayBack(second, restored.output);
    ASSERT_EQ(counts_.undone, 1);
    ASSERT_EQ(counts_.doubted, 0);
    counts_.undone = 0;
}

void UndoSweep::expectWayBack(const Bench& bench, const std::string& text) {
    const bool leaves = leavesWayBack(bench);
    if (text.find(kNotBegun) != std::string::npos) {
        EXPECT_THAT(text, Not(HasSubstr(kWayBack)));
        EXPECT_EQ(bench.differenceTo(target()), "") << text;
    }
    if (!leaves) {
        EXPECT_THAT(text, Not(HasSubstr(kWayBack)));
        EXPECT_EQ(bench.differenceTo(target()), "") << text;
        ++counts_.untouched;
        return;
    }
    const Finished undone = bench.vxclone({"undo"});
    EXPECT_FALSE(undone.timedOut);
    EXPECT_LE(undone.status, ended::kIncomplete) << text << all(undone);
    EXPECT_EQ(bench.differenceTo(target()), "") << text << all(undone);
    ++counts_.undone;
    counts_.doubted += undone.status == ended::kIncomplete ? 1 : 0;
}

}  // namespace vxtest
