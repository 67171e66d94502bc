#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vxtest {

/// A fault of a virtual television: which call, and what becomes of it.
struct FaultPoint {
    std::string call;
    int nth = 1;
    bool fromThenOn = false;
    bool canFail = true;  ///< else the call is only late

    std::string name() const;
    /// What `vxtv fault DIR` needs besides.
    std::vector<std::string> arguments() const;
};

/// The fault by which the nth call of this name fails; one that cannot fail is late.
FaultPoint faultPoint(const std::string& call, int nth, bool fromThenOn);

/// The points of a run that made these calls. All: each call fails once, and each name from its first call
/// on. Else the first call of each name, and the last that reads or writes a setting in each way. With
/// applications, which take their time: only the calls that need them.
std::vector<FaultPoint> faultPoints(const std::vector<std::string>& calls, bool all, bool withApplications);

/// Whether the text begins so.
inline bool beginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

}  // namespace vxtest
