// Runs the commands of every document and compares the quoted output.

#include "tests/documents/documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>

#include "tests/documents/checkout.h"
#include "tests/documents/execution.h"

namespace vxtest {
namespace {

std::vector<std::string> documentsWithBlocks() {
    std::vector<std::string> found = documents();
    std::erase_if(found, [](const std::string& name) {
        const Markdown document = readDocument(name);
        return document.blocks.empty() && document.problems.empty();
    });
    return found;
}

class DocumentTest : public testing::TestWithParam<std::string> {};

TEST_P(DocumentTest, holdsWhatItSays) {
    const Plan plan = planOf(readDocument(GetParam()));
    for (const std::string& left : plan.leftOut) std::cout << left << '\n';
    const Checkout checkout;
    std::string all;
    for (const std::string& problem : problemsOf(plan, {checkout.folder(), checkout.searchPath()})) {
        all += problem + '\n';
    }
    EXPECT_TRUE(all.empty()) << all;
}

INSTANTIATE_TEST_SUITE_P(
    Every, DocumentTest, testing::ValuesIn(documentsWithBlocks()), [](const auto& tested) {
        std::string name = tested.param;
        std::replace_if(
            name.begin(), name.end(),
            [](char character) { return std::isalnum(static_cast<unsigned char>(character)) == 0; }, '_');
        return name;
    });

}  // namespace
}  // namespace vxtest
