// A whole backup and a whole restore on a television where every service succeeds: all calls in order.

#include <chrono>
#include <iterator>
#include <map>
#include <thread>

#include "expected_settings.h"
#include "whole_engine_test.h"

namespace vxtest {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::StartsWith;

const std::string kPackage = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone";
const std::string kApplicationsEntry = "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA-SUCCESS\n";

std::string inQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

/// The expected calls of a run on the calling thread, and the growing result list.
class ExpectedRun {
 public:
    /// The calls.
    void add(std::vector<std::string> calls) {
        calls_.insert(calls_.end(), std::make_move_iterator(calls.begin()),
                      std::make_move_iterator(calls.end()));
    }
    /// The report of an outcome.
    void report(const std::string& outcome) {
        results_ += outcome + "\n";
        add({kRead, "vconf_set_str(\"db/hotel/clone_result\", " + inQuotes(results_) + ")"});
    }
    /// The progress after an entry.
    void progress(int percent) {
        add({"vconf_set_int(\"db/hotel/clone_progress\", " + std::to_string(percent) + ")"});
    }
    void end() { add({kRead}); }

    const std::vector<std::string>& calls() const { return calls_; }
    const std::string& results() const { return results_; }

 private:
    static constexpr const char* kRead = "vconf_get_str(\"db/hotel/clone_result\")";
    std::vector<std::string> calls_;
    std::string results_ = kApplicationsEntry;
};

class WholeRunTest : public WholeEngineTest {
 protected:
    WholeRunTest() {
        tv.setRunning("org.vorta.orvel-app", true);
        tv.replyToSends(std::map<std::string, std::string>{{"response_clone", "success"}});
        tv.setSources({{1, {"STB", 32, 0}}});
        tv.setNavigation({{10, 7, {}, 0, 0}});
        for (const SettingKey& row : kExpectedSettings) {
            tv.setSetting(row.key, row.type == SettingType::Int      ? Setting(1)
                                   : row.type == SettingType::String ? Setting(std::string("own"))
                                                                     : Setting(BoolSetting{1}));
        }
        // The two threads of a run append to the result list without a lock. The first service waits until
        // the other thread has reported, so that the list is always the same.
        for (const char* const firstService : {"factory_clone_tv_to_usb", "factory_clone_usb_to_tv"}) {
            tv.onCall(firstService, [this] { awaitApplicationsEntry(); });
        }
    }

    void awaitApplicationsEntry() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (results() != kApplicationsEntry && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
    }

    /// The platform calls of the calling thread. A log line begins with its priority.
    std::vector<std::string> callsOfThisThread() const {
        std::vector<std::string> calls;
        for (const std::string& line : tv.transcript()) {
            if (line.at(1) != '/') {
                calls.push_back(line);
            }
        }
        return calls;
    }
};

TEST_F(WholeRunTest, backupAsksEveryServiceInOrder) {
    writeFile(work("home/menu.xml"), "menu");

    ExpectedRun run;
    run.add(
        {"tvtimer_init()", "vconf_set_str(\"db/hotel/clone_result\", \"\")", "factory_clone_tv_to_usb()"});
    run.report("VXCLONE_FACTORY_SETTINGS-FAIL");
    run.add({"avoc_backup_all_settings(" + inQuotes(kPackage) + ")"});
    run.report("VXCLONE_AV_SETTINGS-SUCCESS");
    run.add({kReadNetworkSupport, "CHomeDataControlAPI::GetInstance()",
             "CHomeDataControlAPI::CopyCloneDataTVtoUSB(" +
                 inQuotes(kPackage + "/org.vorta.homedatacontrol-service") + ", \"\")",
             "CHomeDataControlAPI::Destroy()"});
    run.report("VXCLONE_HOME_INTERNAL_API_DATA-SUCCESS");
    run.add({"was_clone_backup()"});
    run.report("VXCLONE_WAS_API_DATA-SUCCESS");
    for (const SettingKey& row : kExpectedSettings) {
        const std::string call = row.type == SettingType::Int      ? "vconf_get_int("
                                 : row.type == SettingType::String ? "vconf_get_str("
                                                                   : "vconf_get_bool(";
        run.add({call + inQuotes(row.key) + ")"});
    }
    const std::string channelMap = "(" + inQuotes(kPackage + "/tvs-chms/") + ")";
    run.add({"TVServiceAPI::CreateUtil()", "TVServiceAPI::CreateB2BControl()",
             "IUtil::ExportChannelMap" + channelMap, "IB2BControl::ExportChannelMap" + channelMap});
    run.report("VXCLONE_BROADCAST_TVS-SUCCESS");
    run.add({"SettingsDataCloneAPI::BackupSettingsData(" + inQuotes(kPackage + "/") + ")"});
    run.report("VXCLONE_SETTINGS_DATA-SUCCESS");
    run.add({"tvtimer_get_db(" + inQuotes(kPackage + "/tvtimer/") + ")"});
    run.report("VXCLONE_VXTV_TIMER_DATA-SUCCESS");
    run.add({"vx_get_homemenu_path()", "sync()"});
    run.report("VXCLONE_VXHOTEL_HOMEAPP_DATA-SUCCESS");
    run.report("VXCLONE_NTP_SETTINGS_DATA-SUCCESS");
    run.end();

    EXPECT_EQ(engine.BackupCloneData(), 1);
    EXPECT_THAT(callsOfThisThread(), ElementsAreArray(run.calls()));
    EXPECT_EQ(results(), run.results());
    EXPECT_EQ(tv.messages().back(), "Clone_BackUP status : \n{-----------------------\n" + run.results() +
                                        "\n-----------------------}\n");
    EXPECT_THAT(
        snapshot(kCloneDirectory),
        ElementsAre(testing::Key("VXHotel/"), testing::Pair("VXHotel/menu.xml", "menu"),
                    testing::Key("tvtimer/"), testing::Key("vconf/"), testing::Key("vconf/Vconf.json")));
}

class WholeRestoreTest : public WholeRunTest {
 protected:
    WholeRestoreTest() {
        // The package has something of each category. Only two settings are in the file; the others become 0
        // or empty.
        writeFile(clone("vconf/Vconf.json"), R"({"db/menu/system/time/ntp/ntp_mode": {"int": 0},
            "db/menu/system/time/ntp/server_url": {"string": "time.example"}})");
        writeFile(clone("tvs-chms/tvs-chms.zip"), "map");
        writeFile(clone("logo/logo.jpg"), "logo");
        writeFile(clone("VXHotel/menu.xml"), "menu");
        writeFile(clone("VXMBRLogo/stb_source_icon.jpg"), "source");
        writeFile(clone("VXMBRLogo/stb_app_icon.png"), "app");
        fs::create_directories(work("home"));
    }

    static void expectServices(ExpectedRun& run) {
        run.add({"factory_clone_usb_to_tv()"});
        run.report("VXCLONE_FACTORY_SETTINGS-FAIL");
        run.progress(6);
        run.add({"avoc_restore_all_settings(" + inQuotes(kPackage) + ")"});
        run.report("VXCLONE_AV_SETTINGS-SUCCESS");
        run.progress(13);
        run.add({"CHomeDataControlAPI::GetInstance()",
                 "CHomeDataControlAPI::CopyCloneDataUSBtoTV(" +
                     inQuotes(kPackage + "/org.vorta.homedatacontrol-service") + ", \"\")",
                 "CHomeDataControlAPI::Destroy()"});
        run.report("VXCLONE_HOME_INTERNAL_API_DATA-SUCCESS");
        run.progress(20);
        run.add({"was_clone_restore()"});
        run.report("VXCLONE_WAS_API_DATA-SUCCESS");
        run.progress(26);
    }

    static void expectSettings(ExpectedRun& run) {
        for (const SettingKey& row : kExpectedSettings) {
            const std::string key = inQuotes(row.key);
            const bool server = row.key == std::string(kNtpServerKey);
            run.add({row.type == SettingType::Int ? "vconf_set_int(" + key + ", 0)"
                     : row.type == SettingType::String
                         ? "vconf_set_str(" + key + ", " + inQuotes(server ? "time.example" : "") + ")"
                         : "vconf_set_bool(" + key + ", 0)"});
        }
        run.progress(33);
    }

    static void expectChannelMap(ExpectedRun& run) {
        run.add({"TVServiceAPI::CreateUtil()", "TVServiceAPI::CreateB2BControl()",
                 "IUtil::ImportChannelMap(" + inQuotes(kPackage + "/tvs-chms/") + ")",
                 "TVServiceAPI::CreateServiceNavigation(1, 0)", "CCCategoryUtil::GetInstance()",
                 "CCCategoryUtil::GetNavigationList(-1, -1)"});
        for (const char* const mode : {"0, -1", "1, -1", "2, -1", "-1, 3", "-1, 16", "-1, 19", "-1, 20"}) {
            run.add({std::string("CCCategoryUtil::RemoveNavigation(") + mode + ", {10, 7, [], 0, 0})"});
        }
        run.report("VXCLONE_BROADCAST_TVS-SUCCESS");
        run.progress(40);
    }

    static void expectFiles(ExpectedRun& run) {
        const std::string settingsData =
            "SettingsDataCloneAPI::RestoreSettingsData(" + inQuotes(kPackage + "/") + ", ";
        run.add({settingsData + "1)", settingsData + "2)"});
        run.report("VXCLONE_SETTINGS_DATA-SUCCESS");
        run.progress(46);
        run.progress(53);
        run.add({"tvtimer_set_db(" + inQuotes(kPackage + "/tvtimer/") + ")"});
        run.report("VXCLONE_VXTV_TIMER_DATA-SUCCESS");
        run.progress(60);
        run.add({"vx_get_bootlogo_path()", "sync()", "sync()"});
        run.report("VXCLONE_HOSPITALITY_LOGO-SUCCESS");
        run.progress(66);
        run.add({"vx_get_homemenu_path()", "sync()"});
        run.report("VXCLONE_VXHOTEL_HOMEAPP_DATA-SUCCESS");
        run.progress(73);
        run.progress(80);
    }

    static void expectIconsAndTime(ExpectedRun& run) {
        run.add({"vx_get_mbrlogo_path()", "sync()", "sync()", "vx_get_mbrlogo_path()", "CSourceAPI::Get()",
                 "CSourceAPI::GetSourceList()", "CSourceAPI::Get()",
                 "CSourceAPI::SetCustomIconPath(32, \"/tmp/area/mbr/stb_source_icon.jpg\", "
                 "\"/tmp/area/mbr/stb_app_icon.png\", \"/tmp/area/mbr/stb_app_icon.png\", 0)"});
        run.report("VXCLONE_VXHOTEL_MBR_LOGO-SUCCESS");
        run.progress(86);
        run.progress(93);
        run.add({"nsVXSystemInfoAPI::CheckNTPSupport(false)",
                 "vconf_get_int(\"db/menu/system/time/ntp/ntp_mode\")", "nsVXSystemInfoAPI::SetNTPMode(true)",
                 "nsVXSystemInfoAPI::GetCurrentTimezone(90)",
                 "vconf_get_str(\"db/menu/system/time/ntp/server_url\")",
                 "nsVXSystemInfoAPI::SetTimezoneInfo(0)",
                 "nsVXSystemInfoAPI::SetNTPServerAddr(\"time.example\")"});
        run.report("VXCLONE_NTP_SETTINGS_DATA-SUCCESS");
        run.progress(100);
    }
};

TEST_F(WholeRestoreTest, restoreOfEverythingAsksEveryServiceInOrder) {
    ExpectedRun run;
    run.add({"tvtimer_init()", "vconf_set_str(\"db/hotel/clone_result\", \"\")", kReadNetworkSupport});
    expectServices(run);
    expectSettings(run);
    expectChannelMap(run);
    expectFiles(run);
    expectIconsAndTime(run);
    run.end();

    std::vector<VXClone> all;
    for (int value = VXCLONE_FACTORY_SETTINGS; value <= VXCLONE_NTP_SETTINGS_DATA; ++value) {
        all.push_back(static_cast<VXClone>(value));
    }
    EXPECT_EQ(engine.RestoreCloneData(all), 1);
    EXPECT_THAT(callsOfThisThread(), ElementsAreArray(run.calls()));
    EXPECT_EQ(results(), run.results());
    EXPECT_EQ(tv.messages().back(), "Clone_Restore status : \n{-----------------------\n" + run.results() +
                                        "\n-----------------------}\n");
    EXPECT_EQ(readFile(work("boot/logo.jpg")), "logo");
    EXPECT_EQ(readFile(work("home/menu.xml")), "menu");
    EXPECT_EQ(readFile(work("mbr/stb_app_icon.png")), "app");
}

TEST_F(WholeRestoreTest, restoreWithoutNetworkSupportAsksNeitherNetworkService) {
    tv.setFeature(kNetworkSupportFeature, 0);
    engine.RestoreCloneData({VXCLONE_FACTORY_SETTINGS, VXCLONE_HOME_INTERNAL_API_DATA, VXCLONE_WAS_API_DATA,
                             VXCLONE_VXHOTEL_FIRSTSCREEN_DATA});
    EXPECT_EQ(results(), kApplicationsEntry + "VXCLONE_FACTORY_SETTINGS-FAIL\n");
    EXPECT_THAT(tv.calls(), testing::Each(testing::Not(
                                testing::AnyOf(StartsWith("CHomeDataControlAPI"), StartsWith("was_clone")))));
}

TEST_F(WholeRunTest, backupWithoutNetworkSupportAsksNeitherNetworkService) {
    tv.setFeature(kNetworkSupportFeature, 0);
    engine.BackupCloneData();
    EXPECT_THAT(tv.calls(), testing::Each(testing::Not(
                                testing::AnyOf(StartsWith("CHomeDataControlAPI"), StartsWith("was_clone")))));
    EXPECT_THAT(results(), testing::Not(testing::HasSubstr("VXCLONE_WAS_API_DATA")));
    EXPECT_THAT(results(), testing::HasSubstr("VXCLONE_NTP_SETTINGS_DATA-SUCCESS"));
}

}  // namespace
}  // namespace vxtest
