#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "tests/contract/world.h"

namespace vxcontract {

class ContractTest : public testing::Test {
 protected:
    const std::unique_ptr<World> world = World::make();
};

struct FreeString {
    void operator()(char* text) const { std::free(text); }
};

/// A string from the platform that the test must free.
using OwnedString = std::unique_ptr<char, FreeString>;

}  // namespace vxcontract
