// The stored navigation lists.

#include "cloner_test.h"

namespace vxtest {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

const Lines kBegun = {"E/35 m_ResetMyChannelNavigation: Removing ResetMyChannelNavigation",
                      "TVServiceAPI::CreateServiceNavigation(1, 0)"};
const Lines kListed = {"CCCategoryUtil::GetInstance()", "CCCategoryUtil::GetNavigationList(-1, -1)"};
const Lines kRemovalFailed = {"F/31 m_ResetMyChannelNavigation: RemoveNavigation Failed"};

/// One removal: its log line and its call.
Lines removal(int antennaMode, int serviceMode, const std::string& entry) {
    return {"I/32 m_ResetMyChannelNavigation: Removing Navigation: ServiceMode [" +
                std::to_string(serviceMode) + "]",
            "CCCategoryUtil::RemoveNavigation(" + std::to_string(antennaMode) + ", " +
                std::to_string(serviceMode) + ", " + entry + ")"};
}

Lines removalsOf(const std::string& entry) {
    return joined(removal(0, -1, entry), removal(1, -1, entry), removal(2, -1, entry), removal(-1, 3, entry),
                  removal(-1, 16, entry), removal(-1, 19, entry), removal(-1, 20, entry));
}

class NavigationTest : public ClonerTest {
 protected:
    bool reset() { return engine.m_ResetMyChannelNavigation(); }
};

TEST_F(NavigationTest, resetWithoutServiceNavigationFailsAndListsNothing) {
    for (const int status : {-1, 1}) {
        tv.reset();
        tv.setNavigation({{10, 0, {}, 0, 0}});
        tv.answer("TVServiceAPI::CreateServiceNavigation", status);
        EXPECT_FALSE(reset());
        EXPECT_THAT(
            tv.transcript(),
            ElementsAreArray(joined(
                kBegun, Lines{"E/35 m_ResetMyChannelNavigation: CreateServiceNavigation is failed!"})));
    }
}

TEST_F(NavigationTest, resetOfAnEmptyListRemovesNothing) {
    EXPECT_TRUE(reset());
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, kListed)));
}

TEST_F(NavigationTest, resetWhoseListCannotBeReadRemovesNothing) {
    tv.setNavigation({{10, 0, {}, 0, 0}});
    tv.answer("CCCategoryUtil::GetNavigationList", -1);
    EXPECT_TRUE(reset());
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, kListed)));
}

TEST_F(NavigationTest, resetOfAnEntryOfModeTenRemovesItSevenTimesUnchanged) {
    tv.setNavigation({{10, 1LL << 40, {"Sport", "News"}, -4, 255}});
    EXPECT_TRUE(reset());
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kBegun, kListed,
                                        removalsOf("{10, 1099511627776, [\"Sport\", \"News\"], -4, 255}"))));
}

TEST_F(NavigationTest, resetOfOtherModesRemovesNothing) {
    tv.setNavigation({{5, 0, {}, 0, 0}, {9, 0, {}, 0, 0}, {12, 0, {}, 0, 0}, {-1, 0, {}, 0, 0}});
    EXPECT_TRUE(reset());
    EXPECT_THAT(tv.callsOf("CCCategoryUtil::RemoveNavigation"), IsEmpty());
}

TEST_F(NavigationTest, resetTakesEntriesInListOrderAndPassesOverOtherModes) {
    tv.setNavigation({{11, 1, {}, 0, 0}, {5, 2, {}, 0, 0}, {10, 3, {}, 0, 0}});
    EXPECT_TRUE(reset());
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kBegun, kListed, removalsOf("{11, 1, [], 0, 0}"),
                                                         removalsOf("{10, 3, [], 0, 0}"))));
}

TEST_F(NavigationTest, removalThatFailsEndsTheReset) {
    tv.setNavigation({{10, 0, {}, 0, 0}, {11, 0, {}, 0, 0}});
    tv.answerOnce("CCCategoryUtil::RemoveNavigation", 0, 2);
    EXPECT_FALSE(reset());
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kBegun, kListed, removal(0, -1, "{10, 0, [], 0, 0}"),
                                        removal(1, -1, "{10, 0, [], 0, 0}"), kRemovalFailed)));
}

TEST_F(NavigationTest, removalByServiceModeThatFailsEndsTheReset) {
    tv.setNavigation({{11, 0, {}, 0, 0}});
    tv.answerOnce("CCCategoryUtil::RemoveNavigation", 0, 7);
    EXPECT_FALSE(reset());
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kBegun, kListed, removalsOf("{11, 0, [], 0, 0}"), kRemovalFailed)));
}

TEST_F(NavigationTest, resetReportsNothing) {
    tv.setNavigation({{10, 0, {}, 0, 0}});
    reset();
    EXPECT_EQ(results(), "");
}

TEST_F(NavigationTest, everyLineNamesItsSource) {
    tv.setNavigation({{10, 0, {}, 0, 0}});
    tv.answerOnce("CCCategoryUtil::RemoveNavigation", 0);
    reset();
    ASSERT_EQ(tv.log().size(), 3U);
    for (const LogLine& line : tv.log()) {
        EXPECT_EQ(line.source, "VXCloneHandlerNavigation.cpp");
    }
}

}  // namespace
}  // namespace vxtest
