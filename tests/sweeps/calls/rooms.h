#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/sweeps/calls/fault_point.h"

namespace vxtest {

/// The command. If the television has no applications, it declares that.
std::vector<std::string> withDeclared(std::vector<std::string> command, bool withApplications);

/// Two televisions with different settings and a stick, made once and copied for every point.
class Rooms {
 public:
    /// With cooperating applications, or without, which is faster.
    explicit Rooms(bool withApplications);

    /// Restores both televisions, and the stick with the first one's package, to their original state.
    void renew() const;

    Finished vxtv(std::vector<std::string> arguments) const;
    Finished vxclone(const std::string& room, std::vector<std::string> arguments) const;
    /// The calls in the television's log, in order.
    std::vector<std::string> callsOf(const std::string& room) const;
    void addFault(const std::string& room, const FaultPoint& point) const;

    std::filesystem::path folder(const std::string& name) const { return place_ / "now" / name; }
    /// The number of processes of these televisions that are still running.
    int processes() const;

 private:
    void makeProfiles(bool withApplications) const;

    TemporaryDirectory place_;
};

inline constexpr const char* kFirst = "first";
inline constexpr const char* kSecond = "second";
inline constexpr const char* kStick = "stick";
inline constexpr const char* kPackage = "/media/usb/clone";

}  // namespace vxtest
