// The library's client and an application that answers, in processes of their own over a real bus.

#include <chrono>

#include "tests/integration/clone_fixture.h"

namespace vxtest {
namespace {

TEST_F(CloneTest, manyExchangesInARowCostNoDescriptorNoThreadAndNoMemory) {
    Program exchanges = inTelevision(first, {(toolFolder() / "vx-exchange-client").string(),
                                             (toolFolder() / "vx-answering-application").string(), "2000"});
    exchanges.timeLimit = std::chrono::minutes(5);
    const Finished finished = run(exchanges);
    ASSERT_EQ(finished.status, 0) << finished.errors;
    const std::string good = "2000 good, +0 descriptors, +0 threads, ";
    const std::size_t begin = finished.output.find(good);
    ASSERT_NE(begin, std::string::npos) << finished.output;
    // A sanitizer keeps freed memory, and finds leaks itself.
    const long kibibytes = std::stol(finished.output.substr(begin + good.size()));
    EXPECT_TRUE(VX_SANITIZED || kibibytes <= 64) << kibibytes;
}

}  // namespace
}  // namespace vxtest
