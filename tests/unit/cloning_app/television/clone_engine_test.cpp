#include "cloning_app/television/clone_engine.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <system_error>

namespace vxclone {
namespace {

using testing::HasSubstr;

std::system_error notJoinable() {
    return std::system_error(std::make_error_code(std::errc::invalid_argument));
}

TEST(CloneEngine, callThatReturnsNotZeroIsGood) {
    EXPECT_TRUE(callLibrary([] { return 1; }, false));
}

TEST(CloneEngine, callThatReturnsZeroIsAnError) {
    const auto called = callLibrary([] { return 0; }, false);
    ASSERT_FALSE(called);
    EXPECT_EQ(called.error().code, ErrorCode::Internal);
}

TEST(CloneEngine, restoreWithoutAppsThatEndsByThrowingIsGood) {
    EXPECT_TRUE(callLibrary([]() -> int { throw notJoinable(); }, true));
}

TEST(CloneEngine, sameExceptionOfAnotherCallIsAnError) {
    const auto called = callLibrary([]() -> int { throw notJoinable(); }, false);
    ASSERT_FALSE(called);
    EXPECT_EQ(called.error().code, ErrorCode::Internal);
}

TEST(CloneEngine, threadThatCouldNotStartIsAnErrorEvenWithoutApps) {
    const auto shortOfThreads = []() -> int {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    };
    EXPECT_FALSE(callLibrary(shortOfThreads, true));
}

TEST(CloneEngine, anyOtherExceptionIsAnErrorWithItsText) {
    const auto called = callLibrary([]() -> int { throw std::runtime_error("no such thing"); }, true);
    ASSERT_FALSE(called);
    EXPECT_THAT(called.error().sentence, HasSubstr("no such thing"));
    EXPECT_FALSE(callLibrary([]() -> int { throw 1; }, true));
}

TEST(CloneEngine, questionIsAnsweredWithWhatTheLibraryReturned) {
    EXPECT_EQ(askLibrary([] { return 0; }).value(), 0);
    EXPECT_EQ(askLibrary([] { return -1; }).value(), -1);
}

TEST(CloneEngine, questionThatEndsByThrowingIsAnErrorWithItsText) {
    const auto full = askLibrary([]() -> int {
        throw std::system_error(std::make_error_code(std::errc::no_space_on_device), "copy");
    });
    ASSERT_FALSE(full);
    EXPECT_EQ(full.error().code, ErrorCode::TelevisionFull);
    EXPECT_EQ(
        full.error().sentence,
        "the clone library broke off: No space left on device; free some space on the television's disk "
        "and try again");
    EXPECT_FALSE(askLibrary([]() -> int { throw 1; }));
}

TEST(CloneEngine, textOfAnotherLibraryIsNotSaid) {
    const auto asked = [](const char* text) {
        return askLibrary([text]() -> int { throw std::runtime_error(text); }).error();
    };
    const Error full =
        asked("boost::filesystem::copy_file: No space left on device [system:28]: \"/a\", \"/b\"");
    EXPECT_EQ(full.code, ErrorCode::TelevisionFull);
    EXPECT_THAT(full.sentence, testing::Not(HasSubstr("boost")));
    EXPECT_EQ(asked("boost::bad_get: failed value get").sentence,
              "the clone library broke off: a fault in a program's library; restart the television and try "
              "again");
}

}  // namespace
}  // namespace vxclone
