#pragma once

#include <functional>
#include <vector>

#include "cloning_app/run/clone_engine.h"
#include "cloning_app/run/settings_store.h"

/// A library of these tests: does what it is told to and reports as the real one does.
struct FakeEngine final : vxclone::CloneEngine {
    vxclone::Result<void> backUp() override { return run(); }
    vxclone::Result<void> restore(const std::vector<VXClone>& wanted) override {
        list = wanted;
        return run();
    }

    static void report(const std::string& lines, int percent) {
        vxclone::store::writeString(vxclone::kResultKey, lines);
        vxclone::store::writeInt(vxclone::kProgressKey, percent);
    }

    std::function<void()> work = [] {};
    vxclone::Result<void> end;
    std::vector<VXClone> list;
    int runs = 0;

 private:
    vxclone::Result<void> run() {
        ++runs;
        work();
        return end;
    }
};
