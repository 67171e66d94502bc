#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/sweeps/calls/rooms.h"
#include "tests/sweeps/sweep.h"

namespace vxtest {

/// Whole televisions in which each platform call fails in turn, with cooperating applications or without.
class VirtualCallsTest : public testing::TestWithParam<bool> {
 protected:
    VirtualCallsTest() : rooms_(GetParam()) {}

    /// The points of the command. Without a fault it must succeed.
    std::vector<FaultPoint> pointsOf(const std::string& room, const std::vector<std::string>& command,
                                     SweepPoints& points) const;

    /// Runs the command with the fault in a fresh copy of the television, and removes the fault. Expects what
    /// must hold at every point: a documented end, a report of every problem, and no remaining process.
    Finished runWithFault(const std::string& room, const FaultPoint& point,
                          const std::vector<std::string>& command) const;

    Rooms rooms_;
};

inline std::string nameOfApplications(const testing::TestParamInfo<bool>& with) {
    return with.param ? "with" : "without";
}

/// The paths in which the two differ.
std::vector<std::string> differing(const FileTree& some, const FileTree& other);

}  // namespace vxtest
