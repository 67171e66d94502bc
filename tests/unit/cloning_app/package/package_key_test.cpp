#include "cloning_app/package/package_key.h"

#include <gtest/gtest.h>

#include "tests/unit/cloning_app/fake_secure_storage.h"

namespace vxclone {
namespace {

class PackageKeyTest : public testing::Test {
 protected:
    PackageKeyTest() { FakeSecureStorage::reset(); }

    static void hold(const std::string& bytes) { FakeSecureStorage::instance().packageKey = bytes; }
};

TEST_F(PackageKeyTest, codeIsTheHmacOfTheText) {
    // From RFC 4868, section 2.7.2.1: a key of 32 bytes.
    hold(std::string(32, '\x0b'));
    EXPECT_EQ(PackageKey::ofTelevision()->codeOf("Hi There"),
              "198a607eb44bfbc69903a0f1cf2bbdc5ba0aa3f3d9ae3c1c7a3b1696a0b68cf7");
}

TEST_F(PackageKeyTest, onlyTheTextsOwnCodeIsAccepted) {
    const auto key = PackageKey::ofTelevision();
    const std::string code = key->codeOf("text");
    EXPECT_TRUE(key->accepts("text", code));
    EXPECT_FALSE(key->accepts("texs", code));
    EXPECT_FALSE(key->accepts("text", ""));
    EXPECT_FALSE(key->accepts("text", code + "0"));
    for (std::size_t digit = 0; digit < code.size(); ++digit) {
        std::string other = code;
        other[digit] = other[digit] == '0' ? '1' : '0';
        EXPECT_FALSE(key->accepts("text", other)) << digit;
    }
}

TEST_F(PackageKeyTest, televisionWithoutAUsableEntryHasNone) {
    FakeSecureStorage::instance().packageKey.reset();
    EXPECT_FALSE(PackageKey::ofTelevision());
    for (const std::size_t size : {std::size_t{0}, std::size_t{31}, std::size_t{33}, std::size_t{64}}) {
        hold(std::string(size, 'k'));
        EXPECT_FALSE(PackageKey::ofTelevision()) << size;
    }
}

TEST_F(PackageKeyTest, nulAtItsEndIsNotPartOfTheKey) {
    const std::string code = PackageKey::ofTelevision()->codeOf("text");
    hold(std::string(32, 'k') + '\0');
    EXPECT_EQ(PackageKey::ofTelevision()->codeOf("text"), code);
}

TEST_F(PackageKeyTest, storagesBufferComesBackWiped) {
    EXPECT_TRUE(PackageKey::ofTelevision());
    EXPECT_TRUE(FakeSecureStorage::instance().givenBackWiped);
}

TEST_F(PackageKeyTest, keyIsGoneFromWhereItWasMovedFrom) {
    auto key = PackageKey::ofTelevision();
    const std::string code = key->codeOf("text");
    const PackageKey other = std::move(*key);
    EXPECT_EQ(other.codeOf("text"), code);
    EXPECT_NE(key->codeOf("text"), code);
}

}  // namespace
}  // namespace vxclone
