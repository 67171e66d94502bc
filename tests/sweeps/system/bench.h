#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {

/// The system calls of a program that are broken, and how.
struct BreakPoint {
    std::string how;                 ///< "count", "interrupt", "kill", "short", or the name of an error
    std::string calls;               ///< the calls that count, separated by commas; empty: all
    std::vector<std::string> below;  ///< only calls on files there; empty: all
    std::size_t nth = 1;
    bool fromThenOn = false;

    /// For the sentence of a failing test.
    std::string text() const;
};

/// A call that was broken or counted: its name and its files.
struct CountedCall {
    std::string name;
    std::string paths;
};

struct BrokenRun {
    Finished finished;
    std::vector<CountedCall> calls;
};

/// A copy of a television and a stick that a test may damage.
class Bench {
 public:
    Bench(const std::filesystem::path& television, const std::filesystem::path& stick);

    Finished vxclone(const std::vector<std::string>& arguments) const;
    /// vxclone, with one of its system calls broken.
    BrokenRun broken(const std::vector<std::string>& arguments, const BreakPoint& point) const;
    /// The differences to another television according to `vxtv compare`; empty if there are none.
    std::string differenceTo(const std::filesystem::path& other) const;
    /// The names at the top of the stick, and of the application's data on the television.
    std::vector<std::string> namesOnStick() const;
    std::vector<std::string> namesOfData() const;
    /// The phase in the television's record of the run; empty without a record.
    std::string recordedPhase() const;

    std::filesystem::path television() const { return place_ / "tv"; }
    std::filesystem::path stick() const { return place_ / "stick"; }

 private:
    Finished inside(const std::vector<std::string>& command) const;

    TemporaryDirectory place_;
};

/// The places of files that matter: the stick, and what the television keeps.
std::vector<std::string> filesThatMatter(const Bench& bench);

/// Calls `visit` with each number below `count`, at least two in parallel.
void inParallel(std::size_t count, const std::function<void(std::size_t)>& visit);

/// At most `most` numbers from 1 to `count`, spread evenly. A single one is in the middle.
std::vector<std::size_t> spread(std::size_t count, std::size_t most);

/// The number of points of a kind to try: `shortForm` in the short form; in the long form all, or the value
/// of VX_SWEEP_MOST.
std::size_t mostPoints(std::size_t shortForm);

}  // namespace vxtest
