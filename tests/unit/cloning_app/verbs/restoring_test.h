#pragma once

#include <map>
#include <string>

#include "cloning_app/record/run_record.h"
#include "cloning_app/television/setting_kinds.h"
#include "tests/unit/cloning_app/run_test.h"
#include "tests/unit/cloning_app/sealed_package.h"

/// A television with a volume and a PIN, and a package with other values.
class RestoringTest : public RunTest {
 protected:
    RestoringTest() {
        writeWhole(folder_ / "own", 20, "1111");
        loadSettings(folder_ / "own");
        engine_.save = [this] {
            for (const auto& entry : std::filesystem::directory_iterator(root_)) {
                std::filesystem::remove_all(entry);
            }
            writeWhole(root_, volume(), pin());
            FakeEngine::report(kWholeReport, 0);
        };
        engine_.work = [this] {
            loaded_ = contentOf(root_);
            loadSettings(root_);
            FakeEngine::report(kWholeReport, 100);
        };
        writeWhole(package_, 12, "2222");
        sealFolder(package_);
    }

    static void set(const std::string& key, FakeSettingsStore::Value value) {
        FakeSettingsStore::instance().set(key, std::move(value));
    }
    static int volume() { return std::get<int>(*FakeSettingsStore::instance().get(kVolume)); }
    static std::string pin() {
        return std::get<std::string>(*FakeSettingsStore::instance().get(kPinSetting));
    }
    static void writeWhole(const std::filesystem::path& package, int volume, const std::string& pin) {
        writeWholePackage(package, {{kVolume, std::to_string(volume)}, {kPinSetting, "\"" + pin + "\""}});
    }

    vxclone::Result<vxclone::Report> restore(vxclone::RestoreOptions options = {vxclone::allCategories(),
                                                                                false, true}) {
        return vxclone::runRestore(context(), package_, options);
    }

    std::filesystem::path data() const { return vxclone::recordFolderOf(root_); }
    vxclone::LastRun lastRun() const { return vxclone::readLastRun(data()).value().value(); }
    bool hasSafety() const { return std::filesystem::exists(data() / "Safety/manifest.json"); }

    /// Leaves the state of a run that died while the library loaded.
    void dieWhileRestoring() {
        auto recorder = vxclone::RunRecorder::begin(
            data(), {vxclone::RunKind::Restore, vxclone::RunPhase::Staging, "/media/usb/old", "", 1});
        ASSERT_TRUE(recorder);
        recorder->setWayBack();
        ASSERT_TRUE(recorder->enter(vxclone::RunPhase::Restoring));
    }

    std::map<std::string, std::string> loaded_;
};
