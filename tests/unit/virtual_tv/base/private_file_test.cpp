#include "virtual_tv/base/private_file.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/television/announcement.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class PrivateFile : public testing::Test {
 protected:
    std::ptrdiff_t entries() const {
        return std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator());
    }

    test::TestFolder folder_;
    fs::path file_ = folder_.path() / "file";
};

TEST_F(PrivateFile, writtenFileIsWholeAndForTheOwnerAlone) {
    const std::string bytes(100000, 'x');
    ASSERT_TRUE(writePrivateFile(file_, bytes, Existing::Refuse));
    struct stat status {};
    ASSERT_EQ(stat(file_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, mode_t{0600});
    EXPECT_EQ(readPlainFile(file_, 200000).value(), bytes);
    EXPECT_EQ(readPlainFile(file_, 10).value(), std::string(10, 'x'));
    EXPECT_EQ(entries(), 1);
}

TEST_F(PrivateFile, existingFileIsKeptUnlessItMayBeReplaced) {
    test::writeFile(file_, "before");
    const auto refused = writePrivateFile(file_, "after", Existing::Refuse);
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().code, ErrorCode::AlreadyExists);
    EXPECT_NE(refused.error().sentence.find(file_.string()), std::string::npos);
    EXPECT_EQ(test::readFile(file_), "before");
    ASSERT_TRUE(writePrivateFile(file_, "after", Existing::Replace));
    EXPECT_EQ(test::readFile(file_), "after");
    EXPECT_EQ(entries(), 1);
}

TEST_F(PrivateFile, failedWriteLeavesNothing) {
    EXPECT_EQ(writePrivateFile(folder_.path() / "none/file", "x", Existing::Refuse).error().code,
              ErrorCode::Io);
    EXPECT_EQ(writePrivateFile("/dev/full/file", "x", Existing::Refuse).error().code, ErrorCode::Io);
    fs::create_directory(file_);
    EXPECT_EQ(writePrivateFile(file_, "x", Existing::Replace).error().code, ErrorCode::Io);
    EXPECT_EQ(entries(), 1);
}

TEST_F(PrivateFile, socketIsNoPlainFile) {
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, file_.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    const auto bytes = readPlainFile(file_, 10);
    close(listener);
    ASSERT_FALSE(bytes);
    EXPECT_EQ(bytes.error().kind, ReadTrouble::Kind::NoPlainFile);
}

TEST_F(PrivateFile, readyMarkComesAndGoes) {
    ASSERT_TRUE(raiseReadyMark(file_));
    EXPECT_TRUE(fs::is_regular_file(file_));
    EXPECT_TRUE(raiseReadyMark(file_));
    lowerReadyMark(file_);
    EXPECT_FALSE(fs::exists(file_));
}

TEST_F(PrivateFile, readyMarkOfSomebodyElseStays) {
    test::writeFile(file_, "");
    EXPECT_TRUE(raiseReadyMark(file_));
    lowerReadyMark(file_);
    EXPECT_EQ(test::readFile(file_), "");
    EXPECT_TRUE(fs::exists(file_));
}

TEST_F(PrivateFile, readyMarkThatCannotBeMadeIsAnError) {
    const auto raised = raiseReadyMark(folder_.path() / "none/mark");
    ASSERT_FALSE(raised);
    EXPECT_NE(raised.error().sentence.find("none/mark"), std::string::npos);
}

}  // namespace
}  // namespace vxtv
