#include "cloning_app/base/errors.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <set>

#include "cloning_app/base/error_catalogue.h"

namespace vxclone {
namespace {

using testing::HasSubstr;

TEST(Errors, everyCodeHasANameOfItsOwnAndAStatusThatIsNotZero) {
    std::set<std::string_view> names;
    for (int code = 0; code <= static_cast<int>(ErrorCode::Internal); ++code) {
        const auto value = static_cast<ErrorCode>(code);
        EXPECT_TRUE(names.insert(nameOf(value)).second) << nameOf(value);
        EXPECT_NE(exitStatusOf(value), 0);
    }
}

TEST(Errors, writeErrorOnStickNamesCauseAndNextStep) {
    const Error full = writeError(Place::Stick, "/media/usb/clone/a", ENOSPC);
    EXPECT_EQ(full.code, ErrorCode::StickFull);
    EXPECT_THAT(full.sentence,
                HasSubstr("/media/usb/clone/a: No space left on device; free some space on the stick"));
    EXPECT_EQ(writeError(Place::Stick, "x", EROFS).code, ErrorCode::StickReadOnly);
    EXPECT_EQ(writeError(Place::Stick, "x", EFBIG).code, ErrorCode::StickLimit);
    EXPECT_EQ(writeError(Place::Stick, "x", EIO).code, ErrorCode::StickIo);
}

TEST(Errors, writeErrorOnTelevisionIsTheTelevisionsOwn) {
    EXPECT_EQ(writeError(Place::Television, "x", ENOSPC).code, ErrorCode::TelevisionFull);
    EXPECT_EQ(writeError(Place::Television, "x", EROFS).code, ErrorCode::TelevisionIo);
    EXPECT_EQ(exitStatusOf(ErrorCode::TelevisionFull), 6);
}

TEST(Errors, safetyBackupThatIsNotCompleteNamesWhatDeclaresWhatIsNotThere) {
    const ErrorFact& fact = factOf(ErrorCode::SafetyIncomplete);
    EXPECT_EQ(fact.cause,
              "the safety backup lacks what the restore may change, so the restore did not begin");
    EXPECT_EQ(fact.nextStep,
              "find out why with vxclone backup, name with --without what this television does not have, "
              "leave the category out, or restore with --no-safety");
}

TEST(Errors, stopIsOneStatusWhateverTheSignal) {
    EXPECT_EQ(exitStatusOf(stopError(SIGINT).code), 8);
    EXPECT_EQ(exitStatusOf(stopError(SIGTERM).code), 8);
    EXPECT_EQ(exitStatusOf(stopError(SIGHUP).code), 8);
}

}  // namespace
}  // namespace vxclone
