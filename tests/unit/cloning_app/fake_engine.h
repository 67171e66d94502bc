#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cloning_app/television/clone_engine.h"
#include "cloning_app/television/settings_store.h"

/// A library for tests. It does what the test says, and reports as the real one does.
struct FakeEngine final : vxclone::CloneEngine {
    vxclone::Result<void> backUp() override {
        if (save) {
            ++backups;
            save();
            return end;
        }
        return run();
    }
    vxclone::Result<void> restore(const std::vector<VXClone>& wanted) override {
        list = wanted;
        return run();
    }
    vxclone::Result<int> checkIdentity(const std::string& folder) override;
    vxclone::Result<bool> hasKey() override { return key; }
    vxclone::Result<bool> seal(const std::vector<std::string>& files, const std::string& seal) override;
    vxclone::Result<bool> checkSeal(const std::vector<std::string>& files, const std::string& seal) override;

    static void report(const std::string& lines, int percent) {
        vxclone::store::writeString(vxclone::kResultKey, lines);
        vxclone::store::writeInt(vxclone::kProgressKey, percent);
    }

    std::function<void()> work = [] {};
    std::function<void()> save;  ///< what a backup does, where that is not the same as `work`
    int backups = 0;             ///< how often it did that
    vxclone::Result<void> end;
    std::vector<VXClone> list;
    int runs = 0;

    vxclone::Result<bool> key = true;
    vxclone::Result<bool> sealing = true;  ///< how a sealing ends
    bool readsItsSeals = true;             ///< whether a seal that is right is taken
    vxclone::Result<int> identityAnswer = kCompares;
    std::vector<std::string> sealed;   ///< the files of the latest sealing
    std::vector<std::string> checked;  ///< the files of the latest check

    /// With this answer, the check of the identity compares, as the real one does.
    static constexpr int kCompares = 1000;

 private:
    vxclone::Result<void> run() {
        ++runs;
        work();
        return end;
    }
};
