#include "virtual_tv/factory/creation.h"

#include <fmt/format.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "common/file_writing.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/factory/application_profile.h"
#include "virtual_tv/services/data_services.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/store/secure_storage.h"
#include "virtual_tv/television/key_installation.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

tl::unexpected<Error> cannotMake(const fs::path& path, const std::error_code& error) {
    const bool full = vxcommon::meansNoRoom(error.value());
    const char* const advice = full ? "make room on the disk and try again"
                               : error == std::errc::file_too_large
                                   ? kRaiseFileSizeLimit
                                   : "check that its parent folder may be written";
    return failure(
        full ? ErrorCode::NoSpace : ErrorCode::Io,
        fmt::format("the television {} cannot be made: {}; {}", path.string(), error.message(), advice));
}

/// The reason of a failed file operation. The standard library does not report why a write failed while it
/// copied a file, so the size of the copy shows whether the limit of the file size was reached.
std::error_code reasonOf(const fs::filesystem_error& error) {
    std::error_code unknown;
    const std::uintmax_t size = fs::file_size(error.path2(), unknown);
    const bool limited = error.code() == std::errc::io_error && !unknown && fileMayNotGrow(size);
    return limited ? std::make_error_code(std::errc::file_too_large) : error.code();
}

tl::unexpected<Error> alreadyExists(const fs::path& path) {
    return failure(
        ErrorCode::AlreadyExists,
        fmt::format("{} already exists; choose another folder, or remove it first", path.string()));
}

void makeFolders(const Folder& folder) {
    for (const fs::path& path :
         {folder.tmp(), folder.media(), folder.calls().parent_path(), folder.run(),
          placeOf(folder, kCloningDataPath), placeOf(folder, kCloneKeyFile).parent_path()}) {
        fs::create_directories(path);
    }
    fs::permissions(folder.tmp(), fs::perms::all | fs::perms::sticky_bit);
    for (const PictureArea& area : kPictureAreas) {
        fs::create_directories(placeOf(folder, area.path));
    }
}

void copyPictures(const Folder& folder, const std::vector<Picture>& pictures) {
    for (const PictureArea& area : kPictureAreas) {
        for (const Picture& picture : pictures) {
            if (picture.area == area.name) {
                const fs::path place = placeOf(folder, area.path) / picture.name;
                fs::copy_file(picture.source, place);
                fs::permissions(place, fs::perms::owner_write, fs::perm_options::add);
            }
        }
    }
}

Result<void> writeUnlessEmpty(const fs::path& file, const std::string& bytes) {
    return bytes.empty() ? Result<void>() : writePrivateFile(file, bytes, Existing::Refuse);
}

Result<void> putPackageKey(const SecureStorage& storage, const std::string& key) {
    return key.empty() ? Result<void>() : storage.put({{kPackageKeyEntry, key}}, packageKeyCredential());
}

Result<void> fillSecureStorage(const Folder& folder, const Profile& profile) {
    const fs::path keyFile = placeOf(folder, kCloneKeyFile);
    return SecureStorage::create(folder)
        .and_then([&] { return writeUnlessEmpty(folder.installationSecret(), profile.installationSecret); })
        .and_then([&] { return writeUnlessEmpty(keyFile, profile.keyFile); })
        .and_then([&] { return putPackageKey(SecureStorage(folder), profile.packageKey); });
}

Result<void> fillDatabase(const Folder& folder, const Profile& profile) {
    const Result<std::unique_ptr<Database>> database = Database::create(folder.database());
    VX_RETURN_IF_FAILED(database);
    return (*database)->write([&profile](SQLite::Database& connection) -> Result<void> {
        SettingsStore::create(connection, profile.settings);
        SystemInformation::create(connection, profile.identity, profile.features);
        FaultPlan::create(connection);
        try {
            createDataServices(connection, profile.services, profile.file.parent_path());
        } catch (const WrongMember& wrong) {
            return badProfile(profile.file, wrong);
        }
        return {};
    });
}

Result<void> fill(const fs::path& target, const Folder& folder, const Profile& profile) {
    try {
        makeFolders(folder);
        copyPictures(folder, profile.pictures);
    } catch (const fs::filesystem_error& error) {
        return cannotMake(target, reasonOf(error));
    }
    return fillSecureStorage(folder, profile)
        .and_then([&] { return fillDatabase(folder, profile); })
        .and_then([&] { return createApplications(folder, profile.applications); });
}

Result<void> checkPlace(const fs::path& path) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (fs::exists(status)) {
        return alreadyExists(path);
    }
    if (!fs::is_directory(path.parent_path(), error)) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("the television {} cannot be made: there is no folder {}; make that first",
                                   path.string(), path.parent_path().string()));
    }
    return status.type() == fs::file_type::not_found ? Result<void>() : Result<void>(cannotMake(path, error));
}

}  // namespace

Result<Television> createTelevision(const fs::path& path, const Profile& profile) {
    if (path.empty()) {
        return failure(ErrorCode::BadArgument, "no folder was named; give the path of the new television");
    }
    const fs::path target = absoluteFolder(path);
    if (const Result<void> place = checkPlace(target); !place) {
        return tl::make_unexpected(place.error());
    }
    auto scratch = vxcommon::Beside::folder(target);
    if (scratch.refused() != 0) {
        return cannotMake(target, {scratch.refused(), std::generic_category()});
    }
    if (const Result<void> filled = fill(target, Folder(scratch.path()), profile); !filled) {
        return tl::make_unexpected(filled.error());
    }
    const int refused = scratch.putInPlace({Existing::Refuse, vxcommon::WithoutRefusal::Rename});
    if (refused != 0) {
        return refused == EEXIST || refused == ENOTEMPTY
                   ? alreadyExists(target)
                   : cannotMake(target, {refused, std::generic_category()});
    }
    return Television::open(target);
}

}  // namespace vxtv
