#include "tests/integration/session_test.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

/// A copy of this build below /tmp, as if somebody had checked it out there, with everything else beside it.
class CheckoutInTmp : public testing::TestWithParam<const char*> {
 protected:
    CheckoutInTmp() {
        fs::create_directories(checkout / "bin");
        fs::copy_file(vxtvProgram(), checkout / "bin/vxtv");
        if (fs::exists(libraryFolder()))
            fs::copy(libraryFolder(), checkout / "lib", fs::copy_options::recursive);
        writeFile(checkout / "work/tool/say", "#!/bin/sh\ncat \"$1\"\n");
        fs::permissions(checkout / "work/tool/say", fs::perms(0755));
        writeFile(checkout / "work/near", "near");
    }

    Program session(const fs::path& television, std::vector<std::string> command) const {
        auto program = inTelevision(television, std::move(command), {"--isolation", GetParam()});
        program.command.front() = checkout / "bin/vxtv";
        program.workingDirectory = checkout / "work";
        return program;
    }

    TemporaryDirectory place;
    fs::path checkout = place / "checkout";
};

TEST_P(CheckoutInTmp, everythingNeededIsSeen) {
    const vxtv::Folder television(place / "televisions/tv");
    createTelevision(television.root());
    const auto before = surroundings(television);
    const auto said = run(session(television.root(), {"./tool/say", "near"}));
    EXPECT_EQ(said.output, "near") << said.errors;
    const auto nested = session(television.root(), {checkout / "bin/vxtv", "--version"});
    EXPECT_EQ(run(nested).status, 0) << "vxtv itself is not seen inside";
    EXPECT_EQ(surroundings(television), before);
}

TEST_P(CheckoutInTmp, televisionInsideTheCheckoutIsSeen) {
    const vxtv::Folder television(checkout / "work/tv");
    createTelevision(television.root());
    const auto before = surroundings(television);
    const auto said = run(session(television.root(), {"test", "-e", television.database()}));
    EXPECT_EQ(said.status, 0) << said.errors;
    EXPECT_EQ(surroundings(television), before);
}

TEST_P(CheckoutInTmp, commandIsSeenThroughALink) {
    const vxtv::Folder television(place / "tv");
    createTelevision(television.root());
    TemporaryDirectory elsewhere;
    fs::create_symlink(checkout / "work/tool/say", elsewhere / "linked");
    const auto said = run(session(television.root(), {elsewhere / "linked", "near"}));
    EXPECT_EQ(said.output, "near") << said.errors;
}

TEST_P(CheckoutInTmp, otherThingsInTmpStayHidden) {
    const vxtv::Folder television(place / "televisions/tv");
    createTelevision(television.root());
    writeFile(place / "secret", "of the machine");
    EXPECT_EQ(run(session(television.root(), {"test", "-e", place / "secret"})).status, 1);
}

TEST_P(CheckoutInTmp, commandDirectlyInTmpIsExplained) {
    const vxtv::Folder television(place / "tv");
    createTelevision(television.root());
    fs::copy_file(checkout / "work/tool/say", "/tmp/say");
    const auto refused = run(session(television.root(), {"/tmp/say", "near"}));
    fs::remove("/tmp/say");
    EXPECT_EQ(refused.status, 127);
    EXPECT_THAT(refused.errors, testing::HasSubstr("in a folder of its own below them"));
}

TEST_P(CheckoutInTmp, filledFolderOfTheTelevisionInTheWayIsNamed) {
    const vxtv::Folder television(place / "tv");
    createTelevision(television.root());
    const auto inTheWay = television.root() / checkout.relative_path();
    writeFile(inTheWay / "file", "the television's own");
    const auto refused = run(session(television.root(), {"true"}));
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.errors, testing::HasSubstr(inTheWay.string()));
}

INSTANTIATE_TEST_SUITE_P(Isolation, CheckoutInTmp, testing::Values("auto", "user"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace
}  // namespace vxtest
