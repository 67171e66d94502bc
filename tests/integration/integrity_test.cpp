// A package that does not fit or was altered is not loaded.

#include "tests/integration/clone_fixture.h"
#include "tests/support/machine/exit_status.h"

namespace vxtest {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class IntegrityTest : public CloneTest {
 protected:
    IntegrityTest() {
        vxtv({"set", first, kWelcome, "from the first"});
        const Finished backup = vxclone(first, {"backup", "/media/usb/clone"});
        EXPECT_EQ(backup.status, 0) << backup.output << backup.errors;
    }

    Finished verify(const std::string& television) const {
        return vxclone(television, {"verify", "/media/usb/clone"});
    }

    std::string settingsOf(const std::string& television) const {
        return vxtv({"settings", television}).output;
    }

    /// Expects that a restore is refused with the status and leaves the television unchanged.
    Finished refused(const std::string& television, int status, std::vector<std::string> options = {}) const {
        const std::string settings = settingsOf(television);
        std::vector<std::string> arguments = {"restore", "/media/usb/clone"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Finished restore = vxclone(television, arguments);
        EXPECT_EQ(restore.status, status) << restore.output << restore.errors;
        EXPECT_THAT(restore.errors, Not(IsEmpty()));
        EXPECT_EQ(settingsOf(television), settings);
        const std::filesystem::path cloneRoot =
            std::filesystem::path(television) / "opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone";
        EXPECT_THAT(std::filesystem::exists(cloneRoot) ? snapshot(cloneRoot) : FileTree(), IsEmpty());
        return restore;
    }

    static nlohmann::json lastLine(const Finished& finished) {
        const std::string text = finished.output.substr(0, finished.output.size() - 1);
        return nlohmann::json::parse(text.substr(text.rfind('\n') + 1));
    }

    std::string otherModel() const {
        const std::string television = (place / "other").string();
        vxtv({"create", television, "--profile", "conference"});
        return television;
    }

    const std::filesystem::path packageFolder = place / "stick/clone";
};

TEST_F(IntegrityTest, packageCarriesIdentityAndSeal) {
    const FileTree files = package();
    ASSERT_EQ(files.count("ProductCloneInfo.txt"), 1U);
    EXPECT_EQ(files.at("ProductCloneInfo.txt"), "VX-H7-EU\nVX55H7\n3\n");
    ASSERT_EQ(files.count("validate.txt"), 1U);
    EXPECT_EQ(files.at("validate.txt").size(), 16U);
}

TEST_F(IntegrityTest, verifyOnATelevisionOfTheModelIsZero) {
    const Finished result = verify(second);
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
}

TEST_F(IntegrityTest, verifyOnAnotherModelNamesBothValues) {
    const Finished result = verify(otherModel());
    EXPECT_EQ(result.status, ended::kDoesNotFit) << result.output << result.errors;
    EXPECT_THAT(result.output + result.errors, AllOf(HasSubstr("VX55H7"), HasSubstr("model")));
}

TEST_F(IntegrityTest, restoreOntoAnotherModelIsRefused) {
    refused(otherModel(), ended::kDoesNotFit);
}

TEST_F(IntegrityTest, restoreOfAFlippedByteIsRefusedInEveryFile) {
    const FileTree files = package();
    for (const auto& [name, content] : files) {
        if (content.empty() || name == "ProductCloneInfo.txt") {
            continue;
        }
        std::string flipped = content;
        flipped[flipped.size() / 2] = static_cast<char>(flipped[flipped.size() / 2] ^ 1);
        writeFile(packageFolder / name, flipped);
        EXPECT_EQ(verify(second).status, ended::kAltered) << name;
        refused(second, ended::kAltered);
        writeFile(packageFolder / name, content);
    }
    EXPECT_EQ(verify(second).status, 0);
}

TEST_F(IntegrityTest, restoreOfAPackageWithAnAddedFileIsRefused) {
    writeFile(packageFolder / "tvtimer/added.txt", "x");
    EXPECT_EQ(verify(second).status, ended::kAltered);
    refused(second, ended::kAltered);
}

TEST_F(IntegrityTest, restoreOfAPackageWithoutItsSettingsIsRefused) {
    std::filesystem::remove(packageFolder / "vconf/Vconf.json");
    EXPECT_NE(verify(second).status, 0);
    EXPECT_NE(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
}

TEST_F(IntegrityTest, restoreWithoutSealOrIdentityIsRefusedByName) {
    for (const char* name : {"validate.txt", "ProductCloneInfo.txt"}) {
        const std::string content = package().at(name);
        std::filesystem::remove(packageFolder / name);
        EXPECT_THAT(refused(second, ended::kNoPackage).errors, HasSubstr(name));
        writeFile(packageFolder / name, content);
    }
}

TEST_F(IntegrityTest, backupWithoutKeyLeavesTheStickAsItWas) {
    const FileTree before = snapshot(place / "stick");
    const std::string keyless = (place / "keyless").string();
    vxtv({"create", keyless, "--profile", "room-101"});
    std::filesystem::remove_all(place / "keyless/usr");
    const Finished backup = vxclone(keyless, {"backup", "/media/usb/clone"});
    EXPECT_EQ(backup.status, ended::kNoKey) << backup.output << backup.errors;
    EXPECT_EQ(snapshot(place / "stick"), before);
}

TEST_F(IntegrityTest, verifyWithoutKeyIsItsOwnStatus) {
    std::filesystem::remove_all(place / "second/usr");
    EXPECT_EQ(verify(second).status, ended::kNoKey);
    refused(second, ended::kNoKey);
}

TEST_F(IntegrityTest, televisionWithoutPackageKeyNeitherMakesNorTakesAPackage) {
    std::filesystem::remove(place / "second/secure/entries/VXCLONE_PACKAGE_KEY");
    EXPECT_EQ(verify(second).status, ended::kNoKey);
    refused(second, ended::kNoKey);
    EXPECT_EQ(vxclone(second, {"backup", "/media/usb/other"}).status, ended::kNoKey);
    EXPECT_FALSE(std::filesystem::exists(place / "stick/other"));
    EXPECT_EQ(vxclone(second, {"inspect", "/media/usb/clone"}).status, 0);
}

TEST_F(IntegrityTest, installingTheCloneKeyAgainKeepsThePackageKey) {
    vxtv({"keyfile", "install", second,
          (sourceFolder() / "virtual_tv/profiles/keys/demonstration.bin").string(), "--force"});
    EXPECT_EQ(verify(second).status, 0);
}

TEST_F(IntegrityTest, onlyTheExpectedPackageIsRestored) {
    refused(second, ended::kAltered, {"--expect", "0123456789abcdef"});
    const nlohmann::json summary = lastLine(vxclone(first, {"backup", "/media/usb/clone", "--json"}));
    const Finished restore =
        vxclone(second, {"restore", "/media/usb/clone", "--expect", summary.at("digest").get<std::string>()});
    EXPECT_EQ(restore.status, 0) << restore.output << restore.errors;
}

TEST_F(IntegrityTest, packageOnTheStickIsListedAndDiffersUntilItIsRestored) {
    EXPECT_THAT(vxclone(second, {"list"}).output, AllOf(HasSubstr("/media/usb/clone"), HasSubstr("fits")));
    const Finished before = vxclone(second, {"diff", "/media/usb/clone"});
    EXPECT_EQ(before.status, 1) << before.errors;
    EXPECT_THAT(before.output, HasSubstr(kWelcome));
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    EXPECT_THAT(vxclone(second, {"diff", "/media/usb/clone"}).output, Not(HasSubstr(kWelcome)));
}

TEST_F(IntegrityTest, sealOfOneTelevisionIsGoodOnTheOthersOfItsFleet) {
    ASSERT_EQ(vxclone(second, {"restore", "/media/usb/clone"}).status, 0);
    EXPECT_EQ(get(second, kWelcome), "from the first");
}

}  // namespace
}  // namespace vxtest
