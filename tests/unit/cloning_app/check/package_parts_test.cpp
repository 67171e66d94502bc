#include "cloning_app/check/package_parts.h"

#include <gtest/gtest.h>

namespace vxclone {
namespace {

TEST(PackagePartsTest, entryBelongsToItsCategoryToItsApplicationOrToNone) {
    EXPECT_EQ(nameOf(partOf("tvs-chms/tvs-chms.zip")), "channels");
    EXPECT_EQ(nameOf(partOf("logo/boot.png")), "boot-logo");
    EXPECT_EQ(nameOf(partOf("org.some.app/pictures/a.png")), "apps (org.some.app)");
    EXPECT_EQ(nameOf(partOf("of-a-service")), "of-a-service");
    EXPECT_EQ(nameOf(PackagePart{"other"}), "files of the television's services");
    EXPECT_EQ(nameOf(partOf("ProductCloneInfo.txt")), "identity");
}

TEST(PackagePartsTest, stateIsTakenApartCompletely) {
    const auto parts = partsOf({{{"a", Setting::Int{1}}},
                                {{"org.b.app/x"}, {"org.a.app/x"}, {"org.a.app/y"}, {"other"}, {"logo/a"}}});
    EXPECT_EQ(parts.size(), 5U);
    EXPECT_EQ(parts.at({"settings-keys"}).settings.size(), 1U);
    EXPECT_EQ(parts.at({"apps", "org.a.app"}).entries.size(), 2U);
    EXPECT_EQ(parts.at({"apps", "org.b.app"}).entries.size(), 1U);
    EXPECT_EQ(parts.at({"other", "other"}).entries.size(), 1U);
    EXPECT_EQ(parts.at({"boot-logo"}).entries.size(), 1U);
}

TEST(PackagePartsTest, differencesAreNamedAndGroupedByParts) {
    std::vector<Difference> differences = {{"other", "org.b.app/x"},
                                           {"av", "picture-and-sound.backup"},
                                           {"other", "org.a.app/x"},
                                           {"other", "file"}};
    nameParts(differences);
    ASSERT_EQ(differences.size(), 4U);
    EXPECT_EQ(differences[0].application, "org.a.app");
    EXPECT_EQ(differences[1].application, "org.b.app");
    EXPECT_EQ(differences[1].category, "apps");
    EXPECT_EQ(differences[2].application, "");
    EXPECT_TRUE(belongsTo(differences[0], {"apps", "org.a.app"}));
    EXPECT_FALSE(belongsTo(differences[0], {"apps", "org.b.app"}));
    EXPECT_TRUE(belongsTo(differences[2], {"av"}));
    EXPECT_TRUE(belongsTo(differences[3], {"other", "file"}));
    EXPECT_FALSE(belongsTo(differences[3], {"other", "file2"}));
}

}  // namespace
}  // namespace vxclone
