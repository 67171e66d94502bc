#pragma once

#include <string>
#include <string_view>

#include "common/error.h"

namespace vxclone {

/// Why vxclone could not do what was asked. The catalogue in error_catalogue.cpp, which is in the same order,
/// gives each its exit status, its name for programs, its cause and the next step. A status and a name do not
/// change once they have been published.
enum class ErrorCode {
    CategoryFailed,    ///< the run ended, a category failed
    BadArguments,      ///< invalid command line
    UnknownCategory,   ///< `--only` names something that is no category
    MountPoint,        ///< the folder is the stick itself, which cannot be replaced as a whole
    FileExists,        ///< a file that would be written is there already
    NotAPackage,       ///< the folder is something else
    UnsafeEntry,       ///< a link, a device or the like stands in the package
    TooLarge,          ///< the package is larger than any package is
    SettingsDamaged,   ///< the package's settings file cannot be understood
    Unreadable,        ///< the package cannot be read
    NewerPackage,      ///< the package is of a format that only a later vxclone reads
    NotComplete,       ///< the package lacks its identity or its seal
    NoSafetyBackup,    ///< there is none to go back to
    DoesNotFit,        ///< the package is from another kind of television
    Altered,           ///< the package is not what was sealed
    StickMissing,      ///< nothing is where the stick should be
    StickReadOnly,     ///< the stick refuses to be written
    StickFull,         ///< the stick has no room for the package
    StickLimit,        ///< the stick's file system cannot hold such a file or name
    StickIo,           ///< the stick failed in another way
    TelevisionFull,    ///< the television's disk has no room
    TelevisionIo,      ///< the television's disk failed
    UnsafeTelevision,  ///< what stands in the television's folders would lead the run out of them
    NoKey,             ///< the television has no clone key, so nothing can be sealed or checked
    HungUp,            ///< the terminal went away
    Interrupted,       ///< the user stopped it
    Terminated,        ///< another process stopped it
    TelevisionBusy,    ///< another vxclone works on this television
    SettingsRefused,   ///< the television's settings store refuses
    SettingsNotSaved,  ///< a backup ended without a good settings file
    IdentityUnusable,  ///< the television does not say what it is, or in a way that no package can hold
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

/// The exit status of a vxclone that ends with this error.
int exitStatusOf(ErrorCode code);

/// The error's name in the lines of `--json`.
std::string_view nameOf(ErrorCode code);

/// What an operation worked on: it decides who is named as the cause and what is advised.
enum class Place { Stick, Television };

/// The error for a failed read or write of `path`; `errorNumber` is the system's reason (errno).
Error readError(Place place, std::string_view path, int errorNumber);
Error writeError(Place place, std::string_view path, int errorNumber);

/// The error for a run that a signal stopped.
Error stopError(int signal);

/// Whether the code is that of such an error.
bool isStop(ErrorCode code);

/// How such an error came about, for sentences: "stopped by you before the end".
std::string_view stopCauseOf(ErrorCode code);

}  // namespace vxclone
