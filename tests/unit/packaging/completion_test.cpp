// The completions of bash and zsh at a terminal, for the keys that a person types.

#include <gmock/gmock.h>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/process.h"
#include "tests/support/machine/temporary_directory.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/unit/packaging/shells.h"

namespace vxpages {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const std::filesystem::path kShare = VX_SHARE;

/// A line to complete, and the expected result.
struct Typed {
    std::string line;
    std::string result;
};

/// Televisions and folders whose names are no completions of others.
class Completion : public testing::Test {
 protected:
    static void SetUpTestSuite() {
        place_ = std::make_unique<vxtest::TemporaryDirectory>();
        std::filesystem::create_directories(*place_ / "stick/clone");
        std::filesystem::create_directories(*place_ / "other");
        vxtest::Program create;
        create.command = {vxtest::vxtvProgram().string(), "create", at("tv"), "--profile", "room-101"};
        const vxtest::Finished made = vxtest::run(create);
        ASSERT_EQ(made.status, 0) << made.errors;
    }
    static void TearDownTestSuite() { place_.reset(); }

    static std::string at(const std::string& name) { return (*place_ / name).string(); }

 private:
    static inline std::unique_ptr<vxtest::TemporaryDirectory> place_;
};

class BashCompletion : public Completion {
 protected:
    static std::string completed(const std::string& line) { return completedByBash(kShare, line); }
    static void expect(const std::vector<Typed>& lines) {
        for (const Typed& typed : lines) {
            EXPECT_EQ(completed(typed.line), typed.result) << typed.line;
        }
    }
};

TEST_F(BashCompletion, verbsAreOfferedForWhatTheyBeginWith) {
    expect({{"vxclone ver", "vxclone verify"},
            {"vxclone --json ba", "vxclone --json backup"},
            {"vxtv fault " + at("tv") + " ", "vxtv fault " + at("tv") + " add clear list"},
            {"vxtv fault --json " + at("tv") + " li", "vxtv fault --json " + at("tv") + " list"}});
}

TEST_F(BashCompletion, nameOfAVerbWhereAnArgumentStandsIsNoVerb) {
    expect({{"vxtv fault add li", "vxtv fault add list"},
            {"vxclone backup verify --na", "vxclone backup verify --name"}});
}

TEST_F(BashCompletion, optionsOfTheVerbAreOfferedUpToADoubleDash) {
    EXPECT_EQ(completed("vxclone restore /media/usb/clone --force"),
              "vxclone restore /media/usb/clone --force-model");
    EXPECT_THAT(completed("vxclone backup --"), AllOf(HasSubstr(" --name"), Not(HasSubstr("--force-model"))));
    EXPECT_EQ(completed("vxclone restore -- --fo"), "vxclone restore -- --fo");
}

TEST_F(BashCompletion, categoriesAreOfferedAfterEachCommaAndAfterAnEqualsSign) {
    expect({{"vxclone restore DIR --only home-m", "vxclone restore DIR --only home-menu"},
            {"vxclone restore DIR --only av,cha", "vxclone restore DIR --only av,channels"},
            {"vxclone restore DIR --only=av", "vxclone restore DIR --only=av"},
            {"vxclone restore DIR --only=set", "vxclone restore DIR --only=settings settings-keys"},
            {"vxclone restore DIR --only=av,cha", "vxclone restore DIR --only=av,channels"},
            {"vxclone restore --except=time", "vxclone restore --except=timers"}});
}

TEST_F(BashCompletion, valueIsOfferedAlsoWhereTheShellPartsNoWords) {
    EXPECT_EQ(completedByBash(kShare, "vxclone restore DIR --only=av,cha", " \t"),
              "vxclone restore DIR --only=av,channels");
    EXPECT_EQ(completedByBash(kShare, "vxtv fault tv add CSourceAPI::GetS", " \t"),
              "vxtv fault tv add CSourceAPI::GetSourceList");
}

TEST_F(BashCompletion, valuesOfOptionsAreOffered) {
    expect({{"vxtv create /x --profile room-102", "vxtv create /x --profile room-102"},
            {"vxtv create /x --profile=confe", "vxtv create /x --profile=conference"},
            {"vxtv run tv --isolation r", "vxtv run tv --isolation real root"},
            {"vxtv run tv --stick " + at("sti"), "vxtv run tv --stick " + at("stick")},
            {"vxtv run tv --stick=" + at("sti"), "vxtv run tv --stick=" + at("stick")}});
}

TEST_F(BashCompletion, folderIsOfferedForEachArgumentThatIsOne) {
    expect(
        {{"vxclone backup " + at("sti"), "vxclone backup " + at("stick")},
         {"vxclone backup -- " + at("sti"), "vxclone backup -- " + at("stick")},
         {"vxclone diff " + at("stick") + " " + at("oth"), "vxclone diff " + at("stick") + " " + at("other")},
         {"vxclone undo " + at("sti"), "vxclone undo " + at("sti")}});
}

TEST_F(BashCompletion, settingKeysOfTheTelevisionAreOffered) {
    const std::string key = "db/hotel/dooreye";
    for (const std::string command : {"vxtv get ", "vxtv set ", "vxtv get --json "}) {
        EXPECT_EQ(completed(command + at("tv") + " db/hotel/door"), command + at("tv") + " " + key);
    }
    EXPECT_EQ(completed("vxtv get " + at("other") + " db"), "vxtv get " + at("other") + " db");
}

TEST_F(BashCompletion, namesOfCallsApplicationsAndServicesAreOffered) {
    const std::string tv = at("tv");
    expect({{"vxtv fault tv add vconf_get_", "vxtv fault tv add vconf_get_bool vconf_get_int vconf_get_str"},
            {"vxtv fault tv add CSourceAPI::GetS", "vxtv fault tv add CSourceAPI::GetSourceList"},
            {"vxtv fault tv add CSourceAPI::Get --nt", "vxtv fault tv add CSourceAPI::Get --nth"},
            {"vxtv app start " + tv + " org.vorta.", "vxtv app start " + tv + " org.vorta.orvel-app"},
            {"vxtv services " + tv + " a", "vxtv services " + tv + " av"}});
}

TEST_F(BashCompletion, commandThatIsRunIsCompletedByItsOwn) {
    expect({{"vxtv run tv -- vxclone res", "vxtv run tv -- vxclone restore"},
            {"vxtv run tv vxclone restore --only=cha", "vxtv run tv vxclone restore --only=channels"},
            {"vxtv run tv --quiet -- mkdi", "vxtv run tv --quiet -- mkdir"},
            {"vxtv run tv -- mkdir " + at("oth"), "vxtv run tv -- mkdir " + at("other")}});
}

TEST_F(BashCompletion, keyThatHoldsACommandOfTheShellIsNotRun) {
    const std::string folder = at("answering");
    vxtest::writeFile(folder + "/vxtv", "#!/bin/sh\necho '  \"key\": \"x$(touch " + folder + "/run)\",'\n");
    std::filesystem::permissions(folder + "/vxtv", std::filesystem::perms::owner_all);
    EXPECT_THAT(completed(folder + "/vxtv get tv x"), HasSubstr("x$(touch"));
    EXPECT_FALSE(std::filesystem::exists(folder + "/run"));
}

class ZshCompletion : public Completion {
 protected:
    void SetUp() override {
        if (!isInstalled("zsh")) {
            GTEST_SKIP() << "zsh is not here";
        }
    }
    static void expect(const std::vector<Typed>& lines) {
        for (const Typed& typed : lines) {
            EXPECT_EQ(offeredByZsh(kShare, typed.line), typed.result) << typed.line;
        }
    }
};

TEST_F(ZshCompletion, verbsAreOfferedBehindTheArgumentsBeforeThem) {
    expect({{"vxclone ver", "verify"},
            {"vxclone --json ba", "backup"},
            {"vxtv fault " + at("tv") + " ", "add clear list"},
            {"vxtv fault --json " + at("tv") + " li", "list"},
            {"vxtv fault " + at("t"), "tv"}});
}

TEST_F(ZshCompletion, optionsOfTheVerbAreOfferedUpToADoubleDash) {
    expect({{"vxclone restore DIR --force", "--force-model"},
            {"vxtv fault tv add ss_read --n", "--nth"},
            {"vxtv fault tv list --js", "--json"},
            {"vxclone restore -- --fo", ""}});
}

TEST_F(ZshCompletion, valuesAreOfferedAfterEachCommaAndAfterAnEqualsSign) {
    expect({{"vxclone restore DIR --only home-m", "home-menu"},
            {"vxclone restore DIR --only av,cha", "channels"},
            {"vxclone restore DIR --only=av,cha", "channels"},
            {"vxtv create /x --profile=confe", "conference"},
            {"vxtv run tv --isolation=r", "real root"},
            {"vxtv run tv --stick=" + at("sti"), "stick"}});
}

TEST_F(ZshCompletion, namesThatTheTelevisionHasAreOffered) {
    const std::string tv = at("tv");
    expect({{"vxtv get " + tv + " db/hotel/door", "db/hotel/dooreye"},
            {"vxtv --json get " + tv + " db/hotel/door", "db/hotel/dooreye"},
            {"vxtv get --json " + tv + " db/hotel/door", "db/hotel/dooreye"},
            {"vxtv app start " + tv + " org.vorta.", "org.vorta.orvel-app"},
            {"vxtv services " + tv + " a", "av"},
            {"vxtv fault tv add CSourceAPI::GetS", "CSourceAPI::GetSourceList"}});
}

TEST_F(ZshCompletion, commandThatIsRunIsCompletedByItsOwn) {
    expect({{"vxtv run tv -- vxclone res", "restore"},
            {"vxtv run tv vxclone restore --only=cha", "channels"},
            {"vxtv run tv --quiet -- mkdi", "mkdir"}});
}

TEST_F(ZshCompletion, folderIsOfferedAlsoBehindADoubleDash) {
    expect({{"vxclone backup -- " + at("sti"), "stick"}, {"vxclone diff DIR " + at("oth"), "other"}});
}

}  // namespace
}  // namespace vxpages
