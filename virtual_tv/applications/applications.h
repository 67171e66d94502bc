#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "virtual_tv/applications/application_manifest.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// Where a television has its applications, as its programs see it: a folder each, named by the id.
inline constexpr const char* kApplicationsPath = "/opt/usr/apps";
/// What an application keeps for itself, in its folder.
inline constexpr const char* kApplicationDataName = "data";

/// The applications that a television has. Processes and threads: any.
class Applications {
 public:
    explicit Applications(Folder folder) : folder_(std::move(folder)) {}

    std::filesystem::path folderOf(const std::string& id) const;
    std::filesystem::path dataOf(const std::string& id) const;

    /// The ids of the folders that hold a manifest, ordered. A folder that holds none, such as that of the
    /// cloning application, is none of them. Errors: Io.
    Result<std::vector<std::string>> ids() const;

    /// Errors: BadArgument for what is no id, UnknownApplication, BadApplication.
    Result<ApplicationManifest> find(const std::string& id) const;

    /// Copies an application from a folder of this machine, data included: whole or not at all. Result: its
    /// manifest. Errors: UnknownApplication, BadApplication (also for links and special files in it, and for
    /// a program that is not there), AlreadyExists, NoSpace, Io.
    Result<ApplicationManifest> install(const std::filesystem::path& from) const;

    /// Makes an application without any data. Errors: AlreadyExists, NoSpace, Io.
    Result<void> create(const ApplicationManifest& manifest) const;

 private:
    Folder folder_;
};

/// The file to be run for an application, which need not lie in a television. Errors: BadApplication when
/// there is none, or none that may be run.
Result<std::filesystem::path> programOf(const ApplicationManifest& manifest,
                                        const std::filesystem::path& applicationFolder);

/// The environment variable that tells the platform libraries which application a process is: whoever
/// launches an application sets it to the application's id.
inline constexpr const char* kApplicationIdVariable = "VXTV_APP_ID";

/// The application that a process is for which nobody set the variable: what the installer runs.
inline constexpr const char* kCloningApplication = "org.vorta.vxhotel-cloning";

}  // namespace vxtv
