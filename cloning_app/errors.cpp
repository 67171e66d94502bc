#include "cloning_app/errors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <system_error>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

struct Fact {
    ErrorCode code;
    int exitStatus;
    std::string_view name;
};

constexpr std::array kCatalogue = {
    Fact{ErrorCode::CategoryFailed, 1, "category-failed"},
    Fact{ErrorCode::BadArguments, 2, "bad-arguments"},
    Fact{ErrorCode::UnknownCategory, 2, "unknown-category"},
    Fact{ErrorCode::MountPoint, 2, "mount-point"},
    Fact{ErrorCode::NotAPackage, 3, "not-a-package"},
    Fact{ErrorCode::UnsafeEntry, 3, "unsafe-entry"},
    Fact{ErrorCode::TooLarge, 3, "too-large"},
    Fact{ErrorCode::SettingsDamaged, 3, "settings-damaged"},
    Fact{ErrorCode::Unreadable, 3, "unreadable"},
    Fact{ErrorCode::NotComplete, 3, "not-complete"},
    Fact{ErrorCode::DoesNotFit, 4, "does-not-fit"},
    Fact{ErrorCode::Altered, 5, "altered"},
    Fact{ErrorCode::NoKey, 7, "no-key"},
    Fact{ErrorCode::StickMissing, 6, "stick-missing"},
    Fact{ErrorCode::StickReadOnly, 6, "stick-read-only"},
    Fact{ErrorCode::StickFull, 6, "stick-full"},
    Fact{ErrorCode::StickLimit, 6, "stick-limit"},
    Fact{ErrorCode::StickIo, 6, "stick-io"},
    Fact{ErrorCode::TelevisionFull, 6, "television-full"},
    Fact{ErrorCode::TelevisionIo, 6, "television-io"},
    Fact{ErrorCode::TelevisionBusy, 6, "television-busy"},
    Fact{ErrorCode::SettingsNotSaved, 6, "settings-not-saved"},
    Fact{ErrorCode::IdentityUnusable, 6, "identity-unusable"},
    Fact{ErrorCode::NotSealed, 6, "not-sealed"},
    Fact{ErrorCode::HungUp, 128 + SIGHUP, "hung-up"},
    Fact{ErrorCode::Interrupted, 128 + SIGINT, "interrupted"},
    Fact{ErrorCode::Terminated, 128 + SIGTERM, "terminated"},
    Fact{ErrorCode::Internal, 70, "internal"},
};

const Fact& factOf(ErrorCode code) {
    const auto* const fact = std::find_if(kCatalogue.begin(), kCatalogue.end(),
                                          [code](const Fact& candidate) { return candidate.code == code; });
    return fact == kCatalogue.end() ? kCatalogue.back() : *fact;
}

struct WriteFact {
    Place place;
    int errorNumber;  ///< 0 stands for every other reason
    ErrorCode code;
    std::string_view nextStep;
};

constexpr std::string_view kTakeAnotherStick = "try again, or take another stick";
constexpr std::string_view kFreeTheStick = "free some space on the stick or take another one";
constexpr std::string_view kFreeTheTelevision = "free some space on the television";

constexpr std::array kWriteFacts = {
    WriteFact{Place::Stick, ENOSPC, ErrorCode::StickFull, kFreeTheStick},
    WriteFact{Place::Stick, EDQUOT, ErrorCode::StickFull, kFreeTheStick},
    WriteFact{Place::Stick, EROFS, ErrorCode::StickReadOnly,
              "move its write-protect switch or take another stick"},
    WriteFact{Place::Stick, EACCES, ErrorCode::StickReadOnly, "run vxclone as a user who may write there"},
    WriteFact{Place::Stick, EPERM, ErrorCode::StickReadOnly, "run vxclone as a user who may write there"},
    WriteFact{Place::Stick, EFBIG, ErrorCode::StickLimit, "format the stick as exFAT or take another one"},
    WriteFact{Place::Stick, 0, ErrorCode::StickIo, kTakeAnotherStick},
    WriteFact{Place::Television, ENOSPC, ErrorCode::TelevisionFull, kFreeTheTelevision},
    WriteFact{Place::Television, EDQUOT, ErrorCode::TelevisionFull, kFreeTheTelevision},
    WriteFact{Place::Television, 0, ErrorCode::TelevisionIo,
              "check the television's disk and run vxclone as root"},
};

std::string sentenceFor(std::string_view verb, std::string_view path, int errorNumber,
                        std::string_view nextStep) {
    return "cannot " + std::string(verb) + " " + vxcommon::printable(path) + ": " +
           std::generic_category().message(errorNumber) + "; " + std::string(nextStep);
}

}  // namespace

int exitStatusOf(ErrorCode code) {
    return factOf(code).exitStatus;
}

std::string_view nameOf(ErrorCode code) {
    return factOf(code).name;
}

Error readError(Place place, std::string_view path, int errorNumber) {
    const bool stick = place == Place::Stick;
    return {stick ? ErrorCode::Unreadable : ErrorCode::TelevisionIo,
            sentenceFor("read", path, errorNumber,
                        stick ? kTakeAnotherStick : "check the television's disk and run vxclone as root")};
}

Error writeError(Place place, std::string_view path, int errorNumber) {
    const auto* const fact =
        std::find_if(kWriteFacts.begin(), kWriteFacts.end(), [=](const WriteFact& candidate) {
            return candidate.place == place &&
                   (candidate.errorNumber == errorNumber || candidate.errorNumber == 0);
        });
    return {fact->code, sentenceFor("write", path, errorNumber, fact->nextStep)};
}

Error stopError(int signal) {
    switch (signal) {
        case SIGTERM:
            return {ErrorCode::Terminated, "stopped before the end; start again when ready"};
        case SIGHUP:
            return {ErrorCode::HungUp, "the terminal went away; start again when ready"};
        default:
            return {ErrorCode::Interrupted, "stopped by you before the end; start again when ready"};
    }
}

}  // namespace vxclone
