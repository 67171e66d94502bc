#include "cloning_app/base/errors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include "cloning_app/base/error_catalogue.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// If the next step is empty, the catalogue's applies.
struct WriteFact {
    Place place;
    int errorNumber;  ///< 0 means every other reason
    ErrorCode code;
    std::string_view nextStep = {};
};

constexpr std::string_view kMayNotWrite = "run vxclone as a user who may write there";

constexpr std::array kWriteFacts = {
    WriteFact{Place::Stick, ENOSPC, ErrorCode::StickFull},
    WriteFact{Place::Stick, EDQUOT, ErrorCode::StickFull},
    WriteFact{Place::Stick, EROFS, ErrorCode::StickReadOnly},
    WriteFact{Place::Stick, EACCES, ErrorCode::StickReadOnly, kMayNotWrite},
    WriteFact{Place::Stick, EPERM, ErrorCode::StickReadOnly, kMayNotWrite},
    WriteFact{Place::Stick, EFBIG, ErrorCode::StickLimit},
    WriteFact{Place::Stick, 0, ErrorCode::StickIo},
    WriteFact{Place::Television, ENOSPC, ErrorCode::TelevisionFull},
    WriteFact{Place::Television, EDQUOT, ErrorCode::TelevisionFull},
    WriteFact{Place::Television, 0, ErrorCode::TelevisionIo},
};

/// The errors of a stick that was pulled out or is failing.
constexpr std::array kStickGone = {EIO, ENODEV, ENXIO, ENOMEDIUM, ESTALE};

struct StopFact {
    int signal;
    ErrorCode code;
    std::string_view cause;
};

// The last entry is for every other signal.
constexpr std::array kStops = {
    StopFact{SIGTERM, ErrorCode::Terminated, "stopped before the end"},
    StopFact{SIGHUP, ErrorCode::HungUp, "the terminal went away"},
    StopFact{SIGINT, ErrorCode::Interrupted, "stopped by you before the end"},
};

ErrorCode stickUnread(int errorNumber) {
    const bool gone = std::find(kStickGone.begin(), kStickGone.end(), errorNumber) != kStickGone.end();
    return gone ? ErrorCode::StickIo : ErrorCode::Unreadable;
}

std::string sentenceFor(std::string_view verb, std::string_view path, int errorNumber,
                        std::string_view nextStep) {
    return "cannot " + std::string(verb) + " " + vxcommon::printable(path) + ": " +
           std::generic_category().message(errorNumber) + "; " + std::string(nextStep);
}

}  // namespace

Error readError(Place place, std::string_view path, int errorNumber) {
    const ErrorCode code = place == Place::Stick ? stickUnread(errorNumber) : ErrorCode::TelevisionIo;
    return {code, sentenceFor("read", path, errorNumber, factOf(code).nextStep)};
}

Error writeError(Place place, std::string_view path, int errorNumber) {
    const auto* const fact =
        std::find_if(kWriteFacts.begin(), kWriteFacts.end(), [=](const WriteFact& candidate) {
            return candidate.place == place &&
                   (candidate.errorNumber == errorNumber || candidate.errorNumber == 0);
        });
    return {fact->code, sentenceFor("write", path, errorNumber,
                                    fact->nextStep.empty() ? factOf(fact->code).nextStep : fact->nextStep)};
}

Error stopError(int signal) {
    const auto* const found = std::find_if(kStops.begin(), kStops.end() - 1,
                                           [signal](const StopFact& fact) { return fact.signal == signal; });
    return {found->code, std::string(found->cause) + "; start again when ready"};
}

bool isStop(ErrorCode code) {
    return !stopCauseOf(code).empty();
}

std::string_view stopCauseOf(ErrorCode code) {
    const auto* const found = std::find_if(kStops.begin(), kStops.end(),
                                           [code](const StopFact& fact) { return fact.code == code; });
    return found == kStops.end() ? std::string_view() : found->cause;
}

}  // namespace vxclone
