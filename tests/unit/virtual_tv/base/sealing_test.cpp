#include "virtual_tv/base/sealing.h"

#include <gtest/gtest.h>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

const SealingKey kKey(std::string(SealingKey::kSize, 'k'));
const std::string kNonce(kNonceSize, 'n');

ErrorCode refusal(const Result<std::string>& unsealed) {
    EXPECT_FALSE(unsealed);
    return unsealed ? ErrorCode::CannotRun : unsealed.error().code;
}

TEST(Sealing, unsealOfASealedTextIsTheText) {
    for (const std::string& text : {std::string(), std::string("x"), std::string(5000, '\0')}) {
        const auto sealed = seal(kKey, kNonce, text, "context");
        ASSERT_TRUE(sealed);
        EXPECT_EQ(sealed->size(), text.size() + kTagSize);
        EXPECT_EQ(unseal(kKey, kNonce, *sealed, "context").value(), text);
    }
}

TEST(Sealing, sealIsThatOfTheStandard) {
    // A published test case: key, nonce and one block of zeros.
    const auto sealed = seal(SealingKey(std::string(SealingKey::kSize, '\0')), std::string(kNonceSize, '\0'),
                             std::string(16, '\0'), "");
    ASSERT_TRUE(sealed);
    EXPECT_EQ(test::hex(*sealed), "cea7403d4d606b6e074ec5d3baf39d18d0d1c8a799996bf0265b98b5d48ab919");
}

TEST(Sealing, anyChangedBitIsRefused) {
    const std::string sealed = seal(kKey, kNonce, "a secret", "context").value();
    for (std::size_t bit = 0; bit < sealed.size() * 8; ++bit) {
        EXPECT_EQ(refusal(unseal(kKey, kNonce, test::flipped(sealed, bit), "context")),
                  ErrorCode::BrokenSeal);
    }
}

TEST(Sealing, otherKeyNonceOrContextIsRefused) {
    const std::string sealed = seal(kKey, kNonce, "a secret", "context").value();
    EXPECT_EQ(refusal(unseal(SealingKey(std::string(32, 'o')), kNonce, sealed, "context")),
              ErrorCode::BrokenSeal);
    EXPECT_EQ(refusal(unseal(kKey, std::string(kNonceSize, 'o'), sealed, "context")), ErrorCode::BrokenSeal);
    EXPECT_EQ(refusal(unseal(kKey, kNonce, sealed, "other")), ErrorCode::BrokenSeal);
    EXPECT_EQ(refusal(unseal(kKey, kNonce, "short", "context")), ErrorCode::BrokenSeal);
}

TEST(Sealing, derivedKeyIsAnotherForEachPurpose) {
    const auto first = kKey.derive("one");
    const auto second = kKey.derive("two");
    ASSERT_TRUE(first && second);
    const std::string sealed = seal(*first, kNonce, "a secret", "").value();
    EXPECT_EQ(unseal(kKey.derive("one").value(), kNonce, sealed, "").value(), "a secret");
    EXPECT_EQ(refusal(unseal(*second, kNonce, sealed, "")), ErrorCode::BrokenSeal);
    EXPECT_EQ(refusal(unseal(kKey, kNonce, sealed, "")), ErrorCode::BrokenSeal);
}

TEST(Sealing, randomBytesDiffer) {
    EXPECT_EQ(randomBytes(32)->size(), 32U);
    EXPECT_NE(randomBytes(32).value(), randomBytes(32).value());
}

}  // namespace
}  // namespace vxtv
