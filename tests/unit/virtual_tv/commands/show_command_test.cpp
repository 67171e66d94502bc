// `vxtv show`, as a user sees it.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/machine/process.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using vxtest::Finished;

class ShowCommand : public testing::Test {
 protected:
    Finished show(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {vxtest::vxtvProgram().string(), "show", place_});
        vxtest::Program program;
        program.command = std::move(arguments);
        return vxtest::run(program);
    }

    test::TestFolder folder_;
    const std::string place_ = folder_.path() / "tv";
    const std::string file_ = folder_.path() / "page.html";
    Television television_ = test::makeTelevision(place_);
};

TEST_F(ShowCommand, pageOnNoTerminalHasNoColours) {
    const Finished done = show({});
    EXPECT_EQ(0, done.status) << done.errors;
    EXPECT_NE(std::string::npos, done.output.find("VX55"));
    EXPECT_EQ(std::string::npos, done.output.find('\x1b'));
}

TEST_F(ShowCommand, htmlPageIsWrittenForItsOwnerAlone) {
    const Finished done = show({"--html", file_});
    EXPECT_EQ(0, done.status) << done.errors;
    const std::string page = test::readFile(file_);
    EXPECT_EQ(0U, page.rfind("<!DOCTYPE html>", 0));
    EXPECT_NE(std::string::npos, page.find("</html>"));
    struct stat status {};
    ASSERT_EQ(0, stat(file_.c_str(), &status));
    EXPECT_EQ(0600U, status.st_mode & 0777U);
}

TEST_F(ShowCommand, fileThatIsThereStaysWithoutForce) {
    test::writeFile(file_, "mine");
    const Finished refused = show({"--html", file_});
    EXPECT_EQ(2, refused.status);
    EXPECT_NE(std::string::npos, refused.errors.find("--force"));
    EXPECT_EQ("mine", test::readFile(file_));
    EXPECT_EQ(0, show({"--html", file_, "--force"}).status);
    EXPECT_EQ(0U, test::readFile(file_).rfind("<!DOCTYPE html>", 0));
}

TEST_F(ShowCommand, whatIsNoPlainFileStaysEvenWithForce) {
    fs::create_symlink(folder_.path() / "nowhere", file_);
    const Finished refused = show({"--html", file_, "--force"});
    EXPECT_EQ(2, refused.status);
    EXPECT_NE(std::string::npos, refused.errors.find("no plain file"));
    EXPECT_TRUE(fs::is_symlink(file_));
}

TEST_F(ShowCommand, fileThatCannotBeWrittenIsAnErrorAndLeavesNothing) {
    const Finished refused = show({"--html", folder_.path() / "none/page.html"});
    EXPECT_EQ(2, refused.status);
    EXPECT_NE(std::string::npos, refused.errors.find("none/page.html"));
    EXPECT_FALSE(fs::exists(folder_.path() / "none"));
}

TEST_F(ShowCommand, whatIsNoTelevisionAndForceAloneAreRefused) {
    EXPECT_EQ(2, show({"--force"}).status);
    EXPECT_EQ(2, show({"--html", ""}).status);
    fs::remove_all(place_);
    EXPECT_EQ(2, show({"--html", file_}).status);
    EXPECT_FALSE(fs::exists(file_));
}

}  // namespace
}  // namespace vxtv
