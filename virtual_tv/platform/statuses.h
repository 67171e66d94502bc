#pragma once

#include <array>

#include "virtual_tv/base/error.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

/// The status that a service returns for an error. virtual_tv/README.md contains the same tables.
struct StatusOf {
    ErrorCode code;
    int status;
};

/// The status for the error, or `otherwise` if it is not in the table.
template <class Table>
int statusOf(const Table& table, ErrorCode code, int otherwise) {
    for (const StatusOf& entry : table) {
        if (entry.code == code) {
            return entry.status;
        }
    }
    return otherwise;
}

/// The statuses of the services that return 0 for success and a negative number for a failure.
/// virtual_tv/README.md contains the same table.
inline constexpr std::array kServiceStatuses = {
    StatusOf{ErrorCode::BadArgument, -2},    StatusOf{ErrorCode::OutOfRange, -2},
    StatusOf{ErrorCode::NoBackupFile, -3},   StatusOf{ErrorCode::NotABackupFile, -4},
    StatusOf{ErrorCode::OtherVersion, -5},   StatusOf{ErrorCode::OtherService, -6},
    StatusOf{ErrorCode::DamagedBackup, -7},  StatusOf{ErrorCode::BadBackup, -8},
    StatusOf{ErrorCode::UnknownService, -9}, StatusOf{ErrorCode::NoSpace, -10},
    StatusOf{ErrorCode::NotSupported, -11}};

inline int serviceStatus(const Result<void>& done) {
    constexpr int kOtherFailure = -1;
    return done ? 0 : statusOf(kServiceStatuses, done.error().code, kOtherFailure);
}

/// Writes the error to the television's log, because the caller only sees the status. Result: `done`,
/// unchanged.
inline const Result<void>& logged(Television& television, const char* tag, const Result<void>& done) {
    constexpr int kErrorPriority = 6;
    if (!done) {
        static_cast<void>(television.dlog().append(kErrorPriority, tag, done.error().sentence));
    }
    return done;
}

}  // namespace vxtv
