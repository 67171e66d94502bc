#pragma once

#include <string>

namespace vxtest {

/// Ends the whole program, with the point's name, when one run takes longer than a minute: a thread that
/// hangs cannot be taken back. One at a time.
class RunDeadline {
 public:
    explicit RunDeadline(const std::string& point);
    RunDeadline(const RunDeadline&) = delete;
    RunDeadline& operator=(const RunDeadline&) = delete;
    ~RunDeadline();
};

}  // namespace vxtest
