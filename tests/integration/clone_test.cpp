// The main purpose: a television gets the data of another one, through the programs that a person uses.

#include <algorithm>
#include <sstream>

#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/exit_status.h"
#include "virtual_tv/television/television.h"

namespace vxtest {
namespace {

using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kProxy = "db/menu/network/server_network_settings/ProxyOn";
constexpr const char* kVolume = "db/vxmenu/system/Alarm/Volume";

TEST_F(CloneTest, settingsOfOneTelevisionArriveOnAnother) {
    vxtv({"set", first, kWelcome, "Bonjour \"\u00e0 tous\"\nand welcome"});
    vxtv({"set", first, kProxy, "1"});
    vxtv({"set", second, kProxy, "0"});
    vxtv({"set", first, kVolume, "17"});
    vxtv({"set", second, kVolume, "3"});

    const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
    ASSERT_EQ(backup.status, 0) << backup.output << backup.errors;
    EXPECT_THAT(backup.output, HasSubstr("Safe to remove the stick."));
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    ASSERT_EQ(restore.status, 0) << restore.output << restore.errors;

    EXPECT_EQ(get(second, kWelcome), "Bonjour \"\u00e0 tous\"\nand welcome");
    EXPECT_EQ(get(second, kProxy), get(first, kProxy));
    EXPECT_EQ(get(second, kVolume), "17");
    EXPECT_EQ(get(second, "db/hotel/clone_progress"), "100");
}

TEST_F(CloneTest, compareSaysThatTheSettingsAreTheSameAfterwardsAndNotBefore) {
    const Finished before = vxtv({"compare", first, second}, 1);
    EXPECT_THAT(before.output, HasSubstr(kWelcome));
    vxclone(first, {"backup", "/media/usb/clone"});
    vxclone(second, {"restore", "/media/usb/clone"});
    Program program;
    program.command = {vxtvProgram().string(), "compare", first, second};
    EXPECT_THAT(run(program).output, Not(HasSubstr(kWelcome)));
}

TEST_F(CloneTest, pageOfATelevisionCallsNothingFailedAfterAWholeRestore) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    const std::string page = vxtv({"show", second}).output;
    EXPECT_THAT(page, testing::ContainsRegex("VXCLONE_FACTORY_SETTINGS +not evaluated\n"));
    EXPECT_THAT(page, testing::ContainsRegex("VXCLONE_AV_SETTINGS +success\n"));
    EXPECT_THAT(page, Not(HasSubstr("failed")));
    const std::string html = (place / "page.html").string();
    vxtv({"show", second, "--html", html});
    EXPECT_THAT(readFile(html),
                HasSubstr("<dt>VXCLONE_FACTORY_SETTINGS</dt><dd class=\"dim\">not evaluated</dd>"));
    EXPECT_THAT(readFile(html), Not(HasSubstr(">failed<")));
}

TEST_F(CloneTest, compareSeesEveryAreaThatARestoreTouches) {
    const auto withoutIcons = vxtv::Television::open(second).and_then([](const vxtv::Television& television) {
        return television.database().write([](SQLite::Database& connection) -> vxtv::Result<int> {
            return connection.exec("DELETE FROM source_icons");
        });
    });
    ASSERT_TRUE(withoutIcons);
    const std::string before = (place / "before").string();
    std::filesystem::copy(second, before, std::filesystem::copy_options::recursive);
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    std::vector<std::string> touched;
    const json compared = json::parse(vxtv({"compare", before, second, "--json"}, 1).output);
    for (const json& area : compared.at("areas")) {
        if (!area.at("same")) {
            touched.push_back(area.at("area"));
        }
    }
    EXPECT_THAT(touched,
                testing::UnorderedElementsAre("settings-keys", "factory", "av", "settings", "home-data",
                                              "was", "channels", "navigation-lists", "timers", "network-time",
                                              "sources", "boot-logo", "home-menu", "mbr-logo", "apps"));
    EXPECT_THAT(vxtv({"compare", first, second, "--summary"}).output,
                Not(testing::ContainsRegex("differs?\n")));
}

/// The bytes of a text setting in the television's database.
std::string bytesOf(const std::string& television, const std::string& key) {
    const auto opened = vxtv::Television::open(television);
    const auto value = opened ? opened->settings().get(key) : tl::make_unexpected(opened.error());
    EXPECT_TRUE(value);
    const auto* const text = value ? std::get_if<std::string>(&value->value) : nullptr;
    EXPECT_NE(text, nullptr);
    return text == nullptr ? "" : *text;
}

void setBytes(const std::string& television, const std::string& key, const std::string& bytes) {
    const auto done = vxtv::Television::open(television).and_then([&](const vxtv::Television& opened) {
        return opened.settings().set(key, vxtv::SettingValue(bytes));
    });
    EXPECT_TRUE(done);
    EXPECT_EQ(bytesOf(television, key), bytes);
}

TEST_F(CloneTest, textThatIsNoUtf8NeverBecomesAnotherTextOnAnyTelevision) {
    const std::string own = bytesOf(second, kWelcome);
    // A valid character, a half character, and invalid bytes at different positions.
    for (const std::string bytes : {"caf\xe9 au lait", "\xc3", "\xe9t\xe9", "\xed\xa0\x80", "a\xff"}) {
        setBytes(first, kWelcome, bytes);
        const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
        EXPECT_EQ(backup.status, ended::kIncomplete) << backup.output << backup.errors;
        EXPECT_THAT(backup.output, HasSubstr(std::string("not saved: ") + kWelcome));
        EXPECT_EQ(json::parse(package().at("vconf/Vconf.json")).count(kWelcome), 0U);
        EXPECT_EQ(bytesOf(first, kWelcome), bytes);
    }
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(restore.status, ended::kIncomplete) << restore.output << restore.errors;
    EXPECT_THAT(restore.output, HasSubstr(std::string("left as they were: ") + kWelcome));
    EXPECT_EQ(bytesOf(second, kWelcome), own);
    EXPECT_NE(bytesOf(first, kWelcome), own);

    // The other direction: a text that undo could not bring back is not changed.
    const std::string before = bytesOf(first, kWelcome);
    ASSERT_EQ(vxclone(second, {"backup", "/media/usb/clone"}).status, 0);
    const Finished refused = vxclone(first, {"restore", "/media/usb/clone"});
    EXPECT_EQ(refused.status, ended::kPlatformFailed) << refused.output << refused.errors;
    EXPECT_THAT(refused.errors, HasSubstr(std::string("--without ") + kWelcome));
    EXPECT_EQ(bytesOf(first, kWelcome), before);
    EXPECT_EQ(vxclone(first, {"restore", "/media/usb/clone", "--without", kWelcome}).status, 0);
    EXPECT_EQ(bytesOf(first, kWelcome), own);
}

TEST_F(CloneTest, packageHoldsTheSettingsIdentityManifestAndSeal) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    std::vector<std::string> names;
    for (const auto& [name, content] : package()) {
        names.push_back(name);
    }
    EXPECT_THAT(names, testing::IsSupersetOf({"ProductCloneInfo.txt", "manifest.json", "validate.txt",
                                              "vconf/", "vconf/Vconf.json"}));
    EXPECT_EQ(json::parse(package().at("vconf/Vconf.json")).size(), 54U);
    EXPECT_THAT(snapshot(place / "stick"), Not(Contains(testing::Key(HasSubstr(".vxclone")))));
}

TEST_F(CloneTest, secondBackupReplacesThePackage) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const auto settings = [this] { return package().at("vconf/Vconf.json"); };
    const std::string before = settings();
    ASSERT_EQ(vxclone(second, {"backup", "/media/usb/clone"}).status, 0);
    EXPECT_NE(settings(), before);
    writeFile(place / "stick/clone/stale", "x");
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    EXPECT_EQ(settings(), before);
    EXPECT_EQ(package().count("stale"), 0U);
}

TEST_F(CloneTest, partialRestoreLoadsTheChosenCategoryAndIsNoFailure) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone", "--only", "settings-keys"});
    EXPECT_EQ(restore.status, 0) << restore.output << restore.errors;
    EXPECT_EQ(get(second, kWelcome), get(first, kWelcome));
}

TEST_F(CloneTest, restoreWithoutTheSettingsCategoryLeavesThem) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const std::string before = get(second, kWelcome);
    EXPECT_EQ(vxclone(second, {"restore", "/media/usb/clone", "--only", "av,apps"}).status, 0);
    EXPECT_EQ(get(second, kWelcome), before);
}

TEST_F(CloneTest, settingThatTheTelevisionRefusesIsReportedAndFailsTheRestore) {
    const char* const doorEye = "db/hotel/dooreye";
    vxtv({"set", first, doorEye, "1"});
    vxtv({"set", second, doorEye, "0"});
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    // Only settings are stored as bools, and this one is the first.
    vxtv({"fault", second, "add", "vconf_set_bool", "--nth", "1", "--status", "-1"});
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(restore.status, 1) << restore.output << restore.errors;
    EXPECT_THAT(restore.output + restore.errors, HasSubstr(doorEye));
}

TEST_F(CloneTest, keyThatCannotBeReadIsNamedAndLeftAsItIsOnTheOther) {
    const char* const doorEye = "db/hotel/dooreye";
    vxtv({"fault", first, "add", "vconf_get_bool", "--key", doorEye, "--status", "-1", "--from-then-on"});
    const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
    EXPECT_EQ(backup.status, 1) << backup.output << backup.errors;
    EXPECT_THAT(backup.output,
                HasSubstr("The backup is not complete. It lacks: settings-keys (db/hotel/dooreye)."));
    EXPECT_EQ(json::parse(package().at("vconf/Vconf.json")).count(doorEye), 0U);
    EXPECT_EQ(vxclone(second, {"verify", "/media/usb/clone"}).status, 1);
    vxtv({"set", second, doorEye, "1"});
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(restore.status, 1) << restore.output << restore.errors;
    EXPECT_THAT(restore.output, HasSubstr("left as they were: db/hotel/dooreye"));
    EXPECT_EQ(get(second, doorEye), "true");
}

TEST_F(CloneTest, servicesThatTheTelevisionSaysItHasNotAreAFailureUnlessDeclared) {
    vxtv({"fault", first, "add", "system_info_get_custom_int", "--status", "-1", "--from-then-on"});
    const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
    EXPECT_EQ(backup.status, 1);
    EXPECT_THAT(backup.output, HasSubstr("The backup is not complete. It lacks: home-data, was."));
    const Finished declared = vxclone(first, {"backup", "/media/usb/clone", "--without", "home-data,was"});
    EXPECT_EQ(declared.status, 0) << declared.output << declared.errors;
    EXPECT_EQ(vxclone(second, {"verify", "/media/usb/clone"}).status, 0);
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(restore.status, 0) << restore.output << restore.errors;
}

TEST_F(CloneTest, declaredNameOfWhichNothingIsLackingIsSaidAndNoFailure) {
    const char* const sentence = "--without names what is not lacking: timers, org.mistyped.app.\n";
    const Finished backup =
        vxclone(first, {"backup", "/media/usb/clone", "--without", "timers,org.mistyped.app"});
    EXPECT_EQ(backup.status, 0) << backup.output << backup.errors;
    EXPECT_THAT(backup.output, HasSubstr(sentence));
    const Finished restore =
        vxclone(second, {"restore", "/media/usb/clone", "--without", "timers,org.mistyped.app"});
    EXPECT_EQ(restore.status, 0) << restore.output << restore.errors;
    EXPECT_THAT(restore.output, HasSubstr(sentence));
}

TEST_F(CloneTest, restoreBeginsOnlyWhereEverythingCanBeBroughtBack) {
    vxclone(first, {"backup", "/media/usb/clone"});
    const std::string before = get(second, kWelcome);
    ASSERT_NE(before, get(first, kWelcome));
    vxtv({"fault", second, "add", "system_info_get_custom_int", "--status", "-1", "--from-then-on"});
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone"});
    EXPECT_EQ(restore.status, 10);
    EXPECT_THAT(restore.errors, HasSubstr("the safety backup failed: it lacks home-data, was"));
    EXPECT_EQ(get(second, kWelcome), before);
    EXPECT_EQ(vxclone(second, {"undo"}).status, 3);
}

TEST_F(CloneTest, restoreOfAMissingPackageChangesNothing) {
    const std::string before = vxtv({"settings", second}).output;
    const Finished restore = vxclone(second, {"restore", "/media/usb/nothing"});
    EXPECT_EQ(restore.status, 3);
    EXPECT_THAT(restore.errors, HasSubstr("/media/usb/nothing"));
    EXPECT_EQ(vxtv({"settings", second}).output, before);
}

TEST_F(CloneTest, backupOfATelevisionWithoutRoomLeavesTheStickAsItWas) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const FileTree before = snapshot(place / "stick");
    std::filesystem::remove_all(place / "first/opt/usr/apps/org.vorta.vxhotel-cloning");
    writeFile(place / "first/opt/usr/apps/org.vorta.vxhotel-cloning", "in the way");
    const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
    EXPECT_NE(backup.status, 0);
    EXPECT_THAT(backup.errors, Not(IsEmpty()));
    EXPECT_EQ(snapshot(place / "stick"), before);
}

TEST_F(CloneTest, jsonOutputIsOneObjectALine) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const Finished restore = vxclone(second, {"restore", "/media/usb/clone", "--json"});
    ASSERT_EQ(restore.status, 0) << restore.output << restore.errors;
    std::istringstream lines(restore.output);
    std::vector<json> objects;
    for (std::string line; std::getline(lines, line);) {
        objects.push_back(json::parse(line));
    }
    ASSERT_FALSE(objects.empty());
    EXPECT_EQ(objects.back().at("event"), "summary");
    EXPECT_EQ(objects.back().at("exit"), 0);
    std::vector<int> percents;
    std::vector<std::string> phases;
    for (const json& object : objects) {
        if (object.contains("percent")) {
            percents.push_back(object.at("percent").get<int>());
            const auto phase = object.at("phase").get<std::string>();
            if (phases.empty() || phases.back() != phase) {
                phases.push_back(phase);
            }
        }
    }
    EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
    EXPECT_EQ(std::count(percents.begin(), percents.end(), 100), 1);
    EXPECT_THAT(phases,
                testing::ElementsAre("staging", "safety", "load", "looking-up", "read-back", "closing"));
}

TEST_F(CloneTest, wholeCloneIsInTheCallLogOfTheTelevision) {
    ASSERT_EQ(vxclone(first, {"backup", "/media/usb/clone"}).status, 0);
    const std::string calls = vxtv({"calls", first}).output;
    EXPECT_THAT(calls, HasSubstr("tvtimer_init"));
    EXPECT_THAT(calls, HasSubstr(kWelcome));
    const std::string log = vxtv({"log", first}).output;
    EXPECT_THAT(log, HasSubstr("Clone_BackUP status"));
    EXPECT_THAT(log, HasSubstr("cloneapi"));
}

}  // namespace
}  // namespace vxtest
