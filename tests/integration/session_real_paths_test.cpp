#include <csignal>

#include "tests/integration/session_test.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// /opt and /media are the test program's own, so the machine's own paths are free to use.
class SessionOnRealPaths : public SessionTest {
 protected:
    SessionOnRealPaths() {
        writeFile(television.opt() / "shelf/own", "of the television");
        before_ = snapshot("/opt");
    }
    ~SessionOnRealPaths() override {
        EXPECT_EQ(snapshot("/opt"), before_) << "the session left something in /opt";
        EXPECT_TRUE(fs::is_empty("/media")) << "the session left something in /media";
    }

    Program real(std::vector<std::string> command, std::vector<std::string> options = {}) const {
        options.insert(options.end(), {"--isolation", "real"});
        return inTelevision(television.root(), std::move(command), options);
    }
    Program staying() const { return real({"sh", "-c", "echo up; sleep 1000 & wait"}); }

 private:
    FileTree before_;
};

TEST_F(SessionOnRealPaths, commandSeesTheTelevision) {
    const auto seen = run(real({"cat", "/opt/shelf/own"}));
    EXPECT_EQ(seen.output, "of the television") << seen.errors;
}

TEST_F(SessionOnRealPaths, stickIsSeenAndGoesWithTheSession) {
    writeFile(place / "stick/file", "on the stick");
    const auto seen = run(real({"cat", "/media/usb/file"}, {"--stick", place / "stick"}));
    EXPECT_EQ(seen.output, "on the stick") << seen.errors;
    EXPECT_TRUE(fs::is_empty(television.media()));
}

TEST_F(SessionOnRealPaths, foreignEntryIsRefusedAndNamed) {
    writeFile("/opt/shelf/of", "the machine");
    const auto refused = run(real({"true"}));
    EXPECT_EQ(readFile("/opt/shelf/of"), "the machine");
    fs::remove_all("/opt/shelf");
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("'/opt/shelf'"));
}

TEST_F(SessionOnRealPaths, foreignLinkIsRefusedAndKept) {
    fs::create_directory_symlink("/usr", "/opt/shelf");
    const auto refused = run(real({"true"}));
    EXPECT_EQ(fs::read_symlink("/opt/shelf"), "/usr");
    fs::remove("/opt/shelf");
    EXPECT_EQ(refused.status, 2);
}

TEST_F(SessionOnRealPaths, secondTelevisionIsRefused) {
    createTelevision(place / "second");
    RunningProcess first(staying());
    ASSERT_TRUE(first.waitForOutput("up"));
    const auto refused = run(inTelevision(place / "second", {"true"}, {"--isolation", "real"}));
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, HasSubstr("end it first"));
    first.signal(SIGTERM);
    first.wait();
}

TEST_F(SessionOnRealPaths, leftoversOfAKilledSessionAreReplaced) {
    createTelevision(place / "second");
    RunningProcess killed(real({"sh", "-c", "echo up; sleep 1000"}, {"--stick", place.path()}));
    ASSERT_TRUE(killed.waitForOutput("up"));
    killed.signal(SIGKILL);
    killed.wait();
    ASSERT_TRUE(fs::is_symlink("/opt/shelf"));
    ASSERT_TRUE(fs::is_symlink("/media/usb"));
    const auto next = run(inTelevision(place / "second", {"ls", "-A", "/media"}, {"--isolation", "real"}));
    EXPECT_EQ(next.output, "") << next.errors;
    EXPECT_EQ(next.status, 0) << next.errors;
}

}  // namespace
}  // namespace vxtest
