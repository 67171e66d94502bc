#pragma once

#include <string>

namespace vxtest {

/// Ends the whole program with the name of the point if a run takes longer than a minute, because a hanging
/// thread cannot be ended. One at a time.
class RunDeadline {
 public:
    explicit RunDeadline(const std::string& point);
    RunDeadline(const RunDeadline&) = delete;
    RunDeadline& operator=(const RunDeadline&) = delete;
    ~RunDeadline();
};

}  // namespace vxtest
