#include "common/file_writing.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
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

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

class PutInPlace : public testing::Test {
 protected:
    ~PutInPlace() override { fs::remove_all(folder_); }

    fs::path make(const std::string& name, const std::string& content) const {
        std::ofstream(folder_ / name) << content;
        return folder_ / name;
    }
    fs::path folder() const { return folder_; }
    Files content() const {
        Files files;
        for (const auto& entry : fs::directory_iterator(folder_)) {
            std::ifstream file(entry.path());
            files[entry.path().filename()] = {std::istreambuf_iterator<char>(file), {}};
        }
        return files;
    }

 private:
    static fs::path makeFolder() {
        std::string pattern = (fs::temp_directory_path() / "vx-placing-XXXXXX").string();
        return mkdtemp(pattern.data());
    }

    fs::path folder_ = makeFolder();
};

TEST_F(PutInPlace, freeNameIsTaken) {
    EXPECT_EQ(putInPlace(make("new", "1"), folder() / "it", {Existing::Refuse}), 0);
    EXPECT_EQ(content(), (Files{{"it", "1"}}));
}

TEST_F(PutInPlace, takenNameIsRefusedReplacedOrExchanged) {
    const fs::path target = make("it", "old");
    EXPECT_EQ(putInPlace(make("new", "1"), target, {Existing::Refuse, WithoutRefusal::Link}), EEXIST);
    EXPECT_EQ(content(), (Files{{"it", "old"}, {"new", "1"}}));
    EXPECT_EQ(putInPlace(folder() / "new", target, {Existing::Exchange}), 0);
    EXPECT_EQ(content(), (Files{{"it", "1"}, {"new", "old"}}));
    EXPECT_EQ(putInPlace(folder() / "new", target, {Existing::Replace}), 0);
    EXPECT_EQ(content(), (Files{{"it", "old"}}));
}

TEST_F(PutInPlace, exchangeWithNothingAndMissingSourceGiveTheirReason) {
    EXPECT_EQ(putInPlace(make("new", "1"), folder() / "it", {Existing::Exchange}), ENOENT);
    EXPECT_EQ(putInPlace(folder() / "absent", folder() / "it", {Existing::Replace}), ENOENT);
}

TEST_F(PutInPlace, fileBesideIsPrivateAndGoesUnlessItIsPutInPlace) {
    {
        const Beside dropped = Beside::file(folder() / "it");
        EXPECT_EQ(dropped.refused(), 0);
        EXPECT_EQ(dropped.write("half"), 0);
        EXPECT_EQ(fs::status(dropped.path()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    }
    EXPECT_TRUE(content().empty());
    {
        Beside kept = Beside::file(folder() / "it");
        EXPECT_EQ(kept.write("whole"), 0);
        EXPECT_EQ(kept.putInPlace({}), 0);
    }
    EXPECT_EQ(content(), (Files{{"it", "whole"}}));
}

TEST_F(PutInPlace, refusedFolderBesideGoesWithItsContent) {
    const fs::path target = make("it", "old");
    {
        Beside beside = Beside::folder(target);
        EXPECT_EQ(fs::status(beside.path()).permissions(), fs::perms::owner_all);
        std::ofstream(beside.path() / "inside") << "1";
        EXPECT_EQ(beside.putInPlace({}), EEXIST);
    }
    EXPECT_EQ(content(), (Files{{"it", "old"}}));
}

TEST_F(PutInPlace, exchangedOldFileGoesWithTheOneBeside) {
    const fs::path target = make("it", "old");
    {
        Beside beside = Beside::file(target);
        EXPECT_EQ(beside.write("new"), 0);
        EXPECT_EQ(beside.putInPlace({Existing::Exchange}), 0);
    }
    EXPECT_EQ(content(), (Files{{"it", "new"}}));
}

TEST_F(PutInPlace, missingParentFolderIsTheReason) {
    Beside beside = Beside::file(folder() / "absent" / "it");
    EXPECT_EQ(beside.refused(), ENOENT);
    EXPECT_EQ(beside.write("x"), ENOENT);
    EXPECT_EQ(Beside::folder(folder() / "absent" / "it").refused(), ENOENT);
}

}  // namespace
}  // namespace vxcommon
