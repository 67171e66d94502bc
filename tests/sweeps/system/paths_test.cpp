// The paths that each command writes, creates, renames or removes: only those that the rules allow.

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>
#include <sstream>

#include "tests/support/machine/thread_sanitizer.h"
#include "tests/sweeps/system/system_sweep.h"

namespace vxtest {
namespace {

constexpr const char* kWriting =
    "write,writev,pwrite64,rename,renameat,renameat2,mkdir,mkdirat,rmdir,unlink,unlinkat,chmod,fchmod,"
    "fchmodat,truncate,ftruncate,fallocate,copy_file_range,link,linkat,symlink,symlinkat";

const std::string kData = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/";
const std::string kPictures = "/opt/usr/data/hotel/";
const std::string kKeys = "/secure/";

/// The paths that a call changes. A copy changes only the second one.
std::vector<std::string> changedBy(const CountedCall& call) {
    std::istringstream words(call.paths);
    std::vector<std::string> paths;
    for (std::string path; words >> path;) {
        paths.push_back(path);
    }
    if (call.name == "copy_file_range" && paths.size() > 1) {
        paths.erase(paths.begin());
    }
    return paths;
}

bool beginsWithAnyOf(const std::string& path, const std::vector<std::string>& beginnings) {
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&path](const std::string& beginning) { return path.rfind(beginning, 0) == 0; });
}

/// A command, and the paths that it may change, as programs in the television see them.
struct Allowed {
    const char* name;
    std::vector<std::string> command;
    std::vector<std::string> beginnings;
};

void PrintTo(const Allowed& allowed, std::ostream* out) {
    *out << allowed.name;
}

const std::vector<std::string> kOfALook = {kData + "Clone", kData + "run.keys", kData + "run.lock"};
const std::vector<std::string> kOfALoad = {kData, kPictures, kKeys};

class ChangedPathsTest : public SystemSweep, public testing::WithParamInterface<Allowed> {
 protected:
    /// The changed paths of the command that no rule allows.
    std::vector<std::string> forbiddenOf(const Subject& subject) const {
        const std::vector<std::string> allowed = {"pipe:", "socket:", "anon_inode:", "/dev/null"};
        const auto calls = count(subject, kWriting, Among::AllFiles);
        EXPECT_FALSE(calls.empty());
        std::vector<std::string> forbidden;
        for (const CountedCall& call : calls) {
            for (const std::string& path : changedBy(call)) {
                if (!beginsWithAnyOf(path, allowed) && !isAllowedOnTheTelevision(path)) {
                    forbidden.push_back(call.name + " " + path);
                }
            }
        }
        return forbidden;
    }

 private:
    /// The bench's television is in a folder of its own. Programs in it see it as their root as well.
    static bool isAllowedOnTheTelevision(const std::string& path) {
        const std::string marker = "/tv/";
        const std::size_t at = path.find(marker);
        const std::string inside = at == std::string::npos ? path : path.substr(at + marker.size() - 1);
        return beginsWithAnyOf(inside, {"/log/", "/tv.db", "/run/"}) ||
               beginsWithAnyOf(inside, GetParam().beginnings);
    }
};

TEST_P(ChangedPathsTest, areThoseThatTheRulesAllow) {
    VX_SKIP_IF_PROGRAMS_WRITE_AT_THEIR_START();
    const std::string name = GetParam().name;
    // On a new television, a command that only looks would install its keys.
    Subject subject = name == "backup"    ? backup()
                      : name == "restore" ? restore()
                      : name == "undo"    ? undo()
                                          : diff();
    subject.command = GetParam().command;
    EXPECT_THAT(forbiddenOf(subject), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Of, ChangedPathsTest,
    testing::Values(Allowed{"backup",
                            {"backup", "/media/usb/clone"},
                            {kData, kKeys, "/media/usb/.clone.vxclone-", "/media/usb/clone"}},
                    Allowed{"restore", {"restore", "/media/usb/clone"}, kOfALoad},
                    Allowed{"undo", {"undo"}, kOfALoad},
                    Allowed{"dry_run", {"restore", "/media/usb/clone", "--dry-run"}, kOfALook},
                    Allowed{"diff", {"diff", "/media/usb/clone"}, kOfALook},
                    Allowed{"verify", {"verify", "/media/usb/clone"}, kOfALook},
                    Allowed{"inspect", {"inspect", "/media/usb/clone"}, {}},
                    Allowed{"list", {"list", "/media/usb"}, {}}, Allowed{"status", {"status"}, {}}),
    [](const auto& allowed) { return std::string(allowed.param.name); });

}  // namespace
}  // namespace vxtest
