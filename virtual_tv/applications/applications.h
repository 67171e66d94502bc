#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "virtual_tv/applications/application_manifest.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The folder of a television's applications as its programs see it. Each application has a folder with its
/// id.
inline constexpr const char* kApplicationsPath = "/opt/usr/apps";
/// The folder of an application's own data, inside its folder.
inline constexpr const char* kApplicationDataName = "data";

/// The applications that a television has. Processes and threads: any.
class Applications {
 public:
    explicit Applications(Folder folder) : folder_(std::move(folder)) {}

    std::filesystem::path folderOf(const std::string& id) const;
    std::filesystem::path dataOf(const std::string& id) const;

    /// The ids of the folders that hold a manifest, sorted. Other folders, such as that of the cloning
    /// application, are left out. Errors: Io.
    Result<std::vector<std::string>> ids() const;

    /// Errors: BadArgument for an invalid id, UnknownApplication, BadApplication.
    Result<ApplicationManifest> find(const std::string& id) const;

    /// Copies an application, including its data, from a folder of this machine, completely or not at all.
    /// Result: its manifest. Errors: UnknownApplication; BadApplication, also for links and special files in
    /// it and for a missing program; AlreadyExists, NoSpace, Io.
    Result<ApplicationManifest> install(const std::filesystem::path& from) const;

    /// Makes an application without any data. Errors: AlreadyExists, NoSpace, Io.
    Result<void> create(const ApplicationManifest& manifest) const;

 private:
    Folder folder_;
};

/// The executable file of an application, which may be outside of a television. Errors: BadApplication if it
/// is missing or not executable.
Result<std::filesystem::path> programOf(const ApplicationManifest& manifest,
                                        const std::filesystem::path& applicationFolder);

/// The environment variable with the application id of a process, for the platform libraries. The launcher of
/// an application sets it.
inline constexpr const char* kApplicationIdVariable = "VXTV_APP_ID";

/// The application id of a process without this variable: the installer's cloning application.
inline constexpr const char* kCloningApplication = "org.vorta.vxhotel-cloning";

}  // namespace vxtv
