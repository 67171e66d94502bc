#include "common/file_writing.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <thread>

#include "common/descriptor.h"

namespace vxcommon {
namespace {

TEST(WriteAndFlush, refusedWriteGivesItsReason) {
    const Descriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    EXPECT_EQ(writeAndFlush(full.get(), "abc"), ENOSPC);
    EXPECT_EQ(writeAndFlush(-1, "abc"), EBADF);
}

TEST(WriteAndFlush, refusedFlushGivesItsReason) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const Descriptor reader(ends[0]);
    const Descriptor writer(ends[1]);
    EXPECT_EQ(writeAndFlush(writer.get(), "abc"), EINVAL);
    char text[4] = {};
    EXPECT_EQ(read(reader.get(), text, sizeof text), 3);
    EXPECT_STREQ(text, "abc");
}

TEST(WriteAndFlush, writeThatTakesSeveralCallsIsDoneToItsEnd) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const Descriptor reader(ends[0]);
    Descriptor writer(ends[1]);
    const std::string bytes(1U << 20U, 'x');
    std::string seen;
    std::thread reading([&] {
        char part[4096];
        for (ssize_t count = 0; (count = read(reader.get(), part, sizeof part)) > 0;) {
            seen.append(part, static_cast<std::size_t>(count));
        }
    });
    EXPECT_EQ(writeAndFlush(writer.get(), bytes), EINVAL);  // a pipe cannot be flushed
    writer.close();
    reading.join();
    EXPECT_EQ(seen, bytes);
}

TEST(MeansNoRoom, fullDiskAndFullQuotaDoAndNothingElse) {
    EXPECT_TRUE(meansNoRoom(ENOSPC));
    EXPECT_TRUE(meansNoRoom(EDQUOT));
    EXPECT_FALSE(meansNoRoom(EIO));
    EXPECT_FALSE(meansNoRoom(0));
}

}  // namespace
}  // namespace vxcommon
