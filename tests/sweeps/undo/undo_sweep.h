#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/machine/temporary_directory.h"
#include "tests/sweeps/sweep.h"
#include "tests/sweeps/system/bench.h"

namespace vxtest {

/// The counted results of the points, for the line at the end.
struct UndoCounts {
    std::atomic<int> untouched = 0;  ///< no way back, and none was needed
    std::atomic<int> undone = 0;
    std::atomic<int> doubted = 0;  ///< of these, the undo said itself that not all could be checked

    std::string text() const;
};

/// A television, and a package that differs from it in all cloned parts. After any disturbance of a restore:
/// if it offers or leaves a way back, `vxclone undo` restores the television's old state; otherwise the
/// television is unchanged.
class UndoSweep : public testing::Test {
 protected:
    /// With cooperating applications, or without, which is faster.
    explicit UndoSweep(bool withApplications);

    /// Checks that the undisturbed restore leaves a way back that works. Fails the test if the sweep could
    /// not detect anything.
    void SetUp() override;

    Bench newBench() const { return {target(), stick()}; }

    /// Checks this after a restore that ended, died or was stopped. `text` is its output.
    void expectWayBack(const Bench& bench, const std::string& text);

    std::filesystem::path target() const { return place_ / "target"; }
    std::filesystem::path stick() const { return place_ / "stick"; }

    const std::vector<std::string> restore_ = {"restore", "/media/usb/clone"};
    UndoCounts counts_;

 private:
    void makeProfiles() const;
    void make(const char* television, const char* profile) const;
    /// The parts in which the two differ: "channels/hotel list", "timers".
    std::vector<std::string> differingParts(const std::filesystem::path& one,
                                            const std::filesystem::path& other) const;

    bool withApplications_;
    TemporaryDirectory place_;
};

}  // namespace vxtest
