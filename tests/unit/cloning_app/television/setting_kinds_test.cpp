#include "cloning_app/television/setting_kinds.h"

#include <gtest/gtest.h>

#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/fake_settings_store.h"

namespace vxclone {
namespace {

TEST(SettingKinds, pinIsSecretAddressesAreIdentityTheRestIsOrdinary) {
    EXPECT_EQ(kindOf(kPinSetting), SettingKind::Secret);
    EXPECT_EQ(kindOf("db/sdk/develop/ip"), SettingKind::Identity);
    EXPECT_EQ(kindOf("db/vxhotel/hotelmenu/welcomemessage"), SettingKind::Ordinary);
    EXPECT_EQ(kindOf(""), SettingKind::Ordinary);
}

TEST(SettingKinds, eachKindHasItsName) {
    EXPECT_EQ(nameOf(SettingKind::Ordinary), "ordinary");
    EXPECT_EQ(nameOf(SettingKind::Identity), "identity");
    EXPECT_EQ(nameOf(SettingKind::Secret), "secret");
}

TEST(SettingValue, valuesAreShownByTheirType) {
    EXPECT_EQ(shownValue({"k", Setting::Int{-12}}), "-12");
    EXPECT_EQ(shownValue({"k", Setting::Bool{true}}), "true");
    EXPECT_EQ(shownValue({"k", std::string("a b")}), "\"a b\"");
    EXPECT_EQ(shownValue({"k", {}}), "(no value)");
    EXPECT_EQ(jsonValue({"k", Setting::Int{7}}), 7);
    EXPECT_EQ(jsonValue({"k", Setting::Bool{false}}), false);
    EXPECT_TRUE(jsonValue({"k", {}}).is_null());
}

TEST(SettingValue, secretIsNeverShownOfWhateverTypeItIs) {
    EXPECT_EQ(shownValue({kPinSetting, std::string("4711")}), "(set)");
    EXPECT_EQ(shownValue({kPinSetting, std::string()}), "(not set)");
    EXPECT_EQ(shownValue({kPinSetting, Setting::Int{4711}}), "(set)");
    EXPECT_EQ(jsonValue({kPinSetting, std::string("4711")}), "(set)");
}

TEST(SettingValue, televisionsValueIsReadAsThePackagesType) {
    FakeSettingsStore& store = FakeSettingsStore::instance();
    store.reset();
    store.set("number", 5);
    store.set("switch", FakeSettingsStore::Bool{true});
    store.set("text", std::string("x"));
    const auto live = settingsOfTelevision({{"number", Setting::Int{1}},
                                            {"switch", Setting::Bool{false}},
                                            {"text", std::string()},
                                            {"none", Setting::Int{1}},
                                            {"text", Setting::Int{1}}});
    EXPECT_TRUE(sameValue(live[0], {"", Setting::Int{5}}));
    EXPECT_TRUE(sameValue(live[1], {"", Setting::Bool{true}}));
    EXPECT_TRUE(sameValue(live[2], {"", std::string("x")}));
    EXPECT_TRUE(sameValue(live[3], {"", {}}));
    EXPECT_TRUE(sameValue(live[4], {"", {}}));
}

TEST(SettingValue, valuesOfTwoTypesAreNeverTheSame) {
    EXPECT_FALSE(sameValue({"", Setting::Int{1}}, {"", Setting::Bool{true}}));
    EXPECT_FALSE(sameValue({"", std::string("1")}, {"", Setting::Int{1}}));
}

}  // namespace
}  // namespace vxclone
