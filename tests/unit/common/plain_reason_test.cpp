#include "common/plain_reason.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace vxcommon {
namespace {

TEST(PlainReason, reasonOfTheSystemIsSaidWhateverItStandsIn) {
    const std::runtime_error copied(
        "boost::filesystem::copy_file: No space left on device [system:28]: \"/a\", \"/b\"");
    EXPECT_EQ(systemReason(copied), ENOSPC);
    EXPECT_EQ(plainReason(copied), "No space left on device");
    EXPECT_EQ(plainReason(std::filesystem::filesystem_error(
                  "cannot copy", std::error_code(EACCES, std::generic_category()))),
              "Permission denied");
    EXPECT_EQ(plainReason(std::bad_alloc()), "Cannot allocate memory");
}

TEST(PlainReason, textOfALibraryIsNotSaid) {
    EXPECT_EQ(plainReason(std::out_of_range("basic_string::substr: __pos (which is 5) > this->size()")),
              "a fault in a program's library");
    try {
        FAIL() << nlohmann::json::parse("{");
    } catch (const std::exception& error) {
        EXPECT_EQ(plainReason(error), "a fault in a program's library");
    }
    EXPECT_FALSE(systemReason(std::runtime_error("[system:")));
}

TEST(PlainReason, plainSentenceIsSaidPrintable) {
    EXPECT_EQ(plainReason(std::runtime_error("no\x1b room")), "no\\x1b room");
}

}  // namespace
}  // namespace vxcommon
