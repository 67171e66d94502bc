#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/sweeps/calls/rooms.h"
#include "tests/sweeps/sweep.h"

namespace vxtest {

/// Whole televisions of which each platform call fails in turn, with cooperating applications or without.
class VirtualCallsTest : public testing::TestWithParam<bool> {
 protected:
    VirtualCallsTest() : rooms_(GetParam()) {}

    /// The points of the command, which ends well without a fault.
    std::vector<FaultPoint> pointsOf(const std::string& room, const std::vector<std::string>& command,
                                     SweepPoints& points) const;

    /// Runs the command in the television as it was made, with the fault, and takes that away again. Expects
    /// what holds at every point: a documented end, a run that says when something is not as it should be,
    /// and no process left.
    Finished runWithFault(const std::string& room, const FaultPoint& point,
                          const std::vector<std::string>& command) const;

    Rooms rooms_;
};

inline std::string nameOfApplications(const testing::TestParamInfo<bool>& with) {
    return with.param ? "with" : "without";
}

/// The paths of what the two do not have in common.
std::vector<std::string> differing(const FileTree& some, const FileTree& other);

}  // namespace vxtest
