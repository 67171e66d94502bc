// The services that consist only of values: what they accept from a profile and from a package, and what they
// save.

#include "virtual_tv/services/value_services.h"

#include <gtest/gtest.h>

#include "tests/support/services/sample_services.h"
#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/base/json_reading.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using vxtest::Sample;

Television televisionOf(const fs::path& place, const Profile& profile) {
    Result<Television> television = createTelevision(place, profile);
    if (!television) {
        throw std::runtime_error(television.error().sentence);
    }
    return std::move(*television);
}

Profile highestProfile() {
    Profile profile = test::smallProfile();
    vxtest::addSampleServices(profile, Sample::Highest);
    profile.features.pop_back();
    return profile;
}

Texts textsOf(const Television& television, const ValueService& service, Parts parts = kTravellingParts) {
    return television.database()
        .read([&](SQLite::Database& connection) -> Result<Texts> {
            return ServiceValues::texts(connection, service, parts);
        })
        .value();
}

class ValueServicesTest : public testing::TestWithParam<const ValueService& (*)()> {
 protected:
    const ValueService& service() const { return GetParam()(); }
    ServiceValues valuesOf(const Television& television) const {
        return ServiceValues(television.database(), service());
    }
    fs::path file() const { return package_ / service().file; }
    test::TestFolder folder_;
    const fs::path package_ = folder_.path();
    Television first_ = test::makeTelevision(folder_.path() / "first");
    Television second_ = televisionOf(folder_.path() / "second", highestProfile());
};

/// Only the shapes, which check the content of a package.
class ValueShapesTest : public testing::TestWithParam<const ValueService& (*)()> {
 protected:
    bool isTaken(const Json& document) const {
        try {
            expectShape(document, "", GetParam()().shape, kTravellingParts);
            return true;
        } catch (const WrongMember&) {
            return false;
        }
    }
    Json good() const {
        const ValueShape& shape = GetParam()().shape;
        return partsOf(vxtest::sampleOf(shape, Sample::Lowest), shape, kTravellingParts);
    }
};

std::string nameOfInstance(const testing::TestParamInfo<const ValueService& (*)()>& instance) {
    std::string name(instance.param().name);
    std::erase(name, '-');
    return name;
}

const auto kEach =
    testing::Values(factoryService, avService, settingsService, homeDataService, webApplicationService);
INSTANTIATE_TEST_SUITE_P(Each, ValueServicesTest, kEach, nameOfInstance);
INSTANTIATE_TEST_SUITE_P(Each, ValueShapesTest, kEach, nameOfInstance);

TEST_P(ValueShapesTest, documentWithAnyMemberMissingIsRefused) {
    const Json whole = good();
    ASSERT_TRUE(isTaken(whole));
    for (const auto& [member, value] : whole.items()) {
        Json document = whole;
        document.erase(member);
        EXPECT_FALSE(isTaken(document)) << member;
    }
    for (const Json& document : {Json::object(), Json::array({1}), Json(nullptr), Json("text"), Json(1)}) {
        EXPECT_FALSE(isTaken(document)) << document;
    }
}

TEST_P(ValueShapesTest, documentWithAnyValueOfAnotherTypeIsRefused) {
    const Json whole = good();
    const Json flat = whole.flatten();
    Json document = whole;
    for (const auto& [pointer, value] : flat.items()) {
        for (const Json& wrong : {Json(nullptr), Json(0.5), Json::array(), Json::object(), Json("\n"),
                                  Json(std::int64_t{1} << 40), Json(std::string("a\0b", 3))}) {
            document[Json::json_pointer(pointer)] = wrong;
            EXPECT_FALSE(isTaken(document)) << pointer << " " << wrong;
        }
        document[Json::json_pointer(pointer)] = value;
    }
    EXPECT_TRUE(isTaken(document));
}

TEST_P(ValueShapesTest, documentWithAValueTooMuchAnywhereIsRefused) {
    const Json whole = good();
    Json document = whole;
    document["extra"] = 1;
    EXPECT_FALSE(isTaken(document));
    for (const auto& [member, value] : whole.items()) {
        Json deeper = whole;
        Json& place = value.is_array() ? deeper[member][0] : deeper[member];
        if (place.is_object()) {
            place["extra"] = 1;
            EXPECT_FALSE(isTaken(deeper)) << member;
        }
    }
}

TEST_P(ValueServicesTest, restoreBringsAllThatTravelsAndKeepsTheRest) {
    const Texts kept = textsOf(second_, service(), {Part::Kept});
    ASSERT_NE(textsOf(first_, service()), textsOf(second_, service()));
    ASSERT_TRUE(valuesOf(first_).backUp(package_));
    ASSERT_TRUE(valuesOf(second_).restore(package_));
    EXPECT_EQ(textsOf(first_, service()), textsOf(second_, service()));
    EXPECT_EQ(textsOf(second_, service(), {Part::Kept}), kept);
}

TEST_P(ValueServicesTest, missingDamagedOrWrongBackupIsRefusedAndChangesNothing) {
    const Texts before = textsOf(second_, service(), kAllParts);
    EXPECT_EQ(valuesOf(second_).restore(package_).error().code, ErrorCode::NoBackupFile);
    ASSERT_TRUE(valuesOf(first_).backUp(package_));
    const std::string bytes = test::readFile(file());
    for (std::size_t byte = 0; byte < bytes.size(); byte += 97) {
        test::writeFile(file(), test::flipped(bytes, byte * 8));
        EXPECT_FALSE(valuesOf(second_).restore(package_)) << byte;
    }
    ASSERT_TRUE(writeBackupFile(file(), service().name, service().version, Json::object()));
    EXPECT_EQ(valuesOf(second_).restore(package_).error().code, ErrorCode::BadBackup);
    ASSERT_TRUE(writeBackupFile(file(), service().name, service().version + 1, Json::object()));
    EXPECT_EQ(valuesOf(second_).restore(package_).error().code, ErrorCode::OtherVersion);
    EXPECT_EQ(textsOf(second_, service(), kAllParts), before);
}

TEST_P(ValueServicesTest, profileWithoutItOrWithAWrongSectionIsToldSo) {
    const std::string name(service().name);
    Profile profile = test::smallProfile();
    profile.services[name]["extra"] = 1;
    const auto created = createTelevision(folder_.path() / "wrong", profile);
    ASSERT_FALSE(created);
    EXPECT_EQ(created.error().code, ErrorCode::BadProfile);
    EXPECT_NE(created.error().sentence.find(name + " > extra"), std::string::npos)
        << created.error().sentence;
    EXPECT_FALSE(fs::exists(folder_.path() / "wrong"));

    profile.services.erase(name);
    const Television without = televisionOf(folder_.path() / "without", profile);
    ASSERT_TRUE(valuesOf(first_).backUp(package_));
    EXPECT_EQ(valuesOf(without).backUp(package_).error().code, ErrorCode::UnknownService);
    EXPECT_EQ(valuesOf(without).restore(package_).error().code, ErrorCode::UnknownService);
}

class ValueServices : public testing::Test {
 protected:
    test::TestFolder folder_;
    Television first_ = test::makeTelevision(folder_.path() / "first");
    Television second_ = televisionOf(folder_.path() / "second", highestProfile());
};

TEST_F(ValueServices, fileOfOneIsRefusedByTheOthers) {
    ASSERT_TRUE(ServiceValues(first_.database(), avService()).backUp(folder_.path()));
    fs::rename(folder_.path() / avService().file, folder_.path() / factoryService().file);
    EXPECT_EQ(ServiceValues(first_.database(), factoryService()).restore(folder_.path()).error().code,
              ErrorCode::OtherService);
}

TEST_F(ValueServices, identityIsNotInTheFactoryBackupAndRefusedFromOne) {
    const ServiceValues values(first_.database(), factoryService());
    ASSERT_TRUE(values.backUp(folder_.path()));
    const fs::path file = folder_.path() / factoryService().file;
    Json document = readBackupFile(file, "factory", 1).value();
    EXPECT_FALSE(document.contains("identity"));
    document["identity"] = {{"serialNumber", "stolen"}};
    ASSERT_TRUE(writeBackupFile(file, "factory", 1, document));
    EXPECT_EQ(values.restore(folder_.path()).error().code, ErrorCode::BadBackup);
}

TEST(ValueShape, rangesEndWhereTheySay) {
    const ValueShape shape = {{numberFrom("n", -2, 7), textOf("t", 1, 3)}};
    const auto isTaken = [&shape](const Json& number, const Json& text) {
        try {
            expectShape({{"n", number}, {"t", text}}, "", shape, kAllParts);
            return true;
        } catch (const WrongMember&) {
            return false;
        }
    };
    EXPECT_TRUE(isTaken(-2, "a"));
    EXPECT_TRUE(isTaken(7, "abc"));
    EXPECT_FALSE(isTaken(-3, "a"));
    EXPECT_FALSE(isTaken(8, "a"));
    EXPECT_FALSE(isTaken(0, ""));
    EXPECT_FALSE(isTaken(0, "abcd"));
    EXPECT_FALSE(isTaken(0, "\x7f"));
}

TEST_F(ValueServices, laterHalfOfTheSettingsNeedsTheEarlyOne) {
    const ServiceValues source(first_.database(), settingsService());
    const ServiceValues target(second_.database(), settingsService());
    ASSERT_TRUE(source.backUp(folder_.path()));
    const Texts before = textsOf(second_, settingsService());
    EXPECT_EQ(target.restore(folder_.path(), Stage::Later).error().code, ErrorCode::TooEarly);
    EXPECT_EQ(textsOf(second_, settingsService()), before);

    ASSERT_TRUE(target.restore(folder_.path(), Stage::Early));
    const Texts early = textsOf(second_, settingsService());
    EXPECT_EQ(early.at("region/country"), "\"aa\"");
    EXPECT_EQ(early.at("lock/highestAge"), before.at("lock/highestAge"));
    ASSERT_TRUE(target.restore(folder_.path(), Stage::Later));
    EXPECT_EQ(textsOf(second_, settingsService()), textsOf(first_, settingsService()));
}

TEST(ValueShape, listKeepsItsOrderAndNoEntryStandsTwice) {
    const ValueShape& shape = homeDataService().shape;
    Json document = vxtest::sampleOf(shape, Sample::Lowest);
    const auto isTaken = [&] {
        try {
            expectShape(document, "", shape, kAllParts);
            return true;
        } catch (const WrongMember&) {
            return false;
        }
    };
    Json& tiles = document["tiles"];
    Json other = tiles.at(0);
    other["application"] = "b";
    tiles.push_back(other);
    EXPECT_TRUE(isTaken());
    EXPECT_EQ(textsIn(document, shape, kAllParts).at("tiles/a/position"), "1");
    EXPECT_EQ(textsIn(document, shape, kAllParts).at("tiles/b/position"), "2");

    tiles.push_back(other);
    EXPECT_FALSE(isTaken());
    tiles = Json::array();
    EXPECT_TRUE(isTaken());
    for (int i = 0; i < 64; ++i) {
        other["application"] = std::to_string(i);
        tiles.push_back(other);
    }
    EXPECT_TRUE(isTaken());
    other["application"] = "one more";
    tiles.push_back(other);
    EXPECT_FALSE(isTaken());
}

TEST_F(ValueServices, homeDataMakesItsFolderAndNoneAboveIt) {
    const fs::path home = folder_.path() / "home";
    ASSERT_TRUE(backUpHomeData(first_.database(), home));
    ASSERT_TRUE(backUpHomeData(first_.database(), home));
    ASSERT_TRUE(restoreHomeData(second_.database(), home));
    EXPECT_EQ(textsOf(first_, homeDataService()), textsOf(second_, homeDataService()));
    EXPECT_EQ(backUpHomeData(first_.database(), folder_.path() / "none" / "home").error().code,
              ErrorCode::Io);
    EXPECT_FALSE(fs::exists(folder_.path() / "none"));
}

TEST_F(ValueServices, homeDataRefusesALinkOrAFileInPlaceOfItsFolder) {
    const fs::path home = folder_.path() / "home";
    const fs::path link = folder_.path() / "link";
    ASSERT_TRUE(backUpHomeData(first_.database(), home));
    fs::create_directory_symlink(home, link);
    EXPECT_EQ(restoreHomeData(second_.database(), link).error().code, ErrorCode::NotABackupFile);
    EXPECT_EQ(backUpHomeData(second_.database(), link).error().code, ErrorCode::NotABackupFile);
    test::writeFile(folder_.path() / "file", "x");
    EXPECT_EQ(backUpHomeData(first_.database(), folder_.path() / "file").error().code,
              ErrorCode::NotABackupFile);
}

}  // namespace
}  // namespace vxtv
