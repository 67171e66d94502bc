#pragma once

#include <span>
#include <string_view>

#include "cloning_app/base/errors.h"

namespace vxclone {

/// The meaning of an exit status.
struct StatusFact {
    int status;
    std::string_view meaning;
};

/// One error of the catalogue.
struct ErrorFact {
    ErrorCode code;
    int exitStatus;
    std::string_view name;      ///< in the lines of `--json`
    std::string_view cause;     ///< what happened, for the manual; a message names the thing itself
    std::string_view nextStep;  ///< what to do about it; the end of messages that have none of their own
};

/// Every exit status, sorted. The help, the manual and the documents use this table.
std::span<const StatusFact> exitStatuses();

/// Every error, in the order of `ErrorCode`.
std::span<const ErrorFact> errorCatalogue();

/// The catalogue's entry of the error.
const ErrorFact& factOf(ErrorCode code);

}  // namespace vxclone
