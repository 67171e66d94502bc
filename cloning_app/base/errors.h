#pragma once

#include <string>
#include <string_view>

#include "common/error.h"

namespace vxclone {

/// The reasons for which vxclone fails. The catalogue in error_catalogue.cpp has the same order. It gives
/// each reason its exit status, its name for programs, its cause and the next step. A published status or
/// name never changes.
enum class ErrorCode {
    CategoryFailed,    ///< the run ended, a category failed
    BadArguments,      ///< invalid command line
    UnknownCategory,   ///< `--only` contains an unknown category
    MountPoint,        ///< the folder is the stick itself, which cannot be replaced as a whole
    FileExists,        ///< a file that would be written is there already
    NotAPackage,       ///< the folder is no package
    UnsafeEntry,       ///< the package contains a link, a device or the like
    TooLarge,          ///< the package is larger than any real package
    SettingsDamaged,   ///< the package's settings file cannot be understood
    Unreadable,        ///< the package cannot be read
    NewerPackage,      ///< the package has a format that only a later vxclone reads
    NotComplete,       ///< the package lacks its identity or its seal
    NoSafetyBackup,    ///< there is no safety backup to go back to
    DoesNotFit,        ///< the package is from another kind of television
    Altered,           ///< the package was changed after it was sealed
    StickMissing,      ///< there is no stick at the path
    StickReadOnly,     ///< the stick refuses to be written
    StickFull,         ///< the stick has no room for the package
    StickLimit,        ///< the stick's file system cannot hold such a file or name
    StickIo,           ///< the stick failed in another way
    TelevisionFull,    ///< the television's disk has no room
    TelevisionIo,      ///< the television's disk failed
    UnsafeTelevision,  ///< an entry in the television's folders would lead the run out of them
    NoKey,             ///< the television has no clone key, so nothing can be sealed or checked
    HungUp,            ///< the terminal was closed
    Interrupted,       ///< the user stopped it
    Terminated,        ///< another process stopped it
    TelevisionBusy,    ///< another vxclone works on this television
    SettingsRefused,   ///< the television's settings store refuses
    SettingsNotSaved,  ///< a backup ended without a good settings file
    IdentityUnusable,  ///< the television does not report its identity, or reports one that no package can
                       ///< hold
    NotSealed,         ///< a backup could not be sealed
    SafetyIncomplete,  ///< the safety backup lacks what the restore may change
    RecordDamaged,     ///< the record of the last run cannot be understood
    Internal           ///< a fault of the library or of vxclone
};

using Error = vxcommon::Error<ErrorCode>;

template <class Value>
using Result = vxcommon::Result<Value, ErrorCode>;

using vxcommon::failure;

inline constexpr int kExitOk = 0;

/// The exit status for this error.
int exitStatusOf(ErrorCode code);

/// The error's name in the lines of `--json`.
std::string_view nameOf(ErrorCode code);

/// Where an operation worked. It decides the cause and the advice in the sentence.
enum class Place { Stick, Television };

/// The error for a failed read or write of `path`. `errorNumber` is the system's reason (errno).
Error readError(Place place, std::string_view path, int errorNumber);
Error writeError(Place place, std::string_view path, int errorNumber);

/// The error for a run that was stopped by a signal.
Error stopError(int signal);

/// Whether the code means a stop by a signal.
bool isStop(ErrorCode code);

/// The cause of such an error, for sentences: "stopped by you before the end".
std::string_view stopCauseOf(ErrorCode code);

}  // namespace vxclone
