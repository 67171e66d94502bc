#include "cloning_app/check/integrity.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include "cloning_app/package/layout.h"
#include "tests/unit/cloning_app/fake_secure_storage.h"
#include "tests/unit/cloning_app/fake_system_info.h"
#include "tests/unit/cloning_app/sealed_package.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Findings = std::vector<std::pair<Subject, Finding>>;

const Findings kGood = {{Subject::Model, Finding::Same},
                        {Subject::ProductTag, Finding::Same},
                        {Subject::Tuner, Finding::Same},
                        {Subject::Manifest, Finding::Unaltered},
                        {Subject::Seal, Finding::Unaltered}};

class IntegrityTest : public testing::Test {
 protected:
    IntegrityTest() {
        FakeSystemInfo::reset();
        FakeSecureStorage::reset();
        writeFile(folder_ / "vconf/Vconf.json", "{}");
        writeFile(folder_ / "logo/deep/boot.jpg", "picture");
        writeFile(folder_ / "avoc.db", "a");
    }

    Tree tree() const { return {descriptor_.get(), folder_.path().string(), Place::Television}; }

    Result<SealedPackage> seal() {
        const auto key = PackageKey::ofTelevision();
        return sealPackage(engine_, tree(), originHere(), key.value());
    }

    std::vector<Check> examine() {
        const auto found = examinePackage(engine_, tree(), tree(), stop_);
        EXPECT_TRUE(found) << found.error().sentence;
        return found.value_or(Examination{}).checks;
    }

    static Findings findings(const std::vector<Check>& checks) {
        Findings found;
        for (const Check& check : checks) {
            found.emplace_back(check.subject, check.finding);
        }
        return found;
    }

    /// Seals a package, changes it, and expects that it is altered and that the change is named.
    void expectAltered(const std::function<void()>& change, const std::string& named) {
        ASSERT_TRUE(seal());
        change();
        const auto checks = examine();
        EXPECT_EQ(problemOf(checks), ErrorCode::Altered) << named;
        EXPECT_THAT(problemSentences(checks, "P").at(0),
                    AllOf(HasSubstr("P was altered after it was made"), HasSubstr(named)));
    }

    /// Expects no seal and none of the library's working files.
    void expectNoSeal() const {
        for (const char* const name : {"validate.txt", "validate_temp.txt", "validate.vxclone-new"}) {
            EXPECT_FALSE(std::filesystem::exists(folder_ / name)) << name;
        }
    }

    TestFolder folder_;
    const Descriptor descriptor_{open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY)};
    FakeEngine engine_;
    StopFlag stop_;
};

TEST_F(IntegrityTest, sealedPackageIsCompleteAndGood) {
    const auto sealed = seal();
    ASSERT_TRUE(sealed) << sealed.error().sentence;
    EXPECT_EQ(findings(sealed->checks), (Findings{{Subject::Identity, Finding::Recorded},
                                                  {Subject::Manifest, Finding::Recorded},
                                                  {Subject::Seal, Finding::Sealed}}));
    EXPECT_EQ(examinePackage(engine_, tree(), tree(), stop_)->digest, sealed->digest);
    EXPECT_EQ(readFile(folder_ / "ProductCloneInfo.txt"), "VX-R1-EU\nVX55R1\n3\n");
    EXPECT_TRUE(std::filesystem::exists(folder_ / "validate.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "validate_temp.txt"));
    EXPECT_EQ(findings(examine()), kGood);
}

TEST_F(IntegrityTest, bothSidesListTheSameFilesSorted) {
    writeFile(folder_ / ".DS_Store", "x");
    writeFile(folder_ / "line\nend\"", "x");
    ASSERT_TRUE(seal());
    const std::vector<std::string> sealed = engine_.sealed;
    examine();
    EXPECT_EQ(engine_.checked, sealed);
    EXPECT_THAT(sealed, ElementsAre(folder_ / "ProductCloneInfo.txt", folder_ / "avoc.db",
                                    folder_ / "line\nend\"", folder_ / "logo/deep/boot.jpg",
                                    folder_ / "manifest.json", folder_ / "vconf/Vconf.json"));
}

TEST_F(IntegrityTest, backupOfNothingIsSealedToo) {
    std::filesystem::remove_all(folder_ / "vconf");
    std::filesystem::remove_all(folder_ / "logo");
    std::filesystem::remove(folder_ / "avoc.db");
    ASSERT_TRUE(seal());
    EXPECT_EQ(findings(examine()), kGood);
}

TEST_F(IntegrityTest, examinationLeavesThePackageAsItIs) {
    ASSERT_TRUE(seal());
    const auto before = contentOf(folder_.path());
    examine();
    EXPECT_EQ(contentOf(folder_.path()), before);
}

TEST_F(IntegrityTest, leftoversOfTheLibraryAreNotSealed) {
    writeFile(folder_ / "validate_temp.txt", "old");
    std::filesystem::create_directory(folder_ / "validate.txt");
    ASSERT_TRUE(seal());
    EXPECT_EQ(findings(examine()), kGood);
}

TEST_F(IntegrityTest, everyChangeOfASealedPackageIsSeenAndNamed) {
    expectAltered([this] { writeFile(folder_ / "avoc.db", "b"); }, "avoc.db");
    expectAltered([this] { writeFile(folder_ / "added", "x"); }, "added");
    expectAltered([this] { writeFile(folder_ / "added-empty", ""); }, "added-empty");
    expectAltered([this] { writeFile(folder_ / "added-zeros", std::string(5, '\0')); }, "added-zeros");
    expectAltered([this] { std::filesystem::remove(folder_ / "added"); }, "added");
    expectAltered([this] { std::filesystem::rename(folder_ / "avoc.db", folder_ / "other.db"); }, "other.db");
    expectAltered([this] { writeFile(folder_ / "manifest.json", "{}"); }, "manifest.json");
    expectAltered([this] { writeFile(folder_ / "validate.txt", "1"); }, "");
    expectAltered([this] { writeFile(folder_ / "validate_temp.txt", "1"); }, "validate_temp.txt");
}

TEST_F(IntegrityTest, everyFileThatIsNotAsItWasIsNamedWithItsKind) {
    ASSERT_TRUE(seal());
    writeFile(folder_ / "added", "x");
    writeFile(folder_ / "avoc.db", "b");
    std::filesystem::remove(folder_ / "vconf/Vconf.json");
    std::vector<std::string> files;
    for (const Check& check : examine()) {
        if (check.subject == Subject::File) {
            files.push_back(textOf(check));
        }
    }
    EXPECT_THAT(files, ElementsAre("added: added", "altered: avoc.db", "missing: vconf/Vconf.json"));
}

TEST_F(IntegrityTest, manifestThatWasMadeAnewWithAnotherKeyIsAltered) {
    expectAltered(
        [this] {
            FakeSecureStorage::instance().packageKey = std::string(32, 'o');
            writeFile(folder_ / "added", "x");
            ASSERT_TRUE(seal());
            FakeSecureStorage::reset();
        },
        "manifest.json");
}

TEST_F(IntegrityTest, manifestThatWasTakenAwayBreaksTheSeal) {
    expectAltered([this] { std::filesystem::remove(folder_ / "manifest.json"); }, "");
}

TEST_F(IntegrityTest, packageOfAnotherToolIsGoodByItsSealAndSaidToBeWeaker) {
    sealFolderWithoutManifest(folder_.path());
    auto checks = examine();
    EXPECT_EQ(problemOf(checks), std::nullopt);
    EXPECT_EQ(checks.at(3).finding, Finding::Unlisted);
    EXPECT_THAT(textOf(checks.at(3)), HasSubstr("weaker"));
    FakeSecureStorage::instance().packageKey.reset();
    EXPECT_EQ(problemOf(examine()), std::nullopt);
    writeFile(folder_ / "avoc.db", "b");
    EXPECT_EQ(problemOf(examine()), ErrorCode::Altered);
}

TEST_F(IntegrityTest, manifestWithoutAKeyToCheckItIsNoKey) {
    ASSERT_TRUE(seal());
    FakeSecureStorage::instance().packageKey.reset();
    const auto checks = examine();
    EXPECT_EQ(problemOf(checks), ErrorCode::NoKey);
    EXPECT_THAT(problemSentences(checks, "P").at(0), HasSubstr("this television has no package key,"));
}

TEST_F(IntegrityTest, packageOfALaterFormatIsRefused) {
    ASSERT_TRUE(seal());
    writeFile(folder_ / "manifest.json", R"({"format":"2.0","whatever":1})");
    const auto found = examinePackage(engine_, tree(), tree(), stop_);
    ASSERT_FALSE(found);
    EXPECT_EQ(found.error().code, ErrorCode::NewerPackage);
}

TEST_F(IntegrityTest, identityThatWasRewrittenIsAltered) {
    expectAltered([this] { writeFile(folder_ / "ProductCloneInfo.txt", "VX-R1-EU\nVX99\n3\n"); },
                  "ProductCloneInfo.txt");
}

TEST_F(IntegrityTest, manyChangesAreCounted) {
    expectAltered(
        [this] {
            for (const char* const name : {"n1", "n2", "n3", "n4", "n5"}) {
                writeFile(folder_ / name, "x");
            }
        },
        "n1 added, n2 added, n3 added and 2 more");
}

TEST_F(IntegrityTest, eachPartThatDiffersIsFoundWithBothValues) {
    ASSERT_TRUE(seal());
    FakeSystemInfo::instance() = {"VX75C2", "VX-C2-EU", 7, true};
    const auto checks = examine();
    EXPECT_EQ(findings(checks), (Findings{{Subject::Model, Finding::Differs},
                                          {Subject::ProductTag, Finding::Differs},
                                          {Subject::Tuner, Finding::Differs},
                                          {Subject::Manifest, Finding::Unaltered},
                                          {Subject::Seal, Finding::Unaltered}}));
    EXPECT_EQ(textOf(checks[0]), "differs: this television VX75C2, the package VX55R1");
    EXPECT_EQ(textOf(checks[1]), "differs: this television VX-C2-EU, the package VX-R1-EU");
    EXPECT_EQ(textOf(checks[2]), "differs: this television 135, the package 3");
    EXPECT_EQ(problemOf(checks), ErrorCode::DoesNotFit);
}

TEST_F(IntegrityTest, tunerOfAnotherRegionAloneDoesNotFit) {
    ASSERT_TRUE(seal());
    FakeSystemInfo::instance().regionalTuner = true;
    const auto checks = examine();
    EXPECT_EQ(problemOf(checks), ErrorCode::DoesNotFit);
    EXPECT_EQ(checks[2].finding, Finding::Differs);
    ASSERT_TRUE(seal());
    EXPECT_EQ(findings(examine()), kGood);
}

TEST_F(IntegrityTest, televisionThatDoesNotTellWhatItIsFitsNothing) {
    ASSERT_TRUE(seal());
    FakeSystemInfo::instance().model.reset();
    EXPECT_EQ(examine()[0].finding, Finding::Unknown);
    FakeSystemInfo::reset();
    FakeSystemInfo::instance().regionalTuner.reset();
    EXPECT_EQ(examine()[2].finding, Finding::Unknown);
    EXPECT_EQ(problemOf(examine()), ErrorCode::DoesNotFit);
}

TEST_F(IntegrityTest, packageWithoutATunerDoesNotFitThoughTheLibraryTakesIt) {
    writeFile(folder_ / "ProductCloneInfo.txt", "VX-R1-EU\nVX55R1\n");
    ASSERT_EQ(engine_.checkIdentity(folder_.path().string()).value(), 0);
    const auto checks = examine();
    EXPECT_EQ(checks[2].finding, Finding::Absent);
    EXPECT_TRUE(problemOf(checks));
}

TEST_F(IntegrityTest, libraryThatRefusesForNoReasonThatIsSeenIsObeyed) {
    ASSERT_TRUE(seal());
    for (const int code : {1, 3, 4, 5, -1, 9}) {
        engine_.identityAnswer = code;
        const auto checks = examine();
        EXPECT_EQ(problemOf(checks), ErrorCode::DoesNotFit) << code;
        EXPECT_THAT(problemSentences(checks, "P").at(0), HasSubstr("code " + std::to_string(code)));
    }
}

TEST_F(IntegrityTest, missingFilesAndKeyAreAllFoundTheGravestFirst) {
    ASSERT_TRUE(seal());
    std::filesystem::remove(folder_ / "ProductCloneInfo.txt");
    engine_.key = false;
    auto checks = examine();
    EXPECT_EQ(findings(checks), (Findings{{Subject::Identity, Finding::Missing},
                                          {Subject::Key, Finding::None},
                                          {Subject::Manifest, Finding::Unaltered},
                                          {Subject::File, Finding::Gone}}));
    EXPECT_EQ(problemOf(checks), ErrorCode::NotComplete);
    std::filesystem::remove(folder_ / "validate.txt");
    checks = examine();
    const auto sentences = problemSentences(checks, "P");
    ASSERT_EQ(sentences.size(), 3U);
    EXPECT_THAT(sentences[0], HasSubstr("it holds no ProductCloneInfo.txt, validate.txt; make a new backup"));
    EXPECT_THAT(sentences[1], HasSubstr("no clone key"));
}

TEST_F(IntegrityTest, alteredAndNotFittingAreBothFoundAlteredFirst) {
    ASSERT_TRUE(seal());
    FakeSystemInfo::instance().model = "VX75C2";
    writeFile(folder_ / "avoc.db", "b");
    const auto checks = examine();
    EXPECT_EQ(problemOf(checks), ErrorCode::Altered);
    EXPECT_EQ(problemSentences(checks, "P").size(), 2U);
    engine_.key = false;
    EXPECT_EQ(problemOf(examine()), ErrorCode::NoKey);
}

TEST_F(IntegrityTest, modelIsOverriddenOnlyWhereItDiffers) {
    ASSERT_TRUE(seal());
    auto checks = examine();
    EXPECT_FALSE(overrideModel(checks));
    FakeSystemInfo::instance().model = "VX75C2";
    checks = examine();
    EXPECT_THAT(problemSentences(checks, "P").at(0), HasSubstr("--force-model"));
    EXPECT_TRUE(overrideModel(checks));
    EXPECT_FALSE(problemOf(checks));
    FakeSystemInfo::instance().model.reset();
    checks = examine();
    EXPECT_FALSE(overrideModel(checks));
}

TEST_F(IntegrityTest, overriddenModelStillLeavesTheTunerToBeCompared) {
    ASSERT_TRUE(seal());
    FakeSystemInfo::instance().model = "VX75C2";
    FakeSystemInfo::instance().tuner = 4;
    auto checks = examine();
    EXPECT_TRUE(overrideModel(checks));
    EXPECT_EQ(problemOf(checks), ErrorCode::DoesNotFit);
}

TEST_F(IntegrityTest, sealingThatFailsOrBreaksOffLeavesNoSeal) {
    engine_.sealing = false;
    const auto failed = seal();
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.error().code, ErrorCode::NotSealed);
    expectNoSeal();
    engine_.sealing = failure(ErrorCode::Internal, "copy_file: No space left on device");
    const auto broken = seal();
    ASSERT_FALSE(broken);
    EXPECT_EQ(broken.error().code, ErrorCode::NotSealed);
    EXPECT_THAT(broken.error().sentence, HasSubstr("No space left on device"));
    expectNoSeal();
}

TEST_F(IntegrityTest, sealThatCannotBeReadBackIsNotLeft) {
    engine_.readsItsSeals = false;
    const auto sealed = seal();
    ASSERT_FALSE(sealed);
    EXPECT_EQ(sealed.error().code, ErrorCode::NotSealed);
    expectNoSeal();
}

TEST_F(IntegrityTest, identityThatTheLibraryDoesNotAcceptIsNotSealed) {
    engine_.identityAnswer = 4;
    const auto sealed = seal();
    ASSERT_FALSE(sealed);
    EXPECT_THAT(sealed.error().sentence, HasSubstr("code 4"));
    EXPECT_THAT(engine_.sealed, IsEmpty());
}

TEST_F(IntegrityTest, examinationThatBreaksOffIsAnError) {
    ASSERT_TRUE(seal());
    engine_.identityAnswer = failure(ErrorCode::Internal, "broke off");
    EXPECT_EQ(examinePackage(engine_, tree(), tree(), stop_).error().code, ErrorCode::Internal);
    engine_.identityAnswer = 0;
    engine_.key = failure(ErrorCode::Internal, "broke off");
    EXPECT_EQ(examinePackage(engine_, tree(), tree(), stop_).error().code, ErrorCode::Internal);
}

TEST_F(IntegrityTest, bothKeysAreRequired) {
    EXPECT_TRUE(requireKeys(engine_));
    FakeSecureStorage::instance().packageKey.reset();
    EXPECT_THAT(requireKeys(engine_).error().sentence, HasSubstr("no package key"));
    engine_.key = false;
    EXPECT_EQ(requireKeys(engine_).error().code, ErrorCode::NoKey);
    EXPECT_EQ(exitStatusOf(ErrorCode::NoKey), 7);
}

TEST_F(IntegrityTest, hostileIdentityDoesNotSteerTheTerminal) {
    writeFile(folder_ / "ProductCloneInfo.txt",
              "\x1b[31mtag\nmo\x07"
              "del\n3\n");
    const auto checks = examine();
    for (const Check& check : checks) {
        EXPECT_EQ(textOf(check).find_first_of("\x1b\x07"), std::string::npos);
    }
    for (const std::string& sentence : problemSentences(checks, "P")) {
        EXPECT_EQ(sentence.find_first_of("\x1b\x07"), std::string::npos);
    }
}

}  // namespace
}  // namespace vxclone
