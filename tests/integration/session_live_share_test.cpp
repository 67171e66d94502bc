#include <gtest/gtest.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/wait.h>

#include "tests/support/machine/temporary_directory.h"
#include "virtual_tv/process/keeper.h"
#include "virtual_tv/process/live_share.h"

namespace vxtest {
namespace {

/// Long enough that the next session arrives before the keeper checks for shares.
constexpr int kUntilTheNextCameMs = 200;

/// Starts a service that reports nothing: a keeper that ends as soon as there is no share.
pid_t forkKeeper(const vxtv::ServiceStart& start) {
    const pid_t keeper = fork();
    if (keeper == 0) {
        vxtv::becomeKeeper("keeper", {start.life, start.life, start.life, start.lock.get()});
        poll(nullptr, 0, kUntilTheNextCameMs);
        _exit(flock(vxtv::kFirstKept + 3, LOCK_EX));
    }
    return keeper;
}

class LiveShareTest : public testing::Test {
 protected:
    vxtv::LiveShare share() const {
        const std::filesystem::path run = place_.path();
        return vxtv::LiveShare({run, run / "service.lock", run / "service", "the service"});
    }

 private:
    TemporaryDirectory place_;
};

TEST_F(LiveShareTest, takeAfterAStarterWasKilledHalfWayStartsAnother) {
    const pid_t starter = fork();
    if (starter == 0) {
        const auto taken = share().take([](vxtv::ServiceStart start) -> vxtv::Result<vxtv::StartedService> {
            forkKeeper(start);
            _exit(0);
        });
        _exit(taken ? 1 : 2);
    }
    int status = -1;
    ASSERT_EQ(waitpid(starter, &status, 0), starter);
    ASSERT_EQ(status, 0);
    vxtv::LiveShare next = share();
    const auto taken = next.take([](const vxtv::ServiceStart& start) {
        return vxtv::Result<vxtv::StartedService>({"address", forkKeeper(start)});
    });
    EXPECT_TRUE(taken) << taken.error().sentence;
    EXPECT_TRUE(next);
    next.end();
}

TEST_F(LiveShareTest, joinOfAServiceThatIsNotUpTakesNone) {
    vxtv::LiveShare alone = share();
    alone.join();
    EXPECT_FALSE(alone);
}

}  // namespace
}  // namespace vxtest
