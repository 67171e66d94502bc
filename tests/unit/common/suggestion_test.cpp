#include "common/suggestion.h"

#include <gmock/gmock.h>

namespace vxcommon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> kVerbs = {"backup", "restore", "undo",   "verify",        "inspect",
                                         "diff",   "list",    "status", "support-bundle"};

TEST(EditDistance, sameTextsAreNoChangeApart) {
    EXPECT_EQ(editDistance("", ""), 0U);
    EXPECT_EQ(editDistance("restore", "restore"), 0U);
}

TEST(EditDistance, eachKindOfChangeCountsOne) {
    EXPECT_EQ(editDistance("bakup", "backup"), 1U);
    EXPECT_EQ(editDistance("backkup", "backup"), 1U);
    EXPECT_EQ(editDistance("bacjup", "backup"), 1U);
    EXPECT_EQ(editDistance("bakcup", "backup"), 1U);
}

TEST(EditDistance, changesAddUpAndAreTheSameBothWays) {
    EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
    EXPECT_EQ(editDistance("sitting", "kitten"), 3U);
    EXPECT_EQ(editDistance("", "diff"), 4U);
    EXPECT_EQ(editDistance("diff", ""), 4U);
    EXPECT_EQ(editDistance("rsetoer", "restore"), 2U);
}

TEST(EditDistance, swapAtTheVeryBeginningCountsOne) {
    EXPECT_EQ(editDistance("nudo", "undo"), 1U);
}

TEST(EditDistance, neighboursThatAreNotSwappedCountTwo) {
    EXPECT_EQ(editDistance("ab", "cd"), 2U);
    EXPECT_EQ(editDistance("abc", "cab"), 2U);
}

TEST(EditDistance, capitalsAreSmallLetters) {
    EXPECT_EQ(editDistance("BackUp", "bACKuP"), 0U);
}

TEST(LikelyNames, nearestNamesAloneInTheOrderOfTheList) {
    EXPECT_THAT(likelyNames("bakup", kVerbs), ElementsAre("backup"));
    EXPECT_THAT(likelyNames("stauts", kVerbs), ElementsAre("status"));
    EXPECT_THAT(likelyNames("rstor", kVerbs), ElementsAre("restore"));
    EXPECT_THAT(likelyNames("jet", {"set", "get", "app"}), ElementsAre("set", "get"));
    EXPECT_THAT(likelyNames("set", {"jet", "set"}), ElementsAre("set"));
}

TEST(LikelyNames, aThirdOfTheCharactersMayBeWrongAndNoMoreThanThree) {
    EXPECT_THAT(likelyNames("kin", {"run"}), IsEmpty());
    EXPECT_THAT(likelyNames("xestoxe", kVerbs), ElementsAre("restore"));
    EXPECT_THAT(likelyNames("xxstoxe", kVerbs), IsEmpty());
    EXPECT_THAT(likelyNames("xuppoxt-bunxle", kVerbs), ElementsAre("support-bundle"));
    EXPECT_THAT(likelyNames("xuppoxt-bunxxe", kVerbs), IsEmpty());
}

TEST(LikelyNames, wordThatOnlyNamesHoldIsTakenForThem) {
    EXPECT_THAT(likelyNames("dooreye", {"db/hotel/dooreye", "db/hotel/mode"}),
                ElementsAre("db/hotel/dooreye"));
    EXPECT_THAT(likelyNames("SUPPORT", kVerbs), ElementsAre("support-bundle"));
    EXPECT_THAT(likelyNames("un", kVerbs), IsEmpty());
}

TEST(LikelyNames, moreThanThreeEquallyNearAreNone) {
    EXPECT_THAT(likelyNames("tim", {"tim1", "tim2", "tim3"}), ElementsAre("tim1", "tim2", "tim3"));
    EXPECT_THAT(likelyNames("tim", {"tim1", "tim2", "tim3", "tim4"}), IsEmpty());
}

TEST(LikelyNames, emptyOrHugeWordIsLikeNothing) {
    EXPECT_THAT(likelyNames("", kVerbs), IsEmpty());
    EXPECT_THAT(likelyNames(std::string(10'000'000, 'a'), kVerbs), IsEmpty());
    EXPECT_THAT(likelyNames("backup", {}), IsEmpty());
}

TEST(DidYouMean, isAQuestionWithAllLikelyNames) {
    EXPECT_EQ(didYouMean("bakup", kVerbs), "did you mean backup?");
    EXPECT_EQ(didYouMean("jet", {"set", "get"}), "did you mean set or get?");
    EXPECT_EQ(didYouMean("jet", {"set", "get", "met"}), "did you mean set, get or met?");
    EXPECT_EQ(didYouMean("frobnicate", kVerbs), "");
}

}  // namespace
}  // namespace vxcommon
