#pragma once

#include <filesystem>
#include <memory>

#include "virtual_tv/base/error.h"
#include "virtual_tv/calls/call_log.h"
#include "virtual_tv/calls/dlog_file.h"
#include "virtual_tv/calls/fault_plan.h"
#include "virtual_tv/store/database.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/store/secure_storage.h"
#include "virtual_tv/store/settings_store.h"
#include "virtual_tv/store/system_information.h"

namespace vxtv {

/// A virtual television that this process uses. Any number of processes may use it at the same time.
///
/// Ownership: the services work on the television and must not outlive it. They stay valid if it is moved.
/// Threads: everything except moving may be used from any thread.
class Television {
 public:
    /// Errors: NotATelevision, Damaged, OtherVersion, Io. Nothing is changed.
    static Result<Television> open(const std::filesystem::path& path);

    const Folder& folder() const { return folder_; }
    /// What the services work on.
    Database& database() const { return *database_; }
    SettingsStore settings() const { return SettingsStore(*database_); }
    SystemInformation systemInformation() const { return SystemInformation(*database_); }
    SecureStorage secureStorage() const { return SecureStorage(folder_); }
    FaultPlan faults() const { return FaultPlan(*database_); }
    CallLog& calls() const { return *calls_; }
    DlogFile& dlog() const { return *dlog_; }

 private:
    Television(Folder folder, std::unique_ptr<Database> database);

    Folder folder_;
    std::unique_ptr<Database> database_;
    std::unique_ptr<CallLog> calls_;
    std::unique_ptr<DlogFile> dlog_;
};

/// The path made absolute, without "." and "..", and without a slash at its end.
std::filesystem::path absoluteFolder(const std::filesystem::path& path);

}  // namespace vxtv
