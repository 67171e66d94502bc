#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/sweeps/calls/expected_verdict.h"
#include "tests/unit/engine_test.h"
#include "tests/unit/stepped_clock.h"

namespace vxtest {

inline constexpr const char* kBootLogo = "/tmp/area/boot";
inline constexpr const char* kMbrLogo = "/tmp/area/mbr";
inline constexpr const char* kHomeMenu = "/tmp/area/home";

/// A platform call of a run.
struct MadeCall {
    std::size_t number = 0;  ///< from 0
    std::string name;
    std::string arguments;
};

/// A whole backup or restore on a scripted television with two cooperating applications and data in every
/// category. The two threads of the run take turns, so the calls have the same order every time: first those
/// of the applications, then those of the services.
class SweptRun : public EngineTest {
 public:
    /// Changes a call: the status to return instead of doing its work, or empty.
    using Tamper = std::function<std::optional<int>(SweptRun& run, const MadeCall& call)>;

    explicit SweptRun(Direction direction);
    ~SweptRun() override;

    /// Runs, and expects that the run ends, reports exactly what the rules say, and leaves nothing behind,
    /// for any results of the television. If a run does not end, the program ends with the name of the point.
    void run(const std::string& point, Tamper tamper);
    /// The calls of the run.
    const std::vector<MadeCall>& calls() const { return calls_; }

    // For `Tamper`.

    ScriptedPlatform& television() { return tv; }
    ExpectedVerdict& verdict() { return verdict_; }
    Direction direction() const { return direction_; }
    /// The setting is changed from outside, so its final value is not checked.
    void setFromOutside(const std::string& key, Setting value);

 private:
    void TestBody() override {}
    void preparePackage() const;
    std::optional<int> judge(const std::string& name, const std::string& arguments, const Tamper& tamper);
    void expectSnapshot() const;
    void expectRestored() const;

    Direction direction_;
    ExpectedVerdict verdict_;
    SteppedClock clock_;
    std::size_t tasksBefore_;
    std::mutex mutex_;
    std::vector<MadeCall> calls_;
    std::set<std::string> setFromOutside_;
};

}  // namespace vxtest
