#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"

namespace vxtest {

/// Which system calls of a program are broken, and how.
struct BreakPoint {
    std::string how;                 ///< "count", "interrupt", "kill", "short", or the name of an error
    std::string calls;               ///< the calls that count, separated by commas; empty: all
    std::vector<std::string> below;  ///< only calls on files there; empty: all
    std::size_t nth = 1;
    bool fromThenOn = false;

    /// For the sentence of a failing test.
    std::string text() const;
};

/// A call that was broken, or counted: its name and the files that it names.
struct CountedCall {
    std::string name;
    std::string paths;
};

struct BrokenRun {
    Finished finished;
    std::vector<CountedCall> calls;
};

/// A television and a stick that a test may spoil, copied from others.
class Bench {
 public:
    Bench(const std::filesystem::path& television, const std::filesystem::path& stick);

    Finished vxclone(const std::vector<std::string>& arguments) const;
    /// vxclone, with one of its system calls broken.
    BrokenRun broken(const std::vector<std::string>& arguments, const BreakPoint& point) const;
    /// Whether `vxtv compare` finds no difference to another television. Result: what it says; empty: none.
    std::string differenceTo(const std::filesystem::path& other) const;
    /// The names at the top of the stick, and of the application's data on the television.
    std::vector<std::string> namesOnStick() const;
    std::vector<std::string> namesOfData() const;
    /// The phase of the run that the television records; empty where there is no record.
    std::string recordedPhase() const;

    std::filesystem::path television() const { return place_ / "tv"; }
    std::filesystem::path stick() const { return place_ / "stick"; }

 private:
    Finished inside(const std::vector<std::string>& command) const;

    TemporaryDirectory place_;
};

/// Where the calls lie that touch the stick or what the television keeps.
std::vector<std::string> filesThatMatter(const Bench& bench);

/// Calls `visit` with each number below `count`, two or more at a time.
void inParallel(std::size_t count, const std::function<void(std::size_t)>& visit);

/// At most `most` numbers of 1 to `count`, evenly spread; a single one is the one in the middle.
std::vector<std::size_t> spread(std::size_t count, std::size_t most);

/// How many points of a kind are tried: so many in the short form; in the long one all, or as many as the
/// variable VX_SWEEP_MOST says.
std::size_t mostPoints(std::size_t shortForm);

}  // namespace vxtest
