#pragma once

#include "tests/sweeps/storage/storage_test.h"

namespace vxtest {

/// Backups and restores in which one call after the other fails, with the expectations that hold for all of
/// them.
class FailingPointsTest : public StorageTest {
 protected:
    /// Puts a good package of the first television on the stick.
    FailingPointsTest();

    /// The variables with which vxclone's nth such call fails, and all later ones if `onwards`.
    static Variables refusing(const std::string& call, unsigned long nth, bool onwards);
    /// The number of these calls in vxclone.
    unsigned long callsOf(const std::string& call, const std::string& television,
                          const std::vector<std::string>& arguments) const;

    /// A backup of the first television with the variables. It ends with a documented status or, only if
    /// `mayDie`, it dies. The stick holds the old package or a good new one.
    void expectWholeBackup(const Variables& variables, bool mayDie = false);
    /// A restore of the second television in the same way: applied, reported as not applied, or named as
    /// unfinished by the next command.
    void expectHonestRestore(const Variables& variables, bool mayDie = false) const;
    /// The next restore of the second television succeeds.
    void expectNextRestoreIsGood() const;
    /// The next backup succeeds and removes the leftovers beside the package.
    void expectNextBackupIsGood();

    FileTree kept;      ///< the package that is on the stick
    FileTree complete;  ///< one that lacks nothing
    int deaths = 0;     ///< of backups
};

}  // namespace vxtest
