#include "cloning_app/television/category.h"

#include <gmock/gmock.h>

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Category, indexInTheTableIsTheValue) {
    for (std::size_t index = 0; index < categories().size(); ++index) {
        EXPECT_EQ(static_cast<std::size_t>(categories()[index].value), index);
    }
}

TEST(Category, parseOfNamesIsInLibraryOrderEachOnce) {
    const auto list = parseCategories("apps,channels,factory,channels");
    ASSERT_TRUE(list);
    EXPECT_THAT(*list, ElementsAre(VXCLONE_FACTORY_SETTINGS, VXCLONE_BROADCAST_TVS,
                                   VXCLONE_VXHOTEL_FIRSTSCREEN_DATA));
}

TEST(Category, parseOfEnumeratorsIsTheSameAsOfNames) {
    for (const Category& category : categories()) {
        const auto byName = parseCategories(category.name);
        const auto byEnumerator = parseCategories(category.enumerator);
        ASSERT_TRUE(byName && byEnumerator) << category.name;
        EXPECT_EQ(*byName, *byEnumerator);
        EXPECT_THAT(*byName, ElementsAre(category.value));
    }
}

TEST(Category, parseOfUnknownNameIsRefusedNamingItAndAllThatThereAre) {
    for (const char* const list :
         {"channels,chanels", "", " ", "channels,", ",channels", "channels, ,apps", "chan nels"}) {
        const auto parsed = parseCategories(list);
        ASSERT_FALSE(parsed) << list;
        EXPECT_EQ(parsed.error().code, ErrorCode::UnknownCategory);
        for (const Category& category : categories()) {
            EXPECT_THAT(parsed.error().sentence, HasSubstr(std::string(category.name)));
        }
    }
    EXPECT_THAT(parseCategories("chanels").error().sentence, HasSubstr("\"chanels\""));
}

TEST(Category, parseTakesBlanksAroundNamesAndCapitals) {
    for (const char* const list :
         {"av, channels", " av ,\tchannels ", "AV,Channels", "vxclone_av_settings,CHANNELS"}) {
        const auto parsed = parseCategories(list);
        ASSERT_TRUE(parsed) << list;
        EXPECT_THAT(*parsed, ElementsAre(VXCLONE_AV_SETTINGS, VXCLONE_BROADCAST_TVS)) << list;
    }
}

TEST(Category, parseOfMistypedNameAsksForTheOneThatIsMeant) {
    const std::string all =
        "hoose from: factory av home-data was settings-keys channels settings guide timers boot-logo "
        "home-menu apps "
        "mbr-logo ambient network-time";
    EXPECT_EQ(parseCategories("av,chanels").error().sentence,
              "there is no category \"chanels\"; did you mean channels? C" + all);
    EXPECT_EQ(parseCategories("picture").error().sentence, "there is no category \"picture\"; c" + all);
}

TEST(Category, parseOfNameWithControlCharactersDoesNotPrintThem) {
    EXPECT_THAT(parseCategories("a\x1b[2J").error().sentence, HasSubstr("a\\x1b[2J"));
}

TEST(Category, backupLeavesOutTheFourThatTheLibraryNeverRunsButForTheLogos) {
    for (const Category& category : categories()) {
        const Handling handling = handlingOf(category, Direction::Backup);
        const bool leftOut = category.value == VXCLONE_BROADCAST_IPG_DATA ||
                             category.value == VXCLONE_VXHOTEL_AMBIENT_APP_DATA;
        const bool added =
            category.value == VXCLONE_HOSPITALITY_LOGO || category.value == VXCLONE_VXHOTEL_MBR_LOGO;
        EXPECT_EQ(handling == Handling::NotInBackup, leftOut) << category.name;
        EXPECT_EQ(handling == Handling::Added, added) << category.name;
    }
}

TEST(Category, entriesThatMarkAPackageAreThoseOfTheLibrary) {
    for (const char* const name : {"ProductCloneInfo.txt", "validate.txt", "vconf", "logo", "VXMBRLogo",
                                   "VXHotel", "tvtimer", "tvs-chms", "org.vorta.homedatacontrol-service"}) {
        EXPECT_TRUE(isKnownEntry(name)) << name;
    }
    for (const char* const name : {"", "Vconf", "photos", "vconf.bak", "factory.backup"}) {
        EXPECT_FALSE(isKnownEntry(name)) << name;
    }
}

}  // namespace
}  // namespace vxclone
