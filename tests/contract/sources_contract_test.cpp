// What every list of sources must do.

#include <vector>

#include "platform/source_api.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using Items = std::multimap<int, CSourceItem>;

class Sources : public ContractTest {
 protected:
    bool setIcons() const {
        const std::string picture = world->picture();
        return CSourceAPI::Get()->SetCustomIconPath(world->sourceId(), picture, {picture, picture}, 0);
    }
};

TEST_F(Sources, listHasTheKeysInOrderAndThoseOfOneKeyAsTheyCame) {
    std::shared_ptr<Items> list;
    ASSERT_TRUE(CSourceAPI::Get()->GetSourceList(&list));
    ASSERT_NE(list, nullptr);
    std::vector<std::string> seen;
    for (const auto& [key, item] : *list) {
        seen.push_back(std::to_string(key) + " " + item.name + " " + std::to_string(item.id) + " " +
                       std::to_string(item.iconType));
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"0 TV 1 1", "1 Box 10 0", "1 HDMI 2 11 2"}));
}

TEST_F(Sources, eachListIsTheCallersOwn) {
    std::shared_ptr<Items> first;
    std::shared_ptr<Items> second;
    ASSERT_TRUE(CSourceAPI::Get()->GetSourceList(&first));
    first->clear();
    ASSERT_TRUE(CSourceAPI::Get()->GetSourceList(&second));
    EXPECT_EQ(second->size(), 3U);
}

TEST_F(Sources, iconsMayBeSetAgain) {
    EXPECT_TRUE(setIcons());
    EXPECT_TRUE(setIcons());
}

TEST_F(Sources, callThatIsToldToFailLeavesTheList) {
    std::shared_ptr<Items> list;
    world->failOnce("CSourceAPI::GetSourceList", 0, 1);
    world->failOnce("CSourceAPI::SetCustomIconPath", 0, 1);
    EXPECT_FALSE(CSourceAPI::Get()->GetSourceList(&list));
    EXPECT_EQ(list, nullptr);
    EXPECT_FALSE(setIcons());
    EXPECT_TRUE(CSourceAPI::Get()->GetSourceList(&list));
    EXPECT_TRUE(setIcons());
}

}  // namespace
}  // namespace vxcontract
