#include "cloning_app/package/identity.h"

#include <gmock/gmock.h>

#include "tests/unit/cloning_app/fake_system_info.h"

namespace vxclone {
namespace {

using testing::HasSubstr;

class IdentityTest : public testing::Test {
 protected:
    IdentityTest() { FakeSystemInfo::reset(); }

    static void expectUnusable(const Identity& identity, const std::string& why) {
        const auto text = identityText(identity);
        ASSERT_FALSE(text) << why;
        EXPECT_EQ(text.error().code, ErrorCode::IdentityUnusable);
        EXPECT_THAT(text.error().sentence, HasSubstr(why));
    }

    FakeSystemInfo& info_ = FakeSystemInfo::instance();
    const Identity good_ = {"VX55R1", "VX-R1-EU", 3};
};

TEST_F(IdentityTest, textIsTagModelAndTunerALineEach) {
    EXPECT_EQ(identityText(televisionIdentity()).value(), "VX-R1-EU\nVX55R1\n3\n");
}

TEST_F(IdentityTest, regionalTunerCarriesBitSeven) {
    info_.regionalTuner = true;
    EXPECT_EQ(televisionIdentity().tuner, 0x83);
    info_.tuner = 0x81;
    EXPECT_EQ(televisionIdentity().tuner, 0x81);
}

TEST_F(IdentityTest, whatTheTelevisionDoesNotTellIsNoneAndUnusable) {
    info_ = {std::nullopt, "tag", 3, false};
    expectUnusable(televisionIdentity(), "model cannot be read");
    info_ = {"model", std::nullopt, 3, false};
    expectUnusable(televisionIdentity(), "product tag cannot be read");
    info_ = {"model", "tag", std::nullopt, false};
    expectUnusable(televisionIdentity(), "tuner type cannot be read");
    info_ = {"model", "tag", 3, std::nullopt};
    expectUnusable(televisionIdentity(), "tuner type cannot be read");
}

TEST_F(IdentityTest, longestValuesAreTakenAndOneMoreIsRefused) {
    Identity identity = good_;
    identity.productTag = std::string(127, 't');
    identity.model = std::string(254, 'm');
    EXPECT_TRUE(identityText(identity));
    identity.productTag = std::string(128, 't');
    expectUnusable(identity, "product tag is longer than 127");
    identity.productTag = "tag";
    identity.model = std::string(255, 'm');
    expectUnusable(identity, "model is longer than 254");
}

TEST_F(IdentityTest, lineEndInAValueIsRefused) {
    for (const char* const text : {"a\nb", "a\n", "\r"}) {
        Identity identity = good_;
        identity.model = text;
        expectUnusable(identity, "model has a line end");
        identity = good_;
        identity.productTag = text;
        expectUnusable(identity, "product tag has a line end");
    }
}

TEST_F(IdentityTest, parseReadsWhatWasWritten) {
    const Identity read = parseIdentity("VX-R1-EU\nVX55R1\n131\n");
    EXPECT_EQ(read.productTag, "VX-R1-EU");
    EXPECT_EQ(read.model, "VX55R1");
    EXPECT_EQ(read.tuner, 131);
    EXPECT_EQ(parseIdentity("a\nb\n-7").tuner, -7);
}

TEST_F(IdentityTest, parseOfLessOrOfNoNumberIsNone) {
    EXPECT_FALSE(parseIdentity("").productTag);
    EXPECT_EQ(parseIdentity("tag").productTag, "tag");
    EXPECT_FALSE(parseIdentity("tag").model);
    EXPECT_FALSE(parseIdentity("tag\nmodel\n").tuner);
    for (const char* const tuner : {"abc", "3x", " 3", "+3", "", "99999999999", "3\r"}) {
        EXPECT_FALSE(parseIdentity("tag\nmodel\n" + std::string(tuner) + "\n").tuner) << tuner;
    }
}

}  // namespace
}  // namespace vxclone
