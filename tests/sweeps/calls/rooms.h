#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/sweeps/calls/fault_point.h"

namespace vxtest {

/// The command, which declares that the television has no applications where it has none.
std::vector<std::string> withDeclared(std::vector<std::string> command, bool withApplications);

/// Two televisions with different settings and a stick, made once and copied afresh for every point.
class Rooms {
 public:
    /// With cooperating applications or, which is faster, without.
    explicit Rooms(bool withApplications);

    /// Both televisions, and the stick with the first one's package, as they were made.
    void renew() const;

    Finished vxtv(std::vector<std::string> arguments) const;
    Finished vxclone(const std::string& room, std::vector<std::string> arguments) const;
    /// The calls that the television's log holds, in order.
    std::vector<std::string> callsOf(const std::string& room) const;
    void addFault(const std::string& room, const FaultPoint& point) const;

    std::filesystem::path folder(const std::string& name) const { return place_ / "now" / name; }
    /// How many processes were started for one of these televisions and still run.
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
