#pragma once

#include <gtest/gtest.h>

#include "cloning_app/verbs/backup.h"
#include "cloning_app/verbs/restore.h"
#include "cloning_app/verbs/undo.h"
#include "cloning_app/verbs/verify.h"
#include "tests/unit/cloning_app/fake_engine.h"
#include "tests/unit/cloning_app/fake_mounts.h"
#include "tests/unit/cloning_app/fake_paths.h"
#include "tests/unit/cloning_app/fake_secure_storage.h"
#include "tests/unit/cloning_app/fake_settings_store.h"
#include "tests/unit/cloning_app/fake_system_info.h"
#include "tests/unit/cloning_app/recording_view.h"
#include "tests/unit/cloning_app/test_folder.h"
#include "tests/unit/cloning_app/whole_package.h"

/// A television in its factory state.
struct NewTelevision {
    NewTelevision() {
        FakeSettingsStore::instance().reset();
        FakeSystemInfo::reset();
        FakeSecureStorage::reset();
        FakePaths::reset();
    }
};

/// The common parts of all tests of runs.
class RunTest : public testing::Test {
 protected:
    static const vxclone::Row& rowFor(const vxclone::Report& report, VXClone category) {
        for (const vxclone::Row& row : report.rows) {
            if (row.category == category) {
                return row;
            }
        }
        ADD_FAILURE() << "no row";
        return report.rows.front();
    }

    /// The percentages that were shown during the phase.
    std::vector<int> shownOf(vxclone::ShownPhase phase) const {
        std::vector<int> percents;
        for (const vxclone::Progress& step : view_.steps) {
            if (step.phase == phase) {
                percents.push_back(step.percent.value_or(-1));
            }
        }
        return percents;
    }

    vxclone::CloneContext context() { return {engine_, view_, stop_, root_, disk_, mounts_}; }

    NewTelevision television_;
    TestFolder folder_;
    const std::filesystem::path package_ = folder_ / "stick/clone";
    const std::filesystem::path root_ = folder_ / "opt/usr/apps/app/data/Clone";
    FakeEngine engine_;
    RecordingView view_;
    vxclone::StopFlag stop_;
    vxclone::DiskCalls disk_ = vxclone::realDiskCalls();
    vxclone::MountQuestions mounts_ = stickAt(folder_ / "stick");
};
