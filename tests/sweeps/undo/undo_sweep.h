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

/// What became of the points of a sweep, for the line at its end.
struct UndoCounts {
    std::atomic<int> untouched = 0;  ///< no way back, and none was needed
    std::atomic<int> undone = 0;
    std::atomic<int> doubted = 0;  ///< of these, the undo said itself that not all could be checked

    std::string text() const;
};

/// A television, and a package that differs from it in all that a clone carries. Whatever happens to a
/// restore: if it says or leaves a way back, then `vxclone undo` makes the television what it was; if not,
/// the television is what it was.
class UndoSweep : public testing::Test {
 protected:
    /// With cooperating applications or, which is faster, without.
    explicit UndoSweep(bool withApplications);

    /// The restore of the package, unbroken, leaves a way back that is one. Fails the test where the sweep
    /// would see nothing.
    void SetUp() override;

    Bench newBench() const { return {target(), stick()}; }

    /// Expects what holds after a restore that ended, died or was stopped, of which `text` was said.
    void expectWayBack(const Bench& bench, const std::string& text);

    std::filesystem::path target() const { return place_ / "target"; }
    std::filesystem::path stick() const { return place_ / "stick"; }

    const std::vector<std::string> restore_ = {"restore", "/media/usb/clone"};
    UndoCounts counts_;

 private:
    void makeProfiles() const;
    void make(const char* television, const char* profile) const;
    /// The areas, and what they hold, in which the two differ: "channels/hotel list", "timers".
    std::vector<std::string> differingParts(const std::filesystem::path& one,
                                            const std::filesystem::path& other) const;

    bool withApplications_;
    TemporaryDirectory place_;
};

}  // namespace vxtest
