#include "cloning_app/television/foreign_text.h"

#include <gmock/gmock.h>

#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/fake_settings_store.h"

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kTitle = "db/vxhotel/welmsg/welcomemsgtitle";

TEST(ForeignText, everySequenceThatIsNoUtf8IsTold) {
    for (const char* const text :
         {"", "plain", "caf\xc3\xa9", "\xe2\x82\xac", "\xf0\x9f\x8f\xa8", "\x01\x7f", "\xef\xbf\xbd"}) {
        EXPECT_TRUE(isUtf8(text)) << text;
    }
    for (const char* const text :
         {"caf\xe9", "\xe9t\xe9", "\x80", "\xc3", "\xc0\xaf", "\xe0\x80\x80", "\xed\xa0\x80", "\xf0\x9f\x8f",
          "\xf4\x90\x80\x80", "\xff", "ok\xc3\xa9\xfe"}) {
        EXPECT_FALSE(isUtf8(text)) << text;
    }
}

TEST(ForeignText, onlyATextThatTheTelevisionHoldsInOtherBytesCannotTravel) {
    FakeSettingsStore::instance().reset();
    store::writeString(kTitle, "caf\xe9");
    store::writeString(kPinSetting, "\xc3\xa9");
    const std::string mangled = "caf\xef\xbf\xbd";
    EXPECT_THAT(textsThatCannotTravel({{kTitle, mangled}, {kPinSetting, std::string("\xc3\xa9")}}),
                ElementsAre(kTitle));
    // Keys that the television does not report any more, and keys that are not cloned, are not checked.
    EXPECT_THAT(textsThatCannotTravel({{"db/home/url_launcher/AppID", mangled}, {"a", mangled}}), IsEmpty());
    EXPECT_THAT(textsThatCannotTravel({{kVolume, Setting::Int{7}}}), IsEmpty());
}

TEST(ForeignText, longestTextIsNamed) {
    FakeSettingsStore::instance().reset();
    EXPECT_EQ(longestText().bytes, 0U);
    store::writeString(kTitle, "abc");
    store::writeString(kPinSetting, "ab");
    EXPECT_EQ(longestText().key, kTitle);
    EXPECT_EQ(longestText().bytes, 3U);
}

}  // namespace
}  // namespace vxclone
