#include "virtual_tv/apps/hotel_app/data_package.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <system_error>

#include "common/tree_removal.h"
#include "virtual_tv/applications/hotel_database.h"
#include "virtual_tv/apps/hotel_app/package_index.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv::hotel {

namespace fs = std::filesystem;

namespace {

tl::unexpected<Error> tooLarge() {
    return failure(ErrorCode::BadArgument,
                   fmt::format("the data is too large for a package: it may have {} files, each of {} MiB, "
                               "and {} MiB in all; remove some pictures",
                               kMostFiles, kLargestFile >> 20U, kLargestPackage >> 20U));
}

tl::unexpected<Error> damaged(const fs::path& file, std::string_view why) {
    return failure(ErrorCode::DamagedBackup,
                   fmt::format("{} {}; copy the package again, or make it anew", file.string(), why));
}

/// The bytes of a regular file of at most `limit` bytes.
Result<std::string> bytesOf(const fs::path& file, std::size_t limit) {
    auto bytes = readPlainFile(file, limit + 1);
    if (!bytes) {
        return damaged(file, "cannot be used: " + bytes.error().reason);
    }
    return bytes->size() > limit ? Result<std::string>(damaged(file, "is longer than it should be"))
                                 : std::move(*bytes);
}

Result<void> addPictures(const fs::path& from, const fs::path& to, std::vector<IndexEntry>& files) {
    for (const fs::directory_entry& picture : fs::directory_iterator(from)) {
        const std::string name = picture.path().filename().string();
        const auto bytes = bytesOf(picture.path(), kLargestFile);
        VX_RETURN_IF_FAILED(bytes);
        if (const auto written = writeFlushed(to / name, *bytes); !written) {
            return written;
        }
        files.push_back(describe(std::string(kPicturesName) + "/" + name, *bytes));
    }
    return flushFolder(to);
}

bool isWithinLimits(const std::vector<IndexEntry>& files) {
    std::uint64_t total = 0;
    for (const IndexEntry& file : files) {
        total += file.size;
    }
    return files.size() <= kMostFiles && total <= kLargestPackage;
}

Result<void> fill(const DataFolder& data, const fs::path& package, const std::string& application,
                  const Halfway& halfway) {
    const fs::path copy = package / kDatabaseName;
    std::vector<IndexEntry> files;
    return snapshotDatabase(data.path() / kDatabaseName, copy)
        .and_then([&] { return flushFile(copy); })
        .and_then([&] { return bytesOf(copy, kLargestFile); })
        .and_then([&](const std::string& bytes) {
            files.push_back(describe(kDatabaseName, bytes));
            halfway();
            return addPictures(data.path() / kPicturesName, package / kPicturesName, files);
        })
        .and_then([&]() -> Result<std::string> {
            std::sort(files.begin(), files.end(),
                      [](const IndexEntry& one, const IndexEntry& other) { return one.name < other.name; });
            return isWithinLimits(files) ? indexText(application, files) : tooLarge();
        })
        .and_then([&](const std::string& index) { return writeFlushed(package / kIndexName, index); })
        .and_then([&] { return flushFolder(package); });
}

/// Requires that the package holds exactly what its index lists: no link, no pipe, no other file.
Result<void> checkNames(const fs::path& package, const std::vector<IndexEntry>& files) {
    std::set<fs::path> known = {kIndexName};
    for (const IndexEntry& file : files) {
        known.insert(file.name);
    }
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(package)) {
        const fs::path name = entry.path().lexically_relative(package);
        const fs::file_status status = entry.symlink_status();
        const bool isWanted = fs::is_directory(status)
                                  ? name == kPicturesName
                                  : fs::is_regular_file(status) && known.count(name) != 0;
        if (!isWanted) {
            return damaged(entry.path(), "does not belong into the package");
        }
    }
    return {};
}

Result<void> stage(const DataFolder& data, const fs::path& package, const std::vector<IndexEntry>& files,
                   const Halfway& halfway) {
    for (std::size_t done = 0; done < files.size(); ++done) {
        const IndexEntry& file = files[done];
        const auto bytes = bytesOf(package / file.name, file.size);
        VX_RETURN_IF_FAILED(bytes);
        if (!fits(file, *bytes)) {
            return damaged(package / file.name, "is not as it was written");
        }
        if (const auto written = writeFlushed(data.staging() / file.name, *bytes); !written) {
            return written;
        }
        if (done == files.size() / 2) {
            halfway();
        }
    }
    return checkDatabase(data.staging() / kDatabaseName);
}

Result<fs::path> packageIn(const fs::path& where, const std::string& application) {
    const fs::path package = where / application;
    std::error_code absent;
    const fs::file_status status = fs::symlink_status(package, absent);
    if (fs::is_directory(status)) {
        return package;
    }
    return failure(fs::exists(status) ? ErrorCode::NotABackupFile : ErrorCode::NoBackupFile,
                   fmt::format("there is no folder {}; the package does not hold this application's data",
                               package.string()));
}

/// Runs the work, and turns exceptions of the file system into an error.
template <class Work>
Result<void> guarded(const Work& work) {
    try {
        return work();
    } catch (const fs::filesystem_error& error) {
        return failure(ErrorCode::Io, fmt::format("{} cannot be used: {}; check who may read and write it",
                                                  error.path1().string(), error.code().message()));
    }
}

}  // namespace

Result<void> writePackage(const DataFolder& data, const fs::path& where, const std::string& application,
                          const Halfway& halfway) {
    std::error_code error;
    if (!where.is_absolute() || !fs::is_directory(where, error)) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("there is no folder \"{}\" to write the data to", where.string()));
    }
    const fs::path folder = where.has_filename() ? where : where.parent_path();
    const fs::path beside = folder / ("." + application + ".new");
    const Result<void> written = guarded([&] {
        if (const auto removed = vxcommon::removeTree(beside); !removed) {
            throw fs::filesystem_error("not removed", beside,
                                       {removed.error().reason, std::generic_category()});
        }
        fs::create_directories(beside / kPicturesName);
        return fill(data, beside, application, halfway).and_then([&] {
            return putInPlace(beside, folder / application);
        });
    });
    if (!written) {
        static_cast<void>(vxcommon::removeTree(beside));
    }
    return written;
}

Result<void> loadPackage(const DataFolder& data, const fs::path& where, const std::string& application,
                         const Halfway& halfway) {
    const Result<fs::path> package = packageIn(where, application);
    VX_RETURN_IF_FAILED(package);
    const Result<void> loaded = guarded([&] {
        return readIndex(*package / kIndexName, application)
            .and_then([&](const std::vector<IndexEntry>& files) {
                return checkNames(*package, files)
                    .and_then([&] { return data.beginStaging(); })
                    .and_then([&] { return stage(data, *package, files, halfway); });
            })
            .and_then([&] { return data.replaceByStaged(); });
    });
    if (!loaded) {
        data.dropStaged();
    }
    return loaded;
}

}  // namespace vxtv::hotel
