#include "virtual_tv/factory/profile.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/factory/profile_shelf.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

const ProfileShelf& shippedShelf() {
    static const ProfileShelf shelf(VXTV_SHIPPED_PROFILES);
    return shelf;
}

Json goodProfile() {
    return Json::parse(R"({"model": "M", "productTag": "T", "tunerType": 1, "features": {"f": 1, "g": true},
        "settings": {"a": {"int": -1}, "b": {"bool": true}, "c": {"string": ""}},
        "status": {"s": {"int": 0}},
        "pictures": {"boot-logo": {"logo.png": "picture.png"}, "home-menu": {}, "mbr-logo": {}},
        "installationSecret": "fleet.secret", "keyFile": "fleet.bin", "packageKey": "package.key", "services": {},
        "applications": []})");
}

class ProfileTest : public testing::Test {
 protected:
    ProfileTest() {
        test::writeFile(folder_.path() / "picture.png", "bytes");
        test::writeFile(folder_.path() / "fleet.secret", test::smallProfile().installationSecret);
        test::writeFile(folder_.path() / "other.secret", std::string(32, 'o'));
        test::writeFile(folder_.path() / "fleet.bin", test::smallProfile().keyFile);
        test::writeFile(folder_.path() / "package.key", test::smallProfile().packageKey);
    }

    Result<Profile> reading(const std::string& text) {
        test::writeFile(folder_.path() / "profile.json", text);
        return readProfile(folder_.path() / "profile.json");
    }

    test::TestFolder folder_;
};

TEST_F(ProfileTest, goodProfileIsRead) {
    const Result<Profile> profile = reading(goodProfile().dump());
    ASSERT_TRUE(profile) << profile.error().sentence;
    EXPECT_EQ("M", profile->identity.model);
    EXPECT_EQ(2U, profile->features.size());
    ASSERT_EQ(4U, profile->settings.size());
    EXPECT_EQ(SettingValue(-1), profile->settings[0].value);
    EXPECT_TRUE(profile->settings[3].isStatus);
    ASSERT_EQ(1U, profile->pictures.size());
    EXPECT_EQ("logo.png", profile->pictures[0].name);
    EXPECT_EQ(test::smallProfile().installationSecret, profile->installationSecret);
    EXPECT_EQ(test::smallProfile().keyFile, profile->keyFile);
    EXPECT_EQ(test::smallProfile().packageKey, profile->packageKey);
}

struct BadProfileCase {
    const char* name;
    const char* pointer;  ///< the member that is changed
    const char* value;    ///< what it becomes; null removes it
    const char* named;    ///< what the sentence must name
};

void PrintTo(const BadProfileCase& bad, std::ostream* out) {
    *out << bad.name;
}

class BadProfileTest : public ProfileTest, public testing::WithParamInterface<BadProfileCase> {};

TEST_P(BadProfileTest, isRefusedAndTheMemberIsNamed) {
    const BadProfileCase& bad = GetParam();
    Json document = goodProfile();
    const Json::json_pointer pointer(bad.pointer);
    if (bad.value != nullptr) {
        document[pointer] = Json::parse(bad.value);
    } else {
        document[pointer.parent_pointer()].erase(pointer.back());
    }
    const Result<Profile> profile = reading(document.dump());
    ASSERT_FALSE(profile);
    EXPECT_EQ(ErrorCode::BadProfile, profile.error().code);
    EXPECT_NE(std::string::npos, profile.error().sentence.find(bad.named)) << profile.error().sentence;
}

INSTANTIATE_TEST_SUITE_P(
    Table, BadProfileTest,
    testing::Values(
        BadProfileCase{"unknownMember", "/colour", "1", "colour"},
        BadProfileCase{"missingModel", "/model", nullptr, "model"},
        BadProfileCase{"missingStatus", "/status", nullptr, "status"},
        BadProfileCase{"missingArea", "/pictures/mbr-logo", nullptr, "mbr-logo"},
        BadProfileCase{"unknownArea", "/pictures/wall", "{}", "wall"},
        BadProfileCase{"modelNoString", "/model", "1", "model"},
        BadProfileCase{"nulInModel", "/model", "\"a\\u0000b\"", "model"},
        BadProfileCase{"tunerFraction", "/tunerType", "1.5", "tunerType"},
        BadProfileCase{"featureString", "/features/f", "\"1\"", "features > f"},
        BadProfileCase{"featuresList", "/features", "[]", "features"},
        BadProfileCase{"settingBare", "/settings/a", "1", "settings > a"},
        BadProfileCase{"settingEmpty", "/settings/a", "{}", "settings > a"},
        BadProfileCase{"settingTwoTypes", "/settings/a", R"({"int":1,"bool":true})", "settings > a"},
        BadProfileCase{"settingOtherType", "/settings/a", R"({"float":1})", "settings > a > float"},
        BadProfileCase{"intTooLarge", "/settings/a/int", "2147483648", "settings > a > int"},
        BadProfileCase{"intFarTooLarge", "/settings/a/int", "18446744073709551615", "settings > a > int"},
        BadProfileCase{"intTooSmall", "/settings/a/int", "-2147483649", "settings > a > int"},
        BadProfileCase{"boolNumber", "/settings/b/bool", "1", "settings > b > bool"},
        BadProfileCase{"keyTwice", "/status/a", R"({"int":1})", "status > a"},
        BadProfileCase{"pictureMissing", "/pictures/boot-logo/logo.png", "\"no.png\"", "logo.png"},
        BadProfileCase{"pictureOutside", "/pictures/boot-logo/logo.png", "\"../../etc/passwd\"", "logo.png"},
        BadProfileCase{"pictureAbsolute", "/pictures/boot-logo/logo.png", "\"/etc/passwd\"", "logo.png"},
        BadProfileCase{"secretMissing", "/installationSecret", nullptr, "installationSecret"},
        BadProfileCase{"secretNoSecret", "/installationSecret", "\"picture.png\"", "installationSecret"},
        BadProfileCase{"secretOfAnotherFleet", "/installationSecret", "\"other.secret\"", "another fleet"},
        BadProfileCase{"keyFileMissing", "/keyFile", "\"no.bin\"", "no.bin"},
        BadProfileCase{"keyFileOutside", "/keyFile", "\"../../etc/passwd\"", "keyFile"},
        BadProfileCase{"keyFileNoKeyFile", "/keyFile", "\"picture.png\"", "no key file"},
        BadProfileCase{"packageKeyMissing", "/packageKey", nullptr, "packageKey"},
        BadProfileCase{"packageKeyOfAnotherLength", "/packageKey", "\"picture.png\"", "no package key"},
        BadProfileCase{"pictureFolder", "/pictures/boot-logo/logo.png", "\".\"", "logo.png"},
        BadProfileCase{"pictureNameDots", "/pictures/boot-logo/..", "\"picture.png\"", "plain file name"},
        BadProfileCase{"pictureNameSlash", "/pictures/boot-logo/a~1b", "\"picture.png\"", "plain file name"}),
    [](const testing::TestParamInfo<BadProfileCase>& bad) { return bad.param.name; });

TEST_F(ProfileTest, linkOutOfTheProfilesFolderIsRefused) {
    fs::remove(folder_.path() / "picture.png");
    fs::create_symlink("/etc/passwd", folder_.path() / "picture.png");
    const Result<Profile> profile = reading(goodProfile().dump());
    ASSERT_FALSE(profile);
    EXPECT_EQ(ErrorCode::BadProfile, profile.error().code);
}

TEST_F(ProfileTest, keysAndSecretsAreNotTakenThroughALink) {
    for (const char* const name : {"fleet.secret", "fleet.bin", "package.key"}) {
        const fs::path file = folder_.path() / name;
        fs::rename(file, folder_.path() / "real");
        fs::create_symlink("real", file);
        const Result<Profile> profile = reading(goodProfile().dump());
        ASSERT_FALSE(profile) << name;
        EXPECT_NE(std::string::npos,
                  profile.error().sentence.find(std::string("names the file ") + name +
                                                ", to which a link leads; name the file itself"))
            << profile.error().sentence;
        fs::rename(folder_.path() / "real", file);
    }
    fs::create_directory(folder_.path() / "keys");
    fs::rename(folder_.path() / "package.key", folder_.path() / "keys/package.key");
    fs::create_directory_symlink("keys", folder_.path() / "way");
    Json document = goodProfile();
    document["packageKey"] = "way/package.key";
    EXPECT_FALSE(reading(document.dump()));
    document["packageKey"] = "keys/package.key";
    EXPECT_TRUE(reading(document.dump()));
}

TEST_F(ProfileTest, brokenTextIsRefused) {
    for (const char* text : {"", "{", "[]", "null", "{\"model\": \"\xff\"}", "{} {}"}) {
        const Result<Profile> profile = reading(text);
        ASSERT_FALSE(profile) << text;
        EXPECT_EQ(ErrorCode::BadProfile, profile.error().code);
    }
    EXPECT_FALSE(reading(std::string(100000, '[')));
}

TEST_F(ProfileTest, memberGivenTwiceIsRefused) {
    std::string text = goodProfile().dump();
    text.insert(1, "\"model\":\"first\",");
    const Result<Profile> profile = reading(text);
    ASSERT_FALSE(profile);
    EXPECT_NE(std::string::npos, profile.error().sentence.find("twice"));
}

TEST_F(ProfileTest, missingFileAndFolderAreRefused) {
    EXPECT_EQ(ErrorCode::UnknownProfile, readProfile(folder_.path() / "none.json").error().code);
    EXPECT_EQ(ErrorCode::BadProfile, readProfile(folder_.path()).error().code);
}

TEST_F(ProfileTest, fileThatFailsWhileItIsReadIsRefusedByItsName) {
    const Result<Profile> profile = readProfile("/proc/self/mem");
    ASSERT_FALSE(profile);
    EXPECT_EQ(ErrorCode::BadProfile, profile.error().code);
    EXPECT_NE(std::string::npos, profile.error().sentence.find("/proc/self/mem"));
}

TEST(ProfileShelf, everyShippedProfileIsGoodAndHasTheSameSettings) {
    std::set<std::set<std::string>> keySets;
    for (const std::string& name : shippedShelf().names()) {
        const Result<Profile> profile = shippedShelf().find(name).and_then(readProfile);
        ASSERT_TRUE(profile) << profile.error().sentence;
        std::set<std::string> keys;
        for (const Setting& setting : profile->settings) {
            keys.insert(setting.key);
        }
        // A conference room has no application for its first screen.
        EXPECT_EQ(name == "conference" ? 0U : 1U, keys.erase("db/first_screen/type")) << name;
        keySets.insert(keys);
    }
    EXPECT_EQ(3U, shippedShelf().names().size());
    EXPECT_EQ(1U, keySets.size());
    EXPECT_EQ(56U, keySets.begin()->size());
}

TEST(ProfileShelf, unknownNameIsRefusedWithTheNamesThereAre) {
    const auto file = shippedShelf().find("room-999");
    ASSERT_FALSE(file);
    EXPECT_NE(std::string::npos, file.error().sentence.find("conference, room-101, room-102"));
}

TEST(ProfileShelf, pathIsTakenAsItIs) {
    EXPECT_EQ("./x", shippedShelf().find("./x").value());
    EXPECT_EQ("x.json", shippedShelf().find("x.json").value());
}

}  // namespace
}  // namespace vxtv
