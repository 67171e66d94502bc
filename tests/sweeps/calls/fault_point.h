#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vxtest {

/// A fault of a virtual television: the call and its effect.
struct FaultPoint {
    std::string call;
    int nth = 1;
    bool fromThenOn = false;
    bool canFail = true;  ///< else the call is only late

    std::string name() const;
    /// The further arguments of `vxtv fault DIR`.
    std::vector<std::string> arguments() const;
};

/// The fault by which the nth call of this name fails. A call that cannot fail is delayed.
FaultPoint faultPoint(const std::string& call, int nth, bool fromThenOn);

/// The points of a run with these calls. If `all`, each call fails once, and each name fails from its first
/// call on. Otherwise only the first call of each name, and the last call that reads or writes a setting in
/// each way. With applications, which are slow, only the calls that need them.
std::vector<FaultPoint> faultPoints(const std::vector<std::string>& calls, bool all, bool withApplications);

/// Whether the text begins with `start`.
inline bool beginsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

}  // namespace vxtest
