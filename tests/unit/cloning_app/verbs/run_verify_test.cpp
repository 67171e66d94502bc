#include <gmock/gmock.h>

#include <csignal>

#include "tests/unit/cloning_app/run_test.h"
#include "tests/unit/cloning_app/sealed_package.h"

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RunVerifyTest : public RunTest {
 protected:
    RunVerifyTest() {
        writeFile(root_ / "stale", "x");
        writeWholePackage(package_);
        sealFolder(package_);
    }

    Result<Report> verify() { return runVerify(context(), package_); }

    /// The status of a verification, which must leave the stick and the television's clone folder unchanged.
    int status() {
        const auto before = contentOf(package_);
        const auto report = verify();
        EXPECT_EQ(contentOf(package_), before);
        EXPECT_EQ(contentOf(root_), (std::map<std::string, std::string>{{"stale", "x"}}));
        EXPECT_EQ(engine_.runs, 0);
        return conclude(report, view_);
    }
};

TEST_F(RunVerifyTest, goodPackageEndsWithZeroAndSaysSo) {
    EXPECT_EQ(status(), 0);
    EXPECT_THAT(view_.ended->closing,
                ElementsAre(HasSubstr("fits this television and is unaltered."), HasSubstr("Digest ")));
    EXPECT_EQ(view_.ended->checks.size(), 5U);
    EXPECT_EQ(view_.ended->digest.size(), 64U);
}

TEST_F(RunVerifyTest, statusIsThatOfTheGravestFinding) {
    FakeSystemInfo::instance().model = "VX75C2";
    EXPECT_EQ(status(), 4);
    writeFile(package_ / "vconf/Vconf.json", "[]");
    EXPECT_EQ(status(), 5);
    engine_.key = false;
    EXPECT_EQ(status(), 7);
    EXPECT_EQ(view_.ended->closing.size(), 5U);
    std::filesystem::remove(package_ / "validate.txt");
    EXPECT_EQ(status(), 3);
    EXPECT_THAT(view_.ended->closing.at(0), HasSubstr("validate.txt"));
    EXPECT_EQ(view_.ended->closing.size(), 6U);
}

TEST_F(RunVerifyTest, damagedSettingsOfASealedPackageAreAltered) {
    writeFile(package_ / "vconf/Vconf.json", "{\"a");
    EXPECT_EQ(status(), 5);
}

TEST_F(RunVerifyTest, packageKeyThatIsMissingIsSeven) {
    FakeSecureStorage::instance().packageKey.reset();
    EXPECT_EQ(status(), 7);
    EXPECT_THAT(view_.ended->closing.at(0), HasSubstr("no package key"));
}

TEST_F(RunVerifyTest, packageOfAnotherToolIsGood) {
    sealFolderWithoutManifest(package_);
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(view_.ended->digest, "");
}

TEST_F(RunVerifyTest, packageThatLacksSomethingIsGoodAndNotComplete) {
    std::filesystem::remove(package_ / "factory.backup");
    writeFile(package_ / "vconf/Vconf.json", wholeSettings({{"db/hotel/dooreye", ""}}));
    sealFolder(package_);
    EXPECT_EQ(status(), 1);
    EXPECT_THAT(
        view_.ended->closing,
        ElementsAre(HasSubstr("fits this television and is unaltered, but is not complete."),
                    "The package is not complete. It lacks: factory, settings-keys (db/hotel/dooreye).",
                    HasSubstr("Digest ")));
    EXPECT_EQ(view_.ended->lacks,
              (std::vector<Lack>{{VXCLONE_FACTORY_SETTINGS}, {VXCLONE_VCONF_DATA, "db/hotel/dooreye"}}));
}

TEST_F(RunVerifyTest, packageThatLacksOnlyWhatWasDeclaredIsGood) {
    std::filesystem::remove(package_ / "factory.backup");
    PackageOrigin origin = originHere();
    origin.lacks = {{"factory", "", true}};
    sealFolder(package_, origin);
    EXPECT_EQ(status(), 0);
    EXPECT_THAT(view_.ended->closing,
                testing::Contains("The package holds none of these, as was declared: factory."));
}

TEST_F(RunVerifyTest, manifestThatContradictsThePackageIsAltered) {
    PackageOrigin origin = originHere();
    origin.lacks = {{"factory", "", true}};
    sealFolder(package_, origin);
    EXPECT_EQ(status(), 5);
    EXPECT_THAT(view_.ended->closing.at(0),
                HasSubstr("manifest.json: it lists factory as lacking, and holds it"));
    std::filesystem::remove(package_ / "factory.backup");
    origin.lacks.emplace();
    sealFolder(package_, origin);
    EXPECT_EQ(status(), 5);
    EXPECT_THAT(view_.ended->closing.at(0),
                HasSubstr("it does not list factory as lacking, and does not hold it"));
}

TEST_F(RunVerifyTest, everyFileThatIsNotAsItWasIsAFinding) {
    for (int file = 0; file < 30; ++file) {
        writeFile(package_ / ("added" + std::to_string(file)), "x");
    }
    EXPECT_EQ(status(), 5);
    EXPECT_EQ(view_.ended->checks.size(), 35U);
    EXPECT_THAT(view_.ended->closing.at(0), HasSubstr("and 27 more"));
    const std::string table = tableOf({}, view_.ended->checks).render({});
    EXPECT_THAT(table, HasSubstr("and 10 more; --json names all"));
    EXPECT_THAT(table, testing::Not(HasSubstr("added: added9")));
}

TEST_F(RunVerifyTest, folderThatIsNoPackageLeavesTheCloneFolderAlone) {
    std::filesystem::remove_all(package_);
    writeFile(package_ / "photo.jpg", "x");
    EXPECT_EQ(conclude(verify(), view_), 3);
    EXPECT_TRUE(std::filesystem::exists(root_ / "stale"));
}

TEST_F(RunVerifyTest, unsafeEntryIsRefusedWithNothingStaged) {
    std::filesystem::create_symlink("/etc/passwd", package_ / "link");
    EXPECT_EQ(conclude(verify(), view_), 3);
    EXPECT_EQ(view_.failure->code, ErrorCode::UnsafeEntry);
}

TEST_F(RunVerifyTest, libraryThatBreaksOffLeavesTheCloneFolderAsItWas) {
    engine_.identityAnswer = failure(ErrorCode::Internal, "broke off");
    EXPECT_EQ(status(), 10);
}

TEST_F(RunVerifyTest, stopEndsItWithTheSignal) {
    stop_.raise(SIGINT);
    EXPECT_EQ(status(), 8);
}

TEST_F(RunVerifyTest, televisionsSettingsAreNotTouched) {
    verify();
    EXPECT_EQ(std::get<int>(*FakeSettingsStore::instance().get(kProgressKey)), 100);
}

TEST_F(RunVerifyTest, sidecarsThatAComputerLeftDoNotMatter) {
    writeFile(package_ / ".DS_Store", "x");
    writeFile(package_ / "vconf/._Vconf.json", "x");
    writeFile(package_ / "System Volume Information/x", "x");
    EXPECT_EQ(status(), 0);
}

}  // namespace
}  // namespace vxclone
