#pragma once

#include "common/error.h"

namespace vxtv {

/// Why an operation on a virtual television failed.
enum class ErrorCode {
    AlreadyExists,       ///< something already exists at the path of the television
    NotATelevision,      ///< the folder is no television, or does not exist
    Damaged,             ///< the television's own data cannot be read
    OtherVersion,        ///< made by a version with another data format
    Busy,                ///< another process has it locked for longer than we wait
    NoSpace,             ///< the disk is full
    Io,                  ///< another error of the file system
    UnknownProfile,      ///< no profile of that name
    BadProfile,          ///< the profile's content is wrong
    UnknownKey,          ///< no such setting
    WrongType,           ///< the setting has another type
    OutOfRange,          ///< the value does not fit the type
    UnknownCall,         ///< no such platform call
    UnknownService,      ///< the television does not have that service
    UnknownEntry,        ///< the secure storage holds no entry of that name
    WrongCredential,     ///< the entry of the secure storage belongs to another credential
    BrokenSeal,          ///< sealed with another key, or damaged since
    NoDeviceKey,         ///< the secure storage is not ready
    NoFleetSecret,       ///< the television has no installation secret
    NoPackageKey,        ///< the file is no package key
    NoKeyFile,           ///< there is no key file at the path
    NotAKeyFile,         ///< the file is of another kind
    ShortKeyFile,        ///< the key file ends too early
    NoBackupFile,        ///< there is no backup file at the path
    NotABackupFile,      ///< the file is no backup of a service
    OtherService,        ///< the backup belongs to another service
    DamagedBackup,       ///< the backup file was changed after it was written
    BadBackup,           ///< the backup holds invalid values
    TooEarly,            ///< another step must come first
    NotSupported,        ///< this model does not support it
    UnknownApplication,  ///< the television has no application of that id
    BadApplication,      ///< its manifest, its program or its data are wrong
    NotRunning,          ///< the application does not run
    BadArgument,         ///< any other mistake of the user
    NoIsolation,         ///< this machine allows no isolation for the command
    CannotRun            ///< the command could not be started
};

using Error = vxcommon::Error<ErrorCode>;

template <class Value>
using Result = vxcommon::Result<Value, ErrorCode>;

using vxcommon::failure;

}  // namespace vxtv
