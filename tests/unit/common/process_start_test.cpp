#include "common/process_start.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>

#include "tests/unit/cloning_app/test_folder.h"
#include "tests/unit/common/own_process.h"

namespace vxcommon {
namespace {

TEST(ProcessStartTest, closedStandardDescriptorsAreTakenInEveryCombination) {
    constexpr int kCombinations = 8;
    for (int closed = 0; closed < kCombinations; ++closed) {
        const int next = inAProcess([closed] {
            for (int number = 0; number <= STDERR_FILENO; ++number) {
                if ((closed & (1 << number)) != 0) {
                    close(number);
                }
            }
            closefrom(STDERR_FILENO + 1);
            startProcess();
            return open("/dev/null", O_RDWR);
        });
        EXPECT_EQ(next, STDERR_FILENO + 1) << closed;
    }
}

TEST(ProcessStartTest, writingToAStandardDescriptorThatWasClosedFailsAsBefore) {
    const int reason = inAProcess([] {
        close(STDOUT_FILENO);
        startProcess();
        return write(STDOUT_FILENO, "x", 1) == 1 ? 0 : errno;
    });
    EXPECT_EQ(reason, EBADF);
}

/// Writes two bytes to a new file with a size limit of one byte.
int writeBeyondTheLimit(const std::string& file) {
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT, 0600);
    const rlimit one = {1, 1};
    if (setrlimit(RLIMIT_FSIZE, &one) != 0 || write(opened, "x", 1) != 1) {
        return 0;
    }
    return write(opened, "y", 1) == 1 ? 0 : errno;
}

TEST(ProcessStartTest, writeBeyondTheFileSizeLimitFailsInsteadOfEndingTheProcess) {
    const TestFolder folder;
    EXPECT_EQ(inAProcess([&] { return writeBeyondTheLimit(folder / "before"); }), -SIGXFSZ);
    EXPECT_EQ(inAProcess([&] {
                  startProcess();
                  return writeBeyondTheLimit(folder / "after");
              }),
              EFBIG);
}

TEST(ProcessStartTest, programsThatAreStartedKeepTheSignal) {
    const int ended = inAProcess([] {
        startProcess();
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_FSIZE, &none);
        execl("/bin/sh", "sh", "-c", "kill -XFSZ $$", nullptr);
        return 0;
    });
    EXPECT_EQ(ended, -SIGXFSZ);
}

}  // namespace
}  // namespace vxcommon
