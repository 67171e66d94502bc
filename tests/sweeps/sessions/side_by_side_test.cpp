// Two `vxtv run` of one television at the same time, starting at different moments. The end of one must not
// affect the other, so each does its work or is refused because the other is working. The applications' data
// on the stick and in the television shows whether the work was done.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

#include "tests/support/machine/exit_status.h"
#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/sweeps/sweep.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

constexpr int kShortTries = 6;
constexpr int kLongTries = 500;
constexpr int kLongestPauseMs = 150;
constexpr std::array kApplications = {"org.vorta.orvel-app", "org.harbour.firstscreen"};

/// Limited by VX_SWEEP_MOST.
int triesOfEach() {
    const char* const most = std::getenv("VX_SWEEP_MOST");
    const int all = isLongForm() ? kLongTries : kShortTries;
    return most != nullptr ? std::min(all, std::atoi(most)) : all;
}

class SideBySideTest : public testing::TestWithParam<const char*> {
 protected:
    SideBySideTest() {
        const Finished made =
            run({{vxtvProgram(), "create", television_, "--profile", "room-101"}, {}, {}, {}});
        EXPECT_EQ(made.status, 0) << made.errors;
        fs::create_directory(place_ / "stick");
        EXPECT_EQ(run(session({vxcloneProgram(), "backup", kPackage})).status, ended::kDone);
        packages_ = packagesOfApplications();
        EXPECT_GT(packages_.size(), kApplications.size());
        fs::copy(television_, untouched_, fs::copy_options::recursive);
        undoTheWork();
        EXPECT_FALSE(isTheWorkDone());
    }

    Program session(std::vector<std::string> command) const {
        Program program;
        program.command = {vxtvProgram(), "run", television_, "--quiet", "--stick", place_ / "stick", "--"};
        program.command.insert(program.command.end(), command.begin(), command.end());
        program.timeLimit = std::chrono::seconds(60);
        return program;
    }
    Program clone() const { return session({vxcloneProgram(), GetParam(), kPackage}); }
    Program cloneAfter(milliseconds pause) const {
        std::string fraction = std::to_string(pause.count());
        fraction.insert(0, 3 - fraction.size(), '0');
        return session({"sh", "-c",
                        "sleep 0." + fraction + "; exec " + vxcloneProgram().string() + " " + GetParam() +
                            " " + kPackage});
    }

    milliseconds pause() { return milliseconds(std::uniform_int_distribution(0, kLongestPauseMs)(random_)); }

    /// Removes the result of the work: the package, or the data that it holds of the applications.
    void undoTheWork() const {
        if (GetParam() == kBackup) {
            fs::remove_all(place_ / "stick/clone");
            return;
        }
        for (const char* const application : kApplications) {
            writeFile(place_ / "tv/opt/usr/apps" / application / "data/pictures/spoilt.png", "spoilt");
            fs::remove(place_ / "tv/opt/usr/apps" / application / "data/hotel.db");
        }
    }

    bool isTheWorkDone() const {
        const Finished compared = run({{vxtvProgram(), "compare", television_, untouched_}, {}, {}, {}});
        return compared.status == 0 && packagesOfApplications() == packages_;
    }

    static constexpr const char* kPackage = "/media/usb/clone";
    static inline const std::string kBackup = "backup";
    TemporaryDirectory place_;
    const std::string television_ = place_ / "tv";
    const std::string untouched_ = place_ / "untouched";

 private:
    FileTree packagesOfApplications() const {
        FileTree all;
        for (const char* const application : kApplications) {
            const fs::path package = place_ / "stick/clone" / application;
            if (!fs::exists(package)) {
                continue;
            }
            for (const auto& [name, content] : snapshot(package)) {
                all[std::string(application) + "/" + name] = content;
            }
        }
        return all;
    }

    std::mt19937 random_{1};
    FileTree packages_;
};

TEST_P(SideBySideTest, endOfOneSessionTakesNothingFromTheOther) {
    SweepPoints points(std::string("side-by-side, ") + GetParam() + " beside another");
    int busy = 0;
    while (points.count() < triesOfEach() && !HasFailure()) {
        undoTheWork();
        RunningProcess one(cloneAfter(pause()));
        std::this_thread::sleep_for(pause());  // the moment is what is tried
        RunningProcess other(cloneAfter(pause()));
        const std::array both = {one.wait(), other.wait()};
        for (const Finished& ended : both) {
            EXPECT_THAT(ended.status, testing::AnyOf(ended::kDone, ended::kBusy))
                << ended.output << ended.errors;
            busy += ended.status == ended::kBusy ? 1 : 0;
        }
        EXPECT_TRUE(both[0].status == ended::kDone || both[1].status == ended::kDone);
        EXPECT_TRUE(isTheWorkDone());
        EXPECT_EQ(snapshot(fs::path(television_) / "run"), FileTree());
        points.tried();
        points.note("one found the other at work at " + std::to_string(busy));
    }
    EXPECT_GT(busy, 0) << "the two never met";
}

TEST_P(SideBySideTest, killOfOneSessionTakesNothingFromTheOther) {
    SweepPoints points(std::string("side-by-side, ") + GetParam() + " beside one that is killed");
    while (points.count() < triesOfEach() && !HasFailure()) {
        undoTheWork();
        RunningProcess bystander(session({"sleep", "60"}));
        std::this_thread::sleep_for(pause());  // the moment is what is tried
        RunningProcess worker(clone());
        std::this_thread::sleep_for(pause());
        bystander.signal(SIGKILL);
        bystander.wait();
        const Finished ended = worker.wait();
        EXPECT_EQ(ended.status, ended::kDone) << ended.output << ended.errors;
        EXPECT_TRUE(isTheWorkDone());
        points.tried();
    }
}

INSTANTIATE_TEST_SUITE_P(Verbs, SideBySideTest, testing::Values("backup", "restore"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace vxtest
