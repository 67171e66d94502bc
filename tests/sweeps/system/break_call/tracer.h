#pragma once

#include <sys/types.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vxtest {

struct WatchedCall;

/// What happens to a call.
enum class Breakage {
    None,       ///< it is only counted
    Error,      ///< it does not happen, and fails; a close happens and is said to have failed
    Short,      ///< it reads or writes half of what it was asked for
    Interrupt,  ///< the process gets a SIGINT before it
    Kill        ///< the process is killed before it
};

struct BreakOrder {
    std::set<std::string> calls;     ///< the names of the calls that count; empty: all that are watched
    std::vector<std::string> below;  ///< only calls that name a file at or below one of these; empty: all
    unsigned nth = 1;
    bool fromThenOn = false;
    Breakage breakage = Breakage::None;
    int error = 0;
    std::string log;  ///< the file that gets a line for each call that was broken, or that was counted
};

/// Runs a program and breaks one of its system calls, or all from one on. The calls of all threads of the
/// program are counted together. Programs that it starts, and the loading of shared libraries, are not
/// counted.
class Tracer {
 public:
    explicit Tracer(BreakOrder order);

    /// Result: the exit status of the program as in a shell; empty if it could not be traced.
    std::optional<int> run(char** command);

 private:
    bool start(char** command);
    void stopped(pid_t thread, int status);
    void systemCall(pid_t thread);
    void entered(pid_t thread, std::uint64_t number, const std::uint64_t* arguments);
    void breakCall(pid_t thread, const WatchedCall& call);
    bool counts(const std::vector<std::string>& paths) const;
    void findLoader();

    BreakOrder order_;
    std::ofstream log_;
    unsigned count_ = 0;
    pid_t process_ = -1;
    bool started_ = false;
    std::uint64_t loaderBegin_ = 0;
    std::uint64_t loaderEnd_ = 0;
    std::map<pid_t, int> failing_;  ///< the calls under way that are to fail, by thread, and how
};

}  // namespace vxtest
