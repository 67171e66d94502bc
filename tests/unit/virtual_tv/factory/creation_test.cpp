#include "virtual_tv/factory/creation.h"

#include <gtest/gtest.h>

#include <iterator>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class CreationTest : public testing::Test {
 protected:
    ErrorCode refusalOf(const fs::path& place, const Profile& profile = test::smallProfile()) {
        const auto before = entries();
        const Result<Television> television = createTelevision(place, profile);
        EXPECT_FALSE(television);
        EXPECT_EQ(before, entries());
        return television ? ErrorCode::CannotRun : television.error().code;
    }

    std::ptrdiff_t entries() const {
        return std::distance(fs::recursive_directory_iterator(folder_.path()),
                             fs::recursive_directory_iterator());
    }

    test::TestFolder folder_;
    fs::path place_ = folder_.path() / "tv";
};

TEST_F(CreationTest, createMakesTheWholeFolderAndNothingBeside) {
    Profile profile = test::smallProfile();
    test::writeFile(folder_.path() / "picture", "bytes");
    profile.pictures = {{"boot-logo", "logo.png", folder_.path() / "picture"}};
    ASSERT_TRUE(createTelevision(place_, profile));
    for (const char* name :
         {"opt", "tmp", "media", "log", "run", "opt/usr/data/hotel/homemenu", "opt/usr/data/hotel/mbrlogo",
          "secure", "usr/share/wqd/vx-clone-api-key", "opt/usr/apps/org.vorta.vxhotel-cloning/data"}) {
        EXPECT_TRUE(fs::is_directory(place_ / name)) << name;
    }
    EXPECT_EQ("bytes", test::readFile(place_ / "opt/usr/data/hotel/bootlogo/logo.png"));
    fs::remove(folder_.path() / "picture");
    EXPECT_EQ(1, std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
}

TEST_F(CreationTest, createdTelevisionKnowsWhatItIs) {
    const Television television = test::makeTelevision(place_);
    const auto identity = television.systemInformation().identity();
    ASSERT_TRUE(identity);
    EXPECT_EQ("VX55", identity->model);
    EXPECT_EQ("VX-EU", identity->productTag);
    EXPECT_EQ(3, identity->tunerType);
    EXPECT_EQ(1, television.systemInformation().featureInt("network").value());
    EXPECT_FALSE(television.systemInformation().featureBool("tuner").value());
    EXPECT_EQ(ErrorCode::WrongType, television.systemInformation().featureBool("network").error().code);
    EXPECT_EQ(ErrorCode::UnknownKey, television.systemInformation().featureInt("none").error().code);
}

TEST_F(CreationTest, existingPathIsRefusedAndKept) {
    fs::create_directory(place_);
    EXPECT_EQ(ErrorCode::AlreadyExists, refusalOf(place_));
    EXPECT_EQ(ErrorCode::AlreadyExists, refusalOf(place_ / ""));
    fs::create_symlink("nowhere", folder_.path() / "link");
    EXPECT_EQ(ErrorCode::AlreadyExists, refusalOf(folder_.path() / "link"));
    test::writeFile(folder_.path() / "file", "");
    EXPECT_EQ(ErrorCode::AlreadyExists, refusalOf(folder_.path() / "file"));
}

TEST_F(CreationTest, missingParentIsRefused) {
    EXPECT_EQ(ErrorCode::BadArgument, refusalOf(folder_.path() / "none" / "tv"));
}

TEST_F(CreationTest, pictureThatWentMeanwhileLeavesNothing) {
    Profile profile = test::smallProfile();
    profile.pictures = {{"boot-logo", "logo.png", folder_.path() / "gone"}};
    EXPECT_EQ(ErrorCode::Io, refusalOf(place_, profile));
}

TEST_F(CreationTest, slashAtTheEndOfTheNameIsFine) {
    EXPECT_TRUE(createTelevision(place_ / "", test::smallProfile()));
    EXPECT_TRUE(Television::open(place_ / "opt" / ".."));
}

}  // namespace
}  // namespace vxtv
