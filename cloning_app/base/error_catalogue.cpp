#include "cloning_app/base/error_catalogue.h"

#include <array>
#include <cstddef>

namespace vxclone {

namespace {

constexpr std::array kStatuses = {
    StatusFact{kExitOk, "done"},
    StatusFact{1, "finished, but something failed or differs"},
    StatusFact{2, "invalid command line"},
    StatusFact{3, "not a package, or an unreadable one"},
    StatusFact{4, "the package does not fit this television"},
    StatusFact{5, "the package was altered"},
    StatusFact{6, "the stick or the disk is full, read-only or gone"},
    StatusFact{7, "the television has no key"},
    StatusFact{8, "interrupted"},
    StatusFact{9, "another run is going on"},
    StatusFact{10, "the platform failed"},
};

constexpr std::array kCatalogue = {
    ErrorFact{ErrorCode::CategoryFailed, 1, "category-failed",
              "the run ended, and a category failed or differs",
              "read the lines of the table that say failed, and try again"},
    ErrorFact{ErrorCode::BadArguments, 2, "bad-arguments", "invalid command line",
              "read the help of the command: vxclone COMMAND --help"},
    ErrorFact{ErrorCode::UnknownCategory, 2, "unknown-category", "a category is named that does not exist",
              "choose from the names in the message"},
    ErrorFact{ErrorCode::MountPoint, 2, "mount-point",
              "the folder is the stick itself, which cannot be replaced as a whole",
              "name a folder on the stick"},
    ErrorFact{ErrorCode::FileExists, 2, "file-exists", "the file that would be written is there already",
              "name another file, or remove that one"},
    ErrorFact{ErrorCode::NotAPackage, 3, "not-a-package", "the folder holds no clone package",
              "name the folder that vxclone backup made"},
    ErrorFact{ErrorCode::UnsafeEntry, 3, "unsafe-entry", "the package holds a link, a device or the like",
              "make a new backup; do not trust this stick"},
    ErrorFact{ErrorCode::TooLarge, 3, "too-large", "the package is larger than any package is",
              "make a new backup; do not trust this stick"},
    ErrorFact{ErrorCode::SettingsDamaged, 3, "settings-damaged",
              "the package's settings file cannot be understood",
              "make a new backup, or leave settings-keys out with --only"},
    ErrorFact{ErrorCode::Unreadable, 3, "unreadable", "the package cannot be read",
              "try again, or take another stick"},
    ErrorFact{ErrorCode::NewerPackage, 3, "newer-package",
              "the package is of a format that only a later vxclone reads", "bring vxclone up to date"},
    ErrorFact{ErrorCode::NotComplete, 3, "not-complete", "the package lacks its identity or its seal",
              "make a new backup"},
    ErrorFact{ErrorCode::NoSafetyBackup, 3, "no-safety-backup", "there is no safety backup to go back to",
              "restore a package from a stick"},
    ErrorFact{ErrorCode::DoesNotFit, 4, "does-not-fit", "the package is from another kind of television",
              "take a package of the same kind of television"},
    ErrorFact{ErrorCode::Altered, 5, "altered", "the package was altered after it was made",
              "make a new backup"},
    ErrorFact{ErrorCode::StickMissing, 6, "stick-missing", "nothing is where the stick should be",
              "put the stick in and see where it is mounted"},
    ErrorFact{ErrorCode::StickReadOnly, 6, "stick-read-only", "the stick refuses to be written",
              "move its write-protect switch or take another stick"},
    ErrorFact{ErrorCode::StickFull, 6, "stick-full", "the stick has no room for the package",
              "free some space on the stick or take another one"},
    ErrorFact{ErrorCode::StickLimit, 6, "stick-limit",
              "the stick's file system cannot hold such a file or name",
              "format the stick as exFAT or take another one"},
    ErrorFact{ErrorCode::StickIo, 6, "stick-io", "the stick failed", "try again, or take another stick"},
    ErrorFact{ErrorCode::TelevisionFull, 6, "television-full", "the television's disk has no room",
              "free some space on the television"},
    ErrorFact{ErrorCode::TelevisionIo, 6, "television-io", "the television's disk failed",
              "check the television's disk and run vxclone as root"},
    ErrorFact{ErrorCode::UnsafeTelevision, 10, "unsafe-television",
              "a link, a special file or another file system stands in a folder of the television",
              "take away what the message names and try again"},
    ErrorFact{ErrorCode::NoKey, 7, "no-key", "the television has no key to seal or to check a package with",
              "restart the television, and have its key installed if that does not help"},
    ErrorFact{ErrorCode::HungUp, 8, "hung-up", "the terminal went away", "start again when ready"},
    ErrorFact{ErrorCode::Interrupted, 8, "interrupted", "the user stopped it", "start again when ready"},
    ErrorFact{ErrorCode::Terminated, 8, "terminated", "another process stopped it", "start again when ready"},
    ErrorFact{ErrorCode::TelevisionBusy, 9, "television-busy", "another vxclone works on this television",
              "wait for its end; vxclone status tells about it"},
    ErrorFact{ErrorCode::SettingsRefused, 10, "settings-refused", "the television's settings store refuses",
              "restart the television and try again"},
    ErrorFact{ErrorCode::SettingsNotSaved, 10, "settings-not-saved", "the backup left no good settings file",
              "free some space on the television and back up again"},
    ErrorFact{ErrorCode::IdentityUnusable, 10, "identity-unusable",
              "the television does not say what it is, or in a way that no package can hold",
              "restart the television and try again"},
    ErrorFact{ErrorCode::NotSealed, 10, "not-sealed", "the backup could not be sealed",
              "free some space on the television and back up again"},
    ErrorFact{ErrorCode::SafetyIncomplete, 10, "safety-incomplete",
              "the safety backup lacks what the restore may change, so the restore did not begin",
              "find out why with vxclone backup, name with --without what this television does not have, "
              "leave the category out, or restore with --no-safety"},
    ErrorFact{ErrorCode::RecordDamaged, 10, "record-damaged",
              "the record of the last run cannot be understood", "remove the file that the message names"},
    ErrorFact{ErrorCode::Internal, 10, "internal", "a fault of the clone library or of vxclone",
              "restart the television and try again"},
};

constexpr bool isInTheOrderOfTheCodes() {
    for (std::size_t index = 0; index < kCatalogue.size(); ++index) {
        if (kCatalogue[index].code != static_cast<ErrorCode>(index)) {
            return false;
        }
    }
    return kCatalogue.back().code == ErrorCode::Internal;
}

static_assert(isInTheOrderOfTheCodes(), "the catalogue has one entry for each code, in their order");

}  // namespace

std::span<const StatusFact> exitStatuses() {
    return kStatuses;
}

std::span<const ErrorFact> errorCatalogue() {
    return kCatalogue;
}

const ErrorFact& factOf(ErrorCode code) {
    return kCatalogue.at(static_cast<std::size_t>(code));
}

int exitStatusOf(ErrorCode code) {
    return factOf(code).exitStatus;
}

std::string_view nameOf(ErrorCode code) {
    return factOf(code).name;
}

}  // namespace vxclone
