#include <gtest/gtest.h>

#include "virtual_tv/session/mounts.h"

namespace vxtv {
namespace {

using Paths = std::vector<std::filesystem::path>;
const Paths kCovered = {"/opt", "/tmp", "/media"};

TEST(PathsToExpose, ofPathsOutsideAreNone) {
    EXPECT_EQ(pathsToExpose({"/home/a", "/optional/b", "/", "/var/tmp/c"}, kCovered), Paths{});
}

TEST(PathsToExpose, ofPathBelowCoveredRootIsThePath) {
    EXPECT_EQ(pathsToExpose({"/tmp/a/b"}, kCovered), Paths{"/tmp/a/b"});
}

TEST(PathsToExpose, ofCoveredRootItselfAreNone) {
    EXPECT_EQ(pathsToExpose({"/tmp", "/opt"}, kCovered), Paths{});
}

TEST(PathsToExpose, ofNestedPathsIsTheOutermost) {
    EXPECT_EQ(pathsToExpose({"/tmp/a/b", "/tmp/a", "/tmp/a/c/d"}, kCovered), Paths{"/tmp/a"});
}

TEST(PathsToExpose, ofEqualPathsIsOne) {
    EXPECT_EQ(pathsToExpose({"/opt/a", "/opt/a"}, kCovered), Paths{"/opt/a"});
}

TEST(PathsToExpose, ofNamesThatOnlyBeginAlikeAreBoth) {
    const Paths expected = {"/tmp/a", "/tmp/ab"};
    EXPECT_EQ(pathsToExpose({"/tmp/ab", "/tmp/a"}, kCovered), expected);
}

TEST(PathsToExpose, whenOneCoveredRootLiesInAnotherIsNeverARoot) {
    EXPECT_EQ(pathsToExpose({"/tmp/media"}, {"/tmp", "/tmp/media"}), Paths{});
}

TEST(PathInFolder, ofCoveredPathIsInTheDirectoryOfThatName) {
    EXPECT_EQ(pathInFolder("/media/usb/file"), "media/usb/file");
}

TEST(PathInFolder, ofUncoveredPathIsEmpty) {
    EXPECT_EQ(pathInFolder("/home/media"), "");
    EXPECT_EQ(pathInFolder("/media"), "");
}

TEST(BothNames, ofPlainPathIsOne) {
    EXPECT_EQ(bothNames("/usr/./bin/../"), Paths{"/usr"});
}

}  // namespace
}  // namespace vxtv
