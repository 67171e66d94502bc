#include "virtual_tv/applications/applications.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <system_error>

#include "common/file_writing.h"
#include "virtual_tv/base/own_file.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/base/shipped_files.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

tl::unexpected<Error> notMade(const std::string& id, const std::error_code& error) {
    const bool full = vxcommon::meansNoRoom(error.value());
    return failure(full ? ErrorCode::NoSpace : ErrorCode::Io,
                   fmt::format("the application {} cannot be installed: {}; {}", id, error.message(),
                               full ? "make room on the disk and try again"
                                    : "check that the television's folder may be written"));
}

tl::unexpected<Error> badProgram(const ApplicationManifest& manifest, std::string_view why) {
    return failure(ErrorCode::BadApplication,
                   fmt::format("the program {} of the application {} {}; correct its manifest or add it",
                               manifest.program, manifest.id, why));
}

/// Copies only regular files and folders, because a link would lead out of the television.
Result<void> copyTree(const fs::path& from, const fs::path& to) {
    for (auto entry = fs::recursive_directory_iterator(from); entry != fs::end(entry); ++entry) {
        const fs::file_status status = entry->symlink_status();
        const fs::path target = to / entry->path().lexically_relative(from);
        if (fs::is_directory(status)) {
            fs::create_directories(target);
        } else if (fs::is_regular_file(status)) {
            fs::copy_file(entry->path(), target);
        } else {
            return failure(ErrorCode::BadApplication,
                           fmt::format("{} is neither file nor folder; take it out of the application",
                                       entry->path().string()));
        }
    }
    return {};
}

/// Makes a folder with the content that `fill(folder)` creates, completely or not at all.
Result<void> makeWhole(const fs::path& target, const std::function<Result<void>(const fs::path&)>& fill) {
    const std::string id = target.filename().string();
    try {
        fs::create_directories(target.parent_path());
        auto beside = vxcommon::Beside::folder(target);
        if (beside.refused() != 0) {
            return notMade(id, {beside.refused(), std::generic_category()});
        }
        VX_RETURN_IF_FAILED(fill(beside.path()));
        const int refused = beside.putInPlace({});
        if (refused == EEXIST) {
            return failure(ErrorCode::AlreadyExists,
                           fmt::format("the television has the application {} already; remove {} first", id,
                                       target.string()));
        }
        return refused == 0 ? Result<void>() : notMade(id, {refused, std::generic_category()});
    } catch (const fs::filesystem_error& error) {
        return notMade(id, error.code());
    }
}

}  // namespace

fs::path Applications::folderOf(const std::string& id) const {
    return placeOf(folder_, kApplicationsPath) / id;
}

fs::path Applications::dataOf(const std::string& id) const {
    return folderOf(id) / kApplicationDataName;
}

Result<std::vector<std::string>> Applications::ids() const {
    std::vector<std::string> ids;
    std::error_code error;
    const fs::path all = placeOf(folder_, kApplicationsPath);
    for (fs::directory_iterator entry(all, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        std::error_code absent;
        if (isApplicationId(name) && fs::exists(entry->path() / kManifestName, absent)) {
            ids.push_back(name);
        }
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        return failure(ErrorCode::Io, fmt::format("{} cannot be listed: {}; check who may read it",
                                                  all.string(), error.message()));
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

Result<ApplicationManifest> Applications::find(const std::string& id) const {
    if (!isApplicationId(id)) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("\"{}\" is no application's id; give one such as org.example.app", id));
    }
    std::error_code absent;
    if (!fs::exists(folderOf(id) / kManifestName, absent)) {
        return failure(
            ErrorCode::UnknownApplication,
            fmt::format("this television has no application {}; `vxtv app list` shows those it has", id));
    }
    return readManifest(folderOf(id))
        .and_then([&](ApplicationManifest manifest) -> Result<ApplicationManifest> {
            if (manifest.id == id) {
                return manifest;
            }
            return failure(ErrorCode::BadApplication,
                           fmt::format("the folder {} holds the application {}; give it that name",
                                       folderOf(id).string(), manifest.id));
        });
}

Result<ApplicationManifest> Applications::install(const fs::path& from) const {
    std::error_code unknown;
    if (fs::is_symlink(fs::symlink_status(from.has_filename() ? from : from.parent_path(), unknown))) {
        return failure(
            ErrorCode::BadApplication,
            fmt::format("{} is a link, not an application; name the folder itself", from.string()));
    }
    const Result<ApplicationManifest> manifest = readManifest(from);
    if (!manifest) {
        return manifest;
    }
    if (const auto link = linkOnTheWay(folder_.root(), kApplicationsPath)) {
        return failure(ErrorCode::Damaged, fmt::format("{} is a link, and applications are installed into a "
                                                       "television's own folder alone; remove it",
                                                       link->string()));
    }
    VX_RETURN_IF_FAILED(programOf(*manifest, from));
    return makeWhole(folderOf(manifest->id),
                     [&from](const fs::path& beside) -> Result<void> {
                         fs::create_directory(beside / kApplicationDataName);
                         return copyTree(from, beside);
                     })
        .map([&manifest] { return *manifest; });
}

Result<void> Applications::create(const ApplicationManifest& manifest) const {
    return makeWhole(folderOf(manifest.id), [&manifest](const fs::path& beside) {
        fs::create_directory(beside / kApplicationDataName);
        return writePrivateFile(beside / kManifestName, manifestText(manifest), Existing::Refuse);
    });
}

Result<fs::path> programOf(const ApplicationManifest& manifest, const fs::path& applicationFolder) {
    if (manifest.program.find('/') == std::string::npos) {
        const fs::path shipped = shippedProgram(manifest.program);
        return shipped.empty() ? Result<fs::path>(badProgram(manifest, "does not ship with vxtv")) : shipped;
    }
    std::error_code error;
    const fs::path folder = fs::canonical(applicationFolder, error);
    const fs::path program = fs::canonical(applicationFolder / manifest.program, error);
    if (error || !fs::is_regular_file(program) || access(program.c_str(), X_OK) != 0) {
        return badProgram(manifest, "is not there, or may not be run");
    }
    if (std::mismatch(folder.begin(), folder.end(), program.begin(), program.end()).first != folder.end()) {
        return badProgram(manifest, "is a link out of the application's folder");
    }
    return program;
}

}  // namespace vxtv
