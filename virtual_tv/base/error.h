#pragma once

#include "common/error.h"

namespace vxtv {

/// Why an operation on a virtual television failed.
enum class ErrorCode {
    AlreadyExists,       ///< something is already where the television should go
    NotATelevision,      ///< the folder is not one, or not there
    Damaged,             ///< the television's own data cannot be read
    OtherVersion,        ///< made by a version whose data this one does not know
    Busy,                ///< another process holds it, for longer than we wait
    NoSpace,             ///< the disk is full
    Io,                  ///< the file system said no in another way
    UnknownProfile,      ///< no profile of that name
    BadProfile,          ///< the profile's content is wrong
    UnknownKey,          ///< no such setting
    WrongType,           ///< the setting has another type
    OutOfRange,          ///< the value does not fit the type
    UnknownCall,         ///< no such platform call
    UnknownService,      ///< the television does not have that service
    UnknownEntry,        ///< the secure storage holds no entry of that name
    WrongCredential,     ///< the entry of the secure storage belongs to somebody else
    BrokenSeal,          ///< sealed with another key, or damaged since
    NoDeviceKey,         ///< the secure storage cannot come up
    NoFleetSecret,       ///< the television has no installation secret
    NoPackageKey,        ///< the file is no package key
    NoKeyFile,           ///< there is no key file at the path
    NotAKeyFile,         ///< the file is of another kind
    ShortKeyFile,        ///< the key file ends too early
    NoBackupFile,        ///< there is no backup file at the path
    NotABackupFile,      ///< the file is no service's backup
    OtherService,        ///< the backup is another service's
    DamagedBackup,       ///< the backup file is not as it was written
    BadBackup,           ///< the backup holds what the service cannot take
    TooEarly,            ///< another step has to come first
    NotSupported,        ///< this model cannot do it
    UnknownApplication,  ///< the television has no application of that id
    BadApplication,      ///< its manifest, its program or its data are wrong
    NotRunning,          ///< the application does not run
    BadArgument,         ///< anything else the user typed wrong
    NoIsolation,         ///< no way to put a command inside the television
    CannotRun            ///< the command could not be started
};

using Error = vxcommon::Error<ErrorCode>;

template <class Value>
using Result = vxcommon::Result<Value, ErrorCode>;

using vxcommon::failure;

}  // namespace vxtv
