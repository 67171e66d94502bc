#include "virtual_tv/channels/channel_archive.h"

#include <fmt/format.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "common/file_writing.h"
#include "common/strict_json.h"
#include "virtual_tv/base/backup_file.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/channels/channel_json.h"
#include "virtual_tv/channels/zip_archive.h"

namespace vxtv {

namespace fs = std::filesystem;
using Json = nlohmann::json;

namespace {

constexpr const char* kIndex = "index.json";
constexpr const char* kTransponders = "transponders.json";
constexpr const char* kChannels = "channels.json";
constexpr std::array kContentMembers = {kChannels, kTransponders};

constexpr const char* kFormat = "television channel map";
constexpr int kArchiveVersion = 1;
constexpr const char* kHotelListService = "hotel-channels";
constexpr int kHotelListVersion = 1;
constexpr int kDeepestMember = 8;

std::string checksumOf(const std::string& content) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    std::string text;
    if (EVP_Digest(content.data(), content.size(), digest.data(), &size, EVP_sha256(), nullptr) == 1) {
        for (unsigned int place = 0; place < size; ++place) {
            text += fmt::format("{:02x}", digest.at(place));
        }
    }
    return text;
}

std::string indexOf(const ZipMembers& members) {
    Json told = Json::object();
    for (const auto& [name, content] : members) {
        told[name] = {{"bytes", content.size()}, {"sha256", checksumOf(content)}};
    }
    return Json{{"format", kFormat}, {"version", kArchiveVersion}, {"members", told}}.dump();
}

/// Throws WrongMember unless the index has this format and matches the contents.
void checkIndex(const Json& index, const ZipMembers& members) {
    const std::string where = kIndex;
    expectOnly(index, where, {"format", "version", "members"});
    if (stringIn(memberOf(index, where, "format"), within(where, "format")) != kFormat) {
        throw WrongMember{within(where, "format"), "is another one"};
    }
    const Json& told = memberOf(index, where, "members");
    const std::string inside = within(where, "members");
    expectOnly(told, inside, {kChannels, kTransponders});
    for (const char* name : kContentMembers) {
        const std::string member = within(inside, name);
        const Json& it = memberOf(told, inside, name);
        expectOnly(it, member, {"bytes", "sha256"});
        const std::string& content = members.at(name);
        const auto bytes = numberBetween(memberOf(it, member, "bytes"), within(member, "bytes"), 0,
                                         static_cast<std::int64_t>(kLargestZipMember));
        if (static_cast<std::size_t>(bytes) != content.size() ||
            stringIn(memberOf(it, member, "sha256"), within(member, "sha256")) != checksumOf(content)) {
            throw WrongMember{member, "is not what was packed"};
        }
    }
}

/// The folder. It is created if missing, and removed again if it stays empty.
class TargetFolder {
 public:
    explicit TargetFolder(const fs::path& path) : path_(path.has_filename() ? path : path.parent_path()) {
        constexpr mode_t kMode = 0755;
        made_ = mkdir(path_.c_str(), kMode) == 0;
        error_ = made_ || errno == EEXIST ? 0 : errno;
        struct stat status {};
        if (error_ == 0 && (lstat(path_.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))) {
            error_ = ENOTDIR;
        }
    }
    ~TargetFolder() {
        if (made_) {
            // This fails, as intended, if the folder is not empty.
            rmdir(path_.c_str());
        }
    }
    TargetFolder(const TargetFolder&) = delete;
    TargetFolder& operator=(const TargetFolder&) = delete;

    Result<fs::path> path() const {
        if (error_ == 0) {
            return path_;
        }
        return failure(vxcommon::meansNoRoom(error_) ? ErrorCode::NoSpace : ErrorCode::Io,
                       fmt::format("the folder {} cannot be used: {}; make it, or choose another",
                                   path_.string(), reason(error_)));
    }

 private:
    fs::path path_;
    bool made_ = false;
    int error_ = 0;
};

Result<void> checkNamed(const fs::path& directory) {
    return directory.empty()
               ? Result<void>(failure(ErrorCode::BadArgument, "no folder was named; give the path of one"))
               : Result<void>();
}

Result<std::string> readArchive(const fs::path& file) {
    auto bytes = readPlainFile(file, kLargestZip + 1);
    if (bytes) {
        return std::move(*bytes);
    }
    const bool missing = bytes.error().kind == ReadTrouble::Kind::Missing;
    const bool special = bytes.error().kind == ReadTrouble::Kind::NoPlainFile;
    return failure(missing   ? ErrorCode::NoBackupFile
                   : special ? ErrorCode::NotABackupFile
                             : ErrorCode::Io,
                   fmt::format("the channel archive {} cannot be read: {}; make the backup anew",
                               file.string(), bytes.error().reason));
}

tl::unexpected<Error> cannotTake(const fs::path& file, std::string_view why) {
    return failure(ErrorCode::BadBackup,
                   fmt::format("the channels of {} cannot be taken: {}; make the backup "
                               "anew",
                               file.string(), why));
}

/// Returns the result of `read`. An exception becomes an error that names the file.
template <class Read>
auto reading(const fs::path& file, Read read) -> Result<decltype(read())> {
    try {
        return read();
    } catch (const WrongMember& wrong) {
        return cannotTake(file, fmt::format("\"{}\" {}", wrong.member, wrong.reason));
    } catch (const Json::exception& error) {
        return cannotTake(file, "a member is no JSON");
    }
}

Result<void> checkVersion(const Json& index, const fs::path& file) {
    const Json* const version = memberIfThere(index, "version");
    if (version == nullptr || !version->is_number_integer()) {
        return cannotTake(file, "its index tells no version");
    }
    if (*version != kArchiveVersion) {
        return failure(ErrorCode::OtherVersion,
                       fmt::format("the channel archive {} is of version {}, and this television knows {}; "
                                   "make the backup anew",
                                   file.string(), version->dump(), kArchiveVersion));
    }
    return {};
}

Result<ChannelMap> mapIn(const ZipMembers& members, const fs::path& file) {
    const auto index =
        reading(file, [&] { return vxcommon::parseStrictly(members.at(kIndex), {kDeepestMember}); });
    VX_RETURN_IF_FAILED(index);
    return checkVersion(*index, file).and_then([&] {
        return reading(file, [&] {
            checkIndex(*index, members);
            ChannelMap map;
            map.transponders = transpondersIn(
                vxcommon::parseStrictly(members.at(kTransponders), {kDeepestMember}), kTransponders);
            map.channels = channelsIn(vxcommon::parseStrictly(members.at(kChannels), {kDeepestMember}),
                                      kChannels, map.transponders.size());
            return map;
        });
    });
}

Result<std::vector<HotelChannel>> readHotelList(const fs::path& file, const std::vector<Channel>& channels) {
    const Result<Json> document = readBackupFile(file, kHotelListService, kHotelListVersion);
    if (!document) {
        return document.error().code == ErrorCode::NoBackupFile
                   ? Result<std::vector<HotelChannel>>(std::vector<HotelChannel>())
                   : tl::make_unexpected(document.error());
    }
    return reading(file, [&] { return hotelListIn(*document, "hotel list", channels); });
}

}  // namespace

Result<void> ChannelArchive::exportMap(const fs::path& directory) const {
    return checkNamed(directory).and_then([this] { return store_.map(); }).and_then([&](ChannelMap map) {
        ZipMembers members = {{kTransponders, transpondersToJson(map.transponders).dump()},
                              {kChannels, channelsToJson(map.channels).dump()}};
        members[kIndex] = indexOf(members);
        return packZip(members).and_then([&](const std::string& archive) {
            const TargetFolder target(directory);
            return target.path().and_then([&](const fs::path& folder) {
                return writePrivateFile(folder / kChannelArchiveFile, archive, Existing::Replace);
            });
        });
    });
}

Result<void> ChannelArchive::exportHotelList(const fs::path& directory) const {
    return checkNamed(directory)
        .and_then([this] { return store_.hotelList(); })
        .and_then([&](const std::vector<HotelChannel>& hotelList) {
            const TargetFolder target(directory);
            return target.path().and_then([&](const fs::path& folder) {
                return writeBackupFile(folder / kHotelListFile, kHotelListService, kHotelListVersion,
                                       hotelListToJson(hotelList));
            });
        });
}

Result<void> ChannelArchive::import(const fs::path& directory) {
    const fs::path file = directory / kChannelArchiveFile;
    const auto map = checkNamed(directory)
                         .and_then([&] { return readArchive(file); })
                         .and_then([&](const std::string& archive) {
                             return unpackZip(archive, {kChannels, kIndex, kTransponders}, file.string());
                         })
                         .and_then([&](const ZipMembers& members) { return mapIn(members, file); });
    VX_RETURN_IF_FAILED(map);
    return readHotelList(directory / kHotelListFile, map->channels)
        .and_then(
            [&](const std::vector<HotelChannel>& hotelList) { return store_.replace(*map, hotelList); });
}

}  // namespace vxtv
