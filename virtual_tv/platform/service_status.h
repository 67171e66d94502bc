#pragma once

#include <array>

#include "virtual_tv/platform/status_table.h"

namespace vxtv {

/// The statuses of the services that say 0 for success and a negative number for a failure. The table stands
/// in virtual_tv/README.md as well.
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

}  // namespace vxtv
