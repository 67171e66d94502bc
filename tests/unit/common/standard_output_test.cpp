#include "common/standard_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <string>
#include <thread>

#include "tests/unit/cloning_app/test_folder.h"
#include "tests/unit/common/own_process.h"

namespace vxcommon {
namespace {

constexpr std::size_t kMoreThanIsHeld = 100'000;

/// The result of `finish` after the text was written to the descriptor, in single characters or at once.
int finishAfter(int descriptor, const std::string& text, bool inPieces = false) {
    return inAProcess([&] {
        signal(SIGPIPE, SIG_IGN);
        dup2(descriptor, STDOUT_FILENO);
        StandardOutput output;
        for (std::size_t index = 0; inPieces && index < text.size(); ++index) {
            std::cout << text[index];
        }
        if (!inPieces) {
            std::cout << text << std::flush;
        }
        return output.finish();
    });
}

TEST(StandardOutputTest, textOfAnyLengthIsWrittenWholeAndNothingFailed) {
    for (const bool inPieces : {false, true}) {
        for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kMoreThanIsHeld}) {
            const TestFolder folder;
            std::string text(size, 'x');
            for (std::size_t index = 0; index < size; ++index) {
                text[index] = static_cast<char>('a' + index % 26);
            }
            const int file = open((folder / "output").c_str(), O_WRONLY | O_CREAT, 0600);
            EXPECT_EQ(finishAfter(file, text, inPieces), 0);
            close(file);
            EXPECT_EQ(readFile(folder / "output"), text);
        }
    }
}

TEST(StandardOutputTest, fullDiskIsTheReasonHoweverMuchIsWritten) {
    const int full = open("/dev/full", O_WRONLY);
    for (const bool inPieces : {false, true}) {
        EXPECT_EQ(finishAfter(full, "x", inPieces), ENOSPC);
        EXPECT_EQ(finishAfter(full, std::string(kMoreThanIsHeld, 'x'), inPieces), ENOSPC);
    }
    EXPECT_EQ(finishAfter(full, ""), 0);
    close(full);
}

TEST(StandardOutputTest, closedPipeIsTheReason) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    EXPECT_EQ(finishAfter(ends[1], "x"), EPIPE);
    close(ends[1]);
}

TEST(StandardOutputTest, firstReasonStaysWhenTheOutputIsGoodLater) {
    const int reason = inAProcess([] {
        StandardOutput output;
        dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO);
        std::cout << "x" << std::flush;
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        std::cout.clear();
        std::cout << "y" << std::flush;
        return output.finish();
    });
    EXPECT_EQ(reason, ENOSPC);
}

TEST(StandardOutputTest, outputThatDoesNotWaitIsWaitedFor) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    std::thread reader([&ends] {
        std::array<char, 512> some{};
        std::size_t all = 0;
        while (all < kMoreThanIsHeld) {
            const ssize_t got = read(ends[0], some.data(), some.size());
            all += got > 0 ? static_cast<std::size_t>(got) : 0;
        }
    });
    EXPECT_EQ(finishAfter(ends[1], std::string(kMoreThanIsHeld, 'x')), 0);
    reader.join();
    close(ends[0]);
    close(ends[1]);
}

TEST(StandardOutputTest, afterItsLifeTheStreamIsWhatItWas) {
    std::streambuf* const before = std::cout.rdbuf();
    {
        const StandardOutput output;
        EXPECT_NE(std::cout.rdbuf(), before);
    }
    EXPECT_EQ(std::cout.rdbuf(), before);
}

}  // namespace
}  // namespace vxcommon
